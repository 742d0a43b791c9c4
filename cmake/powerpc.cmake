# The board: 32-bit big-endian PowerPC. Built by Debian's cross compiler, by the one that CC and CXX name, or as the
# toolchain file says that CMAKE_TOOLCHAIN_FILE in the environment names; run here by user-mode emulation.

# What the first run found in the environment holds for the later ones.
set(KOVA_TOOLCHAIN_FILE "$ENV{CMAKE_TOOLCHAIN_FILE}" CACHE FILEPATH "Toolchain file of another cross compiler")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KOVA_TOOLCHAIN_FILE)
if(DEFINED ENV{CMAKE_TOOLCHAIN_FILE} AND NOT "$ENV{CMAKE_TOOLCHAIN_FILE}" STREQUAL KOVA_TOOLCHAIN_FILE)
  message(FATAL_ERROR "This build folder has another toolchain file: \"${KOVA_TOOLCHAIN_FILE}\". Remove the folder.")
endif()
if(KOVA_TOOLCHAIN_FILE AND NOT KOVA_TOOLCHAIN_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  include(${KOVA_TOOLCHAIN_FILE})
  return()
endif()

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ppc)
if(NOT DEFINED ENV{CC} AND NOT DEFINED ENV{CXX} AND NOT DEFINED CACHE{CMAKE_CXX_COMPILER})
  set(CMAKE_C_COMPILER powerpc-linux-gnu-gcc)
  set(CMAKE_CXX_COMPILER powerpc-linux-gnu-g++)
endif()
set(CMAKE_FIND_ROOT_PATH /usr/powerpc-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Where the C library is not Debian's, QEMU_LD_PREFIX says where.
if(DEFINED ENV{QEMU_LD_PREFIX})
  set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc)
else()
  set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-ppc;-L;/usr/powerpc-linux-gnu")
endif()
# The board's root file system need not carry the C++ runtime.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++")
