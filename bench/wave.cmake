zelk_bench(wave LINKS zelk_wave)
