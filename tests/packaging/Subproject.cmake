# Builds the library in another project, where it is static, and uses it there and installed in an absolute directory.
#
# cmake -D SOURCE_DIR=... -D BUILD_DIR=... -D CONFIGURATION=... -D COMPILER=... -P Subproject.cmake
include(${CMAKE_CURRENT_LIST_DIR}/Steps.cmake)

set(build ${BUILD_DIR}/build)
run("Configuring" ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/subproject -B ${build} ${CONFIGURATION}
  -D TAVRIN_SOURCE_DIR=${SOURCE_DIR} -D TAVRIN_INSTALL=ON
  -D CMAKE_INSTALL_PREFIX=${BUILD_DIR}/installed -D CMAKE_INSTALL_LIBDIR=${BUILD_DIR}/installed/lib)
run("Building" ${CMAKE_COMMAND} --build ${build} --parallel 2)
run_sample(${build}/first_command)

file(GLOB built RELATIVE ${build}/tavrin_driver LIST_DIRECTORIES true ${build}/tavrin_driver/*/CMakeFiles)
if(NOT built STREQUAL "colorimetry/CMakeFiles;diagnostics/CMakeFiles;platform/CMakeFiles;tavrin_driver/CMakeFiles")
  message(FATAL_ERROR "More is built than the libraries: ${built}")
endif()
file(GLOB_RECURSE libraries RELATIVE ${build}/tavrin_driver ${build}/tavrin_driver/libtavrin_*)
if(NOT libraries MATCHES "libtavrin_driver\\.a" OR libraries MATCHES "\\.so")
  message(FATAL_ERROR "The libraries are not static: ${libraries}")
endif()

install_and_use(${build})
if(NOT EXISTS ${prefix}/lib/libtavrin_driver.a)
  message(FATAL_ERROR "The libraries are not installed in the given directory")
endif()

# Boost versions below the minimum are rejected.
set(boost ${BUILD_DIR}/boost)
file(WRITE ${boost}/BoostConfig.cmake "add_library(Boost::headers INTERFACE IMPORTED)\n")
file(WRITE ${boost}/BoostConfigVersion.cmake "set(PACKAGE_VERSION 1.71)
string(COMPARE LESS_EQUAL \"\${PACKAGE_FIND_VERSION}\" 1.71 PACKAGE_VERSION_COMPATIBLE)\n")
expect_refusal("\"Boost\" that is compatible with requested version \"1.72\".* version: 1.71"
  ${configure_samples} -B ${BUILD_DIR}/samples -D Boost_DIR=${boost}
  -D CMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF -D CMAKE_FIND_USE_SYSTEM_ENVIRONMENT_PATH=OFF)

file(GLOB_RECURSE module ${prefix}/tavrin_driver.pc)
cmake_path(GET module PARENT_PATH modules)
set(ENV{PKG_CONFIG_PATH} ${modules})
set(program ${BUILD_DIR}/first_command)
run("Asking pkg-config" pkg-config --cflags --libs --static tavrin_driver)
separate_arguments(flags UNIX_COMMAND "${output}")
run("Building a sample with pkg-config" ${COMPILER} -std=c++17 -o ${program} ${SOURCE_DIR}/examples/first_command.cpp
  ${flags})
run_sample(${program})
