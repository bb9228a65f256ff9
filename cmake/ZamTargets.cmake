# Flags and the helpers that every folder's CMakeLists.txt uses.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Files whose names end in it are for this family of systems.
if(WIN32)
    set(ZAM_PLATFORM windows)
else()
    set(ZAM_PLATFORM posix)
endif()

# What every target of the project is compiled with. The compiler fuses no multiply-adds by itself: formulas do where
# they mean it (docs/performance.md).
add_library(zam_flags INTERFACE)
target_include_directories(zam_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(zam_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow -ffp-contract=off)
if(ZAM_WERROR)
    target_compile_options(zam_flags INTERFACE -Werror)
endif()
if(ZAM_SANITIZE)
    target_compile_options(zam_flags INTERFACE -fsanitize=${ZAM_SANITIZE} -fno-sanitize-recover=all
                                               -fno-omit-frame-pointer
                                               # Plug-in and host are strangers that share memory layouts, not types.
                                               $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)
    target_link_options(zam_flags INTERFACE -fsanitize=${ZAM_SANITIZE})
endif()

if(ZAM_FUZZ)  # counts which branches an input takes
    target_compile_options(zam_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# zam_library(NAME SOURCES file... USES target...): a static library of one folder, and all that it may use.
function(zam_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC zam_flags ${arg_USES})
endfunction()

# zam_test(NAME SOURCES file... USES target...): one GoogleTest program, registered test by test.
function(zam_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE zam_flags ${arg_USES} GTest::gtest_main GTest::gmock)
    gtest_discover_tests(${name} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} PROPERTIES LABELS zam
                         DISCOVERY_TIMEOUT 60)
endfunction()
