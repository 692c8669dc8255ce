zelk_bench(links LINKS zelk_framework_zelk)
