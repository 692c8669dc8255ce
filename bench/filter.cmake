zelk_bench(filter LINKS zelk_eq)
