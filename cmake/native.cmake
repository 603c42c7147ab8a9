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
# The JPEG library keeps its tests beside it.
file(GLOB_RECURSE TL_UNIT_TESTS CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/unit/*.cpp"
     "${CMAKE_SOURCE_DIR}/jpeg/tests/*.cpp")
add_executable(unit_tests ${TL_UNIT_TESTS})
target_include_directories(unit_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests/unit ${CMAKE_SOURCE_DIR}/tests)
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
