# Builds for 64-bit Windows with Debian's cross compiler and runs the tests under Wine. Libraries are Debian's for this
# compiler, and what tools/windows_libraries.sh made of Debian's sources.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# The variant with POSIX threads: the other one has no std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Windows aligns stacks to 16 bytes, and this compiler goes no further, yet takes its own 32- and 64-byte variables for
# aligned. So the assembler writes every aligned move as the unaligned one, which is as fast where the place happens to
# be aligned. Nothing else of AVX wants alignment.
set(CMAKE_CXX_FLAGS_INIT -Wa,-muse-unaligned-vector-move)
set(CMAKE_C_FLAGS_INIT ${CMAKE_CXX_FLAGS_INIT})

get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
set(CMAKE_FIND_ROOT_PATH ${root}/build/windows-libraries /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The C++ runtime and the threads go into every file: no DLL is needed that Windows does not have.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)
set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a CACHE FILEPATH "There is one for a DLL beside it")

set(CMAKE_CROSSCOMPILING_EMULATOR ${root}/tools/wine.sh)
