# 32-bit code for the controller, built and run on a 64-bit machine: compiler and C and C++ run-time libraries are those
# of g++-multilib, every other library comes from the directory that cmake/i386-sysroot fills.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)

set(CMAKE_C_FLAGS_INIT -m32)
set(CMAKE_CXX_FLAGS_INIT -m32)

cmake_path(SET sysroot NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-i386)
if(NOT EXISTS ${sysroot}/origin)
  message(FATAL_ERROR "Fill the i386 libraries first: cmake/i386-sysroot build/sysroot-i386")
endif()
set(CMAKE_FIND_ROOT_PATH ${sysroot})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${sysroot})
set(ENV{PKG_CONFIG_LIBDIR} ${sysroot}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:${sysroot}/usr/share/pkgconfig)

# What libraries of the directory need themselves is found there too, when linking and when running.
# (The newer kind of path holds only for what the program itself names.)
set(CMAKE_BUILD_RPATH ${sysroot}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE})
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--disable-new-dtags")
