# Windows build (mingw-w64): tessaline.exe, the Win32 glue library, the Wine-run tests and benchmarks.
enable_language(RC)
# comdlg32 is loaded on the first file dialog rather than at start (a delay-load import library made with
# dlltool): it brings in the print spooler, which under Wine loads CUPS and the TLS and Kerberos libraries
# behind it, a megabyte of the working set of a program that mostly idles in the tray. Another function of
# it goes into the list below; the default libraries leave comdlg32 and winspool out, so that nothing links
# them at start unnoticed.
set(TL_COMDLG32_DEF ${CMAKE_BINARY_DIR}/comdlg32-delay.def)
set(TL_COMDLG32_DELAY ${CMAKE_BINARY_DIR}/libcomdlg32-delay.a)
file(WRITE ${TL_COMDLG32_DEF} "LIBRARY comdlg32.dll\nEXPORTS\nCommDlgExtendedError\nGetOpenFileNameW\nGetSaveFileNameW\n")
execute_process(COMMAND ${CMAKE_DLLTOOL} --input-def comdlg32-delay.def --dllname comdlg32.dll
                        --output-delaylib libcomdlg32-delay.a
                WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
                RESULT_VARIABLE TL_DLLTOOL_RESULT)
if(NOT TL_DLLTOOL_RESULT EQUAL 0)
    message(FATAL_ERROR "dlltool could not make ${TL_COMDLG32_DELAY}")
endif()
set(TL_WIN_LIBS comctl32 shell32 ole32 oleaut32 uuid windowscodecs shlwapi gdi32 user32 advapi32 version
                ${TL_COMDLG32_DELAY} delayimp)
set(CMAKE_CXX_STANDARD_LIBRARIES "-lkernel32 -luser32 -lgdi32 -lshell32 -lole32 -loleaut32 -luuid -ladvapi32")
set(CMAKE_C_STANDARD_LIBRARIES "${CMAKE_CXX_STANDARD_LIBRARIES}")
set(TL_STATIC -static -static-libgcc -static-libstdc++)
# Sections start at page boundaries in the file as well as in memory, so that Wine maps a program's image
# from its file as Windows does; with the usual 512-byte file alignment it reads the whole image into
# private memory instead, about a megabyte of Tessaline's working set in the tray.
set(TL_EXE_LINK ${TL_STATIC} -Wl,--file-alignment,4096)
# Text crosses to Windows as UTF-16 through the W functions (the program's own strings are UTF-8); with
# UNICODE the headers' plain names are the W ones too.
add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 WINVER=0x0601 STRICT UNICODE _UNICODE)
target_link_options(tessaline_core PUBLIC ${TL_STATIC})

list(FILTER TL_WIN EXCLUDE REGEX "/app/main_win\\.cpp$")
add_library(tessaline_win STATIC ${TL_WIN})
target_link_libraries(tessaline_win PUBLIC tessaline_core ${TL_WIN_LIBS})
target_compile_options(tessaline_win PRIVATE ${TL_WARNINGS})

set(TL_RC ${CMAKE_SOURCE_DIR}/app/tessaline.rc)
# The subsystems' own resource scripts and pictures, which tessaline.rc includes.
file(GLOB TL_RC_PARTS CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/*/*.rc" "${CMAKE_SOURCE_DIR}/*/res/*")
list(REMOVE_ITEM TL_RC_PARTS ${TL_RC})
set_source_files_properties(${TL_RC} PROPERTIES
    OBJECT_DEPENDS "${CMAKE_SOURCE_DIR}/app/tessaline.manifest;${TL_RC_PARTS}")

add_executable(tessaline WIN32 app/main_win.cpp ${TL_RC})
target_link_libraries(tessaline PRIVATE tessaline_win)
target_compile_options(tessaline PRIVATE ${TL_WARNINGS})
target_link_options(tessaline PRIVATE -mwindows ${TL_EXE_LINK})
set_target_properties(tessaline PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
# The debug information goes to tessaline.exe.debug beside the program (linked by name, so debuggers and
# addr2line still find it): a loader that copies the whole image into memory, as Wine does with 512-byte
# file alignment, would otherwise keep megabytes of it in the running program's working set.
if(CMAKE_OBJCOPY)
    add_custom_command(TARGET tessaline POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:tessaline> $<TARGET_FILE:tessaline>.debug
        COMMAND ${CMAKE_OBJCOPY} --strip-debug --add-gnu-debuglink=$<TARGET_FILE:tessaline>.debug
                $<TARGET_FILE:tessaline>
        WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
        VERBATIM)
endif()

# GoogleTest: from its sources where they are at hand (Debian's, cross-compiled), else installed (MSYS2).
set(TESSALINE_GTEST_SOURCE "/usr/src/googletest" CACHE PATH "GoogleTest sources to build the Win32 tests with")
if(EXISTS "${TESSALINE_GTEST_SOURCE}/CMakeLists.txt")
    set(gtest_force_shared_crt OFF CACHE BOOL "" FORCE)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
    add_subdirectory(${TESSALINE_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
else()
    find_package(GTest REQUIRED)
    add_library(gtest ALIAS GTest::gtest)
    add_library(gmock ALIAS GTest::gmock)
    add_library(gtest_main ALIAS GTest::gtest_main)
endif()

file(GLOB_RECURSE TL_WIN_TESTS CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/win/*.cpp")
add_executable(win_tests ${TL_WIN_TESTS} ${TL_RC})
target_include_directories(win_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests/win ${CMAKE_SOURCE_DIR}/tests)
target_link_libraries(win_tests PRIVATE tessaline_win gtest gmock gtest_main)
target_compile_options(win_tests PRIVATE ${TL_WARNINGS} -Wno-sign-conversion)
target_link_options(win_tests PRIVATE ${TL_EXE_LINK})
set_target_properties(win_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})

file(GLOB TL_WIN_BENCHES CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/bench/*_win.cpp")
foreach(src IN LISTS TL_WIN_BENCHES)
    get_filename_component(name ${src} NAME_WE)
    add_executable(${name} ${src})
    target_link_libraries(${name} PRIVATE tessaline_win)
    target_compile_options(${name} PRIVATE ${TL_WARNINGS})
    target_link_options(${name} PRIVATE ${TL_EXE_LINK})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endforeach()

# The install test's probe (tests/install/run.sh): a console program that plays a sign-in and looks for
# the installed program in the tray.
add_executable(install_probe tests/install/probe.cpp)
target_link_libraries(install_probe PRIVATE shell32 user32 advapi32)
target_compile_options(install_probe PRIVATE ${TL_WARNINGS})
target_link_options(install_probe PRIVATE ${TL_STATIC})
set_target_properties(install_probe PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
