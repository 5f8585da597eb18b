# Cross-builds for TAVRIN_ARCHITECTURE, a Debian architecture, on 64-bit x86. The compiler and the C and C++ run-time
# libraries are those of Debian's cross compiler; all other libraries are in the directory that cmake/sysroot fills.
set(CMAKE_SYSTEM_NAME Linux)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TAVRIN_ARCHITECTURE)

# architecture, GNU triplet, directory of libraries, processor, emulator; cmake/sysroot reads these lines, too
set(i386 i686-linux-gnu i386-linux-gnu i686 "")
set(arm64 aarch64-linux-gnu aarch64-linux-gnu aarch64 qemu-aarch64)
set(armhf arm-linux-gnueabihf arm-linux-gnueabihf armv7l qemu-arm)
if(NOT TAVRIN_ARCHITECTURE MATCHES "^(i386|arm64|armhf)$")
  message(FATAL_ERROR "TAVRIN_ARCHITECTURE must be i386, arm64 or armhf, not \"${TAVRIN_ARCHITECTURE}\"")
endif()
list(GET ${TAVRIN_ARCHITECTURE} 0 triplet)
list(GET ${TAVRIN_ARCHITECTURE} 1 CMAKE_LIBRARY_ARCHITECTURE)
list(GET ${TAVRIN_ARCHITECTURE} 2 CMAKE_SYSTEM_PROCESSOR)
list(GET ${TAVRIN_ARCHITECTURE} 3 emulator)

set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
if(TAVRIN_ARCHITECTURE MATCHES "^arm")
  set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)  # notes about the calling conventions of GCC before versions 7 and 10
endif()
if(emulator)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L /usr/${triplet})
endif()

cmake_path(SET sysroot NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-${TAVRIN_ARCHITECTURE})
if(NOT EXISTS ${sysroot}/origin)
  message(FATAL_ERROR "Fill the directory of ${TAVRIN_ARCHITECTURE} libraries first: cmake/sysroot ${TAVRIN_ARCHITECTURE}")
endif()
set(CMAKE_FIND_ROOT_PATH ${sysroot})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${sysroot})
set(ENV{PKG_CONFIG_LIBDIR} ${sysroot}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:${sysroot}/usr/share/pkgconfig)

# The dependencies of libraries in the directory are also found there, when linking and when running. (DT_RUNPATH
# applies only to the direct dependencies of a program.)
set(CMAKE_BUILD_RPATH ${sysroot}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE})
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--disable-new-dtags")
