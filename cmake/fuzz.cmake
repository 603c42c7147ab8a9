# Fuzz build (clang, libFuzzer): one executable per <folder>/fuzz/<name>_fuzz.cpp, each a thin
# LLVMFuzzerTestOneInput over its folder's "one input" functions, which the unit tests also run over the
# kept regression inputs. The core is built with the same sanitizers, so a fault anywhere below is caught.
if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "The fuzz build needs clang (libFuzzer): -DCMAKE_CXX_COMPILER=clang++")
endif()
set(TL_FUZZ_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
target_compile_options(tessaline_core PUBLIC ${TL_FUZZ_FLAGS} -fsanitize=fuzzer-no-link)
target_link_options(tessaline_core PUBLIC ${TL_FUZZ_FLAGS})

add_library(tessaline_posix STATIC ${TL_POSIX})
target_link_libraries(tessaline_posix PUBLIC tessaline_core)
target_compile_options(tessaline_posix PRIVATE ${TL_WARNINGS})

file(GLOB TL_FUZZ_INPUTS CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/*/fuzz/*.cpp")
file(GLOB TL_FUZZ_TARGETS CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/*/fuzz/*_fuzz.cpp")
list(FILTER TL_FUZZ_INPUTS EXCLUDE REGEX "_fuzz\\.cpp$")
add_library(tessaline_fuzz_inputs STATIC ${TL_FUZZ_INPUTS})
target_link_libraries(tessaline_fuzz_inputs PUBLIC tessaline_posix)
target_compile_options(tessaline_fuzz_inputs PRIVATE ${TL_WARNINGS})

foreach(src IN LISTS TL_FUZZ_TARGETS)
    get_filename_component(name ${src} NAME_WE)
    add_executable(${name} ${src})
    target_link_libraries(${name} PRIVATE tessaline_fuzz_inputs)
    target_compile_options(${name} PRIVATE ${TL_WARNINGS})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endforeach()
