# Builds the library without the bundled platform, against the three platform libraries that are given, and uses the
# installation. Before that it checks the reports of integrators' errors. Of the library's tests, it builds and runs those
# of the logger's use. The tests named OtherPlatform run the others with these platform libraries.
#
# cmake -D SOURCE_DIR=... -D BUILD_DIR=... -D CONFIGURATION=... -D XML_LIBRARY=... -D SUPPORT_LIBRARY=...
#   -D LOGGER_LIBRARY=... -P ExternalPlatform.cmake
include(${CMAKE_CURRENT_LIST_DIR}/Steps.cmake)

set(build ${BUILD_DIR}/build)
set(refused ${BUILD_DIR}/refused)
set(configure ${CMAKE_COMMAND} -S ${SOURCE_DIR} ${CONFIGURATION}
  -D CMAKE_BUILD_TYPE=None -D BUILD_SHARED_LIBS=ON -D TAVRIN_BUNDLED_PLATFORM=OFF -D TAVRIN_EXAMPLES=OFF -D TAVRIN_DOCS=OFF)

file(REMOVE_RECURSE ${refused})
expect_refusal("TAVRIN_XML_LIBRARY is not set TAVRIN_SUPPORT_LIBRARY is not set TAVRIN_LOGGER_LIBRARY is not set"
  ${configure} -B ${refused})
expect_refusal("libraries: TAVRIN_SUPPORT_LIBRARY is \"/nowhere/lib.so\", which does not exist TAVRIN_LOGGER_LIBRARY is \"${SOURCE_DIR}\", which is a directory"
  ${configure} -B ${refused} -D TAVRIN_XML_LIBRARY=${XML_LIBRARY} -D TAVRIN_SUPPORT_LIBRARY=/nowhere/lib.so
  -D TAVRIN_LOGGER_LIBRARY=${SOURCE_DIR})

run("Configuring" ${configure} -B ${build} -D TAVRIN_XML_LIBRARY=${XML_LIBRARY}
  -D TAVRIN_SUPPORT_LIBRARY=${SUPPORT_LIBRARY} -D TAVRIN_LOGGER_LIBRARY=${LOGGER_LIBRARY})
run("Building" ${CMAKE_COMMAND} --build ${build} --parallel 2
  --target tavrin_driver tavrin_colorimetry LogWithStack_test)
run("Testing" ${CMAKE_CTEST_COMMAND} --test-dir ${build} --tests-regex "^LogWithStack\\." --no-tests=error)

# The installed library searches its directory and the search path of the loader.
cmake_path(GET XML_LIBRARY PARENT_PATH platform)
set(ENV{LD_LIBRARY_PATH} ${platform})
install_and_use(${build})
file(REMOVE_RECURSE ${refused})
expect_refusal("TAVRIN_XML_LIBRARY has to name a library, not \"/nowhere/lib.so\""
  ${configure_samples} -B ${refused} -D TAVRIN_XML_LIBRARY=/nowhere/lib.so)
