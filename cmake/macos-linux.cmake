# Builds Zam.plugin on Linux with what tools/macos/setup.sh brings: to see that it builds and is laid out as it should be.
# Nobody signs it here; bundles for use are made on a Mac by the preset macos.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_C_COMPILER ${CMAKE_CURRENT_LIST_DIR}/../tools/macos/driver cc)
set(CMAKE_CXX_COMPILER ${CMAKE_CURRENT_LIST_DIR}/../tools/macos/driver c++)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_AR llvm-ar-14 CACHE STRING "")
set(CMAKE_RANLIB llvm-ranlib-14 CACHE STRING "")
set(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool-14 CACHE STRING "")
