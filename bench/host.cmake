zelk_bench(host LINKS zelk_clap ${CMAKE_DL_LIBS})
target_compile_definitions(bench_host PRIVATE ZELK_PLUGIN_FILE="$<TARGET_FILE:zelk_plugin>")
add_dependencies(bench_host zelk_plugin)
