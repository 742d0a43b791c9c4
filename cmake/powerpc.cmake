# The board: 32-bit big-endian PowerPC. Its programs are built by Debian's cross compiler, by the compilers in CC and CXX,
# or with the toolchain file in CMAKE_TOOLCHAIN_FILE. Without a toolchain file, qemu-ppc runs them here.

# The cache keeps the name of the toolchain file, since ninja can run CMake again later with another environment.
set(KOVA_TOOLCHAIN_FILE "$ENV{CMAKE_TOOLCHAIN_FILE}" CACHE FILEPATH "Toolchain file of another cross compiler")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KOVA_TOOLCHAIN_FILE)
if(KOVA_TOOLCHAIN_FILE)
  include(${KOVA_TOOLCHAIN_FILE})
  return()
endif()

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ppc)
if(NOT DEFINED ENV{CXX} AND NOT DEFINED CACHE{CMAKE_CXX_COMPILER})
  set(CMAKE_C_COMPILER powerpc-linux-gnu-gcc)
  set(CMAKE_CXX_COMPILER powerpc-linux-gnu-g++)
endif()
set(CMAKE_FIND_ROOT_PATH /usr/powerpc-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# QEMU_LD_PREFIX names the folder of a C library that is not Debian's.
if(DEFINED ENV{QEMU_LD_PREFIX})
  set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc)
else()
  set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-ppc;-L;/usr/powerpc-linux-gnu")
endif()
# The board's root file system need not have the C++ runtime.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++")
