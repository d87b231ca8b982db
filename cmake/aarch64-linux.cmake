# Linux on 64-bit ARM by Debian's cross compiler; programs run under user-mode emulation. The libraries are those that
# tools/make-arm64-sysroot collects.
set(ORN_ARM64_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/arm64-sysroot")
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_SYSROOT "${ORN_ARM64_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${ORN_ARM64_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR} "${ORN_ARM64_SYSROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${ORN_ARM64_SYSROOT}/usr/share/pkgconfig")
# The linker takes where a library looks for another one for a path below the libraries' root.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${CMAKE_BINARY_DIR}/lib")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static -L "${ORN_ARM64_SYSROOT}")
