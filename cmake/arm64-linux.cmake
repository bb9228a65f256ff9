# Builds for 64-bit ARM under Linux with Debian's cross compiler and runs the tests in an emulator. Libraries come from
# Debian's arm64 packages (tools/setup.sh arm64).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)
