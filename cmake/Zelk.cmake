# One function a kind of target. A folder is a room: it sees only the rooms that it links, because each room's headers
# are reached through an include root of their own that holds nothing but this room.

add_library(zelk_flags INTERFACE)
target_compile_features(zelk_flags INTERFACE cxx_std_20)
target_compile_options(zelk_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
    -fvisibility=hidden -fvisibility-inlines-hidden -fno-math-errno -ffp-contract=off
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
    $<$<BOOL:${ZELK_WERROR}>:-Werror>)
if(ZELK_REALTIME_CHECKS)
    target_compile_definitions(zelk_flags INTERFACE ZELK_REALTIME_CHECKS=1)
endif()
if(ZELK_SANITIZE)
    target_compile_options(zelk_flags INTERFACE -fsanitize=${ZELK_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(zelk_flags INTERFACE -fsanitize=${ZELK_SANITIZE})
endif()

# zelk_folder(base SOURCES a.cpp b.cpp LINKS zelk_x [PRIVATE_LINKS ZLIB::ZLIB])
# The target of folder a/b is zelk_a_b.
function(zelk_folder folder)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    string(REPLACE "/" "_" target "zelk_${folder}")
    set(room "${PROJECT_BINARY_DIR}/rooms/${target}")
    get_filename_component(parent "${room}/${folder}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${folder}" "${room}/${folder}" SYMBOLIC)
    add_library(${target} STATIC ${ARG_SOURCES})
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_include_directories(${target} PUBLIC "${room}")
    target_link_libraries(${target} PUBLIC zelk_flags ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
endfunction()

# zelk_tests(base SOURCES XTest.cpp LINKS zelk_base [LABELS process] [THREADS XTest]): one program a folder, each test
# known to ctest by the folder and the labels. Two labels have a meaning of their own: "realtime" for what must keep the
# audio thread's rules, which "process", "dsp" and the folders of signal work imply, and "threads" for what
# ThreadSanitizer shall see, which only the suites behind THREADS carry. The targets tests_realtime and tests_threads
# build the programs that have such tests.
add_custom_target(tests_threads)
add_custom_target(tests_realtime)
function(zelk_tests folder)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;LABELS;THREADS" ${ARGN})
    string(REPLACE "/" "_" name "test_${folder}")
    set(room "${PROJECT_BINARY_DIR}/rooms/${name}")
    get_filename_component(parent "${room}/tests/${folder}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${room}/tests/${folder}" SYMBOLIC)
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${room}")
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} zelk_test_support GTest::gtest)
    if(ZELK_SANITIZE STREQUAL "realtime")
        # The check of function effects is for what ships: objects of tests stand on its road and say what went wrong.
        target_compile_options(${name} PRIVATE -Wno-function-effects)
    endif()
    set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
    set(labels ${folder} ${ARG_LABELS})
    foreach(implying IN ITEMS process dsp wave eq midi)
        if(implying IN_LIST labels)
            list(APPEND labels realtime)
        endif()
    endforeach()
    list(REMOVE_DUPLICATES labels)
    if(realtime IN_LIST labels)
        add_dependencies(tests_realtime ${name})
    endif()
    if(ARG_THREADS)
        add_dependencies(tests_threads ${name})
        string(REPLACE ";" "|" threaded_suites "${ARG_THREADS}")
    endif()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
    # A list does not survive the way through the discovery, so ctest gets the labels by a file of their own.
    set(labelled "${CMAKE_CURRENT_BINARY_DIR}/${name}_labels.cmake")
    file(CONFIGURE OUTPUT "${labelled}" @ONLY CONTENT [[
if(@name@_TESTS)
    set_tests_properties(${@name@_TESTS} PROPERTIES LABELS "@labels@")
    set(threaded ${@name@_TESTS})
    list(FILTER threaded INCLUDE REGEX "^(@threaded_suites@)[.]")
    if(threaded)
        set_tests_properties(${threaded} PROPERTIES LABELS "@labels@;threads")
    endif()
endif()
]])
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${labelled}")
endfunction()

# zelk_bench(wave LINKS zelk_wave): bench/waveBench.cpp as bench_wave.
function(zelk_bench folder)
    cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
    set(room "${PROJECT_BINARY_DIR}/rooms/bench")
    file(MAKE_DIRECTORY "${room}")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/bench" "${room}/bench" SYMBOLIC)
    add_executable(bench_${folder} ${folder}Bench.cpp)
    target_include_directories(bench_${folder} PRIVATE "${room}")
    target_link_libraries(bench_${folder} PRIVATE ${ARG_LINKS} zelk_flags benchmark::benchmark benchmark::benchmark_main)
endfunction()
