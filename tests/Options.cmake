# Configures the project without a preset and without tests, and compares its options with those of the page for
# integrators. OTHER_CACHE is the CMakeCache.txt of a build with tests.
#
# cmake -D SOURCE_DIR=... -D BUILD_DIR=... -D CONFIGURATION=... -D OTHER_CACHE=... -P Options.cmake
include(${CMAKE_CURRENT_LIST_DIR}/Steps.cmake)

file(REMOVE_RECURSE ${BUILD_DIR})
run("Configuring" ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${BUILD_DIR} ${CONFIGURATION}
  -D BUILD_TESTING=OFF -D CMAKE_EXPORT_COMPILE_COMMANDS=ON)

run("Listing the tests" ${CMAKE_CTEST_COMMAND} --test-dir ${BUILD_DIR} --show-only)
if(NOT output MATCHES "Total Tests: 0" OR EXISTS ${BUILD_DIR}/tests)
  message(FATAL_ERROR "BUILD_TESTING=OFF leaves tests:\n${output}")
endif()

file(READ ${BUILD_DIR}/compile_commands.json commands)
if(NOT commands MATCHES " -Wall " OR commands MATCHES " -Werror")
  message(FATAL_ERROR "Without a preset, warnings are errors or are not enabled")
endif()

# Every option that a build has kept is in the table, and the table has no other.
file(STRINGS ${OTHER_CACHE} options REGEX "^TAVRIN_[A-Z_]+:(BOOL|STRING|PATH|FILEPATH)=")
list(TRANSFORM options REPLACE ":.*" "")
list(APPEND options BUILD_SHARED_LIBS BUILD_TESTING TAVRIN_LOGGER_LIBRARY TAVRIN_SUPPORT_LIBRARY TAVRIN_XML_LIBRARY)
list(SORT options)
file(STRINGS ${SOURCE_DIR}/docs/integration.md documented REGEX "^\\| `[A-Z_]+` \\|")
list(TRANSFORM documented REPLACE "^\\| `([A-Z_]+)`.*" "\\1")
if(NOT options STREQUAL documented)
  message(FATAL_ERROR "The build has the options\n  ${options}\nand docs/integration.md has, in this order,\n  ${documented}")
endif()
