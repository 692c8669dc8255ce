zelk_bench(equalizer LINKS zelk_clap zelk_eq ${CMAKE_DL_LIBS})
target_compile_definitions(bench_equalizer PRIVATE ZELK_PLUGIN_FILE="$<TARGET_FILE:zelk_plugin>")
add_dependencies(bench_equalizer zelk_plugin)
