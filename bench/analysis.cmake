zelk_bench(analysis LINKS zelk_analysis)
add_executable(bench_eqmatch eqMatchStatistics.cpp)
target_link_libraries(bench_eqmatch PRIVATE zelk_analysis)
# The curves of the tests, which are a header alone; the library beside it has a main of its own.
foreach(program IN ITEMS bench_analysis bench_eqmatch)
    target_include_directories(${program} PRIVATE "${PROJECT_BINARY_DIR}/rooms/zelk_tests_support")
endforeach()
