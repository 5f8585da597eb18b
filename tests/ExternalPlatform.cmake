# Builds the library without the bundled platform, against the three platform libraries that are given, and runs
# the tests of the library. Before that it makes the mistakes that an integrator may make.
#
# cmake -D SOURCE_DIR=... -D BUILD_DIR=... -D CONFIGURATION=... -D XML_LIBRARY=... -D SUPPORT_LIBRARY=...
#   -D LOGGER_LIBRARY=... -P ExternalPlatform.cmake

# run(<what> <command>...): the command's output is shown only when it fails. Leaves it in `output`.
function(run what)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message("${output}")
    message(FATAL_ERROR "Without the bundled platform, ${what} failed (${result})")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

set(configure ${CMAKE_COMMAND} -S ${SOURCE_DIR} ${CONFIGURATION}
  -D BUILD_SHARED_LIBS=ON -D TAVRIN_BUNDLED_PLATFORM=OFF -D TAVRIN_EXAMPLES=OFF -D TAVRIN_DOCS=OFF)

# expect_refusal(<pattern> <option>...): configuring with these options fails with such a message.
function(expect_refusal pattern)
  execute_process(COMMAND ${configure} -B ${BUILD_DIR}_refused ${ARGN}
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  file(REMOVE_RECURSE ${BUILD_DIR}_refused)
  string(REGEX REPLACE "[ \n]+" " " output "${output}")
  if(result EQUAL 0 OR NOT output MATCHES "${pattern}")
    message(FATAL_ERROR "Configuring with \"${ARGN}\" should be refused with \"${pattern}\", but gave\n${output}")
  endif()
endfunction()

expect_refusal("TAVRIN_XML_LIBRARY is not set TAVRIN_SUPPORT_LIBRARY is not set TAVRIN_LOGGER_LIBRARY is not set")
expect_refusal("libraries: TAVRIN_SUPPORT_LIBRARY is \"/nowhere/lib.so\", which does not exist TAVRIN_LOGGER_LIBRARY is \"${SOURCE_DIR}\", which is a directory"
  -D TAVRIN_XML_LIBRARY=${XML_LIBRARY} -D TAVRIN_SUPPORT_LIBRARY=/nowhere/lib.so -D TAVRIN_LOGGER_LIBRARY=${SOURCE_DIR})

run("configuring" ${configure} -B ${BUILD_DIR} -D TAVRIN_XML_LIBRARY=${XML_LIBRARY}
  -D TAVRIN_SUPPORT_LIBRARY=${SUPPORT_LIBRARY} -D TAVRIN_LOGGER_LIBRARY=${LOGGER_LIBRARY})
run("building" ${CMAKE_COMMAND} --build ${BUILD_DIR} --parallel 2)
run("testing" ${CMAKE_CTEST_COMMAND} --test-dir ${BUILD_DIR} --output-on-failure --no-tests=error --parallel 2)

if(NOT output MATCHES "tests passed, 0 tests failed out of ([1-9][0-9]*)")
  message(FATAL_ERROR "No count of tests in\n${output}")
endif()
message("${CMAKE_MATCH_1} tests passed on the test platform")
