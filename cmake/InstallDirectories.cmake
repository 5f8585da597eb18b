# The installation directories, as in Debian: libraries of several architectures can be below one prefix.
if(CMAKE_LIBRARY_ARCHITECTURE)
  set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE STRING "Libraries, relative to the prefix")
endif()
set(CMAKE_INSTALL_DOCDIR share/doc/libtavrin-driver-doc CACHE STRING "Documentation, relative to the prefix")
include(GNUInstallDirs)
set(TAVRIN_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/tavrin_driver)
