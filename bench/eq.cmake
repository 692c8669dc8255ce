zelk_bench(eq LINKS zelk_eq)

# Not a speed but a precision: prints the tables of docs/filter-accuracy.md.
add_executable(eqAccuracy eqAccuracy.cpp)
target_link_libraries(eqAccuracy PRIVATE zelk_eq zelk_test_support)

# How loud the factory presets are beside their input.
add_executable(presetLevels presetLevels.cpp)
target_link_libraries(presetLevels PRIVATE zelk_framework_zelk zelk_test_support)
