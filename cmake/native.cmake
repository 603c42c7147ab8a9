# Native build: the portable core, its unit tests and the benchmarks.
option(TESSALINE_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" ON)
if(TESSALINE_SANITIZE)
    set(TL_SANITIZERS -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_compile_options(tessaline_core PUBLIC ${TL_SANITIZERS})
    target_link_options(tessaline_core PUBLIC ${TL_SANITIZERS})
endif()

add_library(tessaline_posix STATIC ${TL_POSIX})
target_link_libraries(tessaline_posix PUBLIC tessaline_core)
target_compile_options(tessaline_posix PRIVATE ${TL_WARNINGS})

find_package(GTest REQUIRED)
# The JPEG library keeps its tests beside it. The fuzz targets' "one input" functions are built into the unit
# tests too, which run them over every kept regression input (<folder>/fuzz/regressions/<target>/).
file(GLOB_RECURSE TL_UNIT_TESTS CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/unit/*.cpp"
     "${CMAKE_SOURCE_DIR}/jpeg/tests/*.cpp")
file(GLOB TL_FUZZ_INPUTS CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/*/fuzz/*.cpp")
list(FILTER TL_FUZZ_INPUTS EXCLUDE REGEX "_fuzz\\.cpp$")
add_executable(unit_tests ${TL_UNIT_TESTS} ${TL_FUZZ_INPUTS})
target_include_directories(unit_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests/unit ${CMAKE_SOURCE_DIR}/tests)
target_compile_definitions(unit_tests PRIVATE TL_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
target_link_libraries(unit_tests PRIVATE tessaline_posix GTest::gtest GTest::gtest_main GTest::gmock)
target_compile_options(unit_tests PRIVATE ${TL_WARNINGS} -Wno-sign-conversion)

enable_testing()
add_test(NAME unit_tests COMMAND unit_tests)

# Benchmarks: one executable per bench/*.cpp (Win32 ones end in _win.cpp and build on the Windows side).
file(GLOB TL_BENCHES CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/bench/*.cpp")
list(FILTER TL_BENCHES EXCLUDE REGEX "_win\\.cpp$")
foreach(src IN LISTS TL_BENCHES)
    get_filename_component(name ${src} NAME_WE)
    add_executable(${name} ${src})
    target_link_libraries(${name} PRIVATE tessaline_posix)
    target_compile_options(${name} PRIVATE ${TL_WARNINGS})
endforeach()
