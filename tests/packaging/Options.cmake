# Configures the project without a preset, without tests and without optional packages, and compares its options with
# docs/integration.md. OTHER_CACHE is the CMakeCache.txt of a build with tests.
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

file(STRINGS ${BUILD_DIR}/CMakeCache.txt buildType REGEX "^CMAKE_BUILD_TYPE:")
if(NOT buildType STREQUAL "CMAKE_BUILD_TYPE:STRING=RelWithDebInfo")
  message(FATAL_ERROR "Without a build type, the cache contains ${buildType}")
endif()

# An external level of _FORTIFY_SOURCE is kept, and is never combined with -O0.
set(bare ${BUILD_DIR}-bare)
file(REMOVE_RECURSE ${bare})
run("Configuring with _FORTIFY_SOURCE and unity builds" ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${bare} ${CONFIGURATION}
  -D CMAKE_CXX_FLAGS=-D_FORTIFY_SOURCE=3 -D CMAKE_UNITY_BUILD=ON -D CMAKE_EXPORT_COMPILE_COMMANDS=ON)
file(STRINGS ${bare}/compile_commands.json commands REGEX "\"command\":")
set(unoptimised ${commands})
list(FILTER unoptimised INCLUDE REGEX " -O0 ")
set(wrong ${commands})
list(FILTER wrong INCLUDE REGEX "_FORTIFY_SOURCE=2|unity_[0-9]")
set(fortified ${unoptimised})
list(FILTER fortified EXCLUDE REGEX " -O0 -U_FORTIFY_SOURCE ")
if(NOT unoptimised OR wrong OR fortified)
  message(FATAL_ERROR "_FORTIFY_SOURCE has another level or lacks the optimiser, or sources outside groups are joined:\n${wrong}${fortified}")
endif()

# Parts that need missing packages are left out with a message. BUILD_SHARED_LIBS has separate tests.
set(missing "")
foreach(package Doxygen benchmark)
  list(APPEND missing -D CMAKE_DISABLE_FIND_PACKAGE_${package}=ON)
endforeach()
foreach(program ABIDIFF DPKG_ARCHITECTURE FISH GCOVR MANDOC NPM PKG_CONFIG ZSH)
  list(APPEND missing -D ${program}_PROGRAM=OFF)
endforeach()
foreach(module JSONSCHEMA MPMATH)
  list(APPEND missing -D ${module}_PYTHON_MODULE=OFF)
endforeach()
set(configure ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${bare} ${CONFIGURATION} -D BUILD_SHARED_LIBS=ON
  -D CMAKE_EXPORT_COMPILE_COMMANDS=ON)
file(REMOVE_RECURSE ${bare})
run("Configuring without anything optional" ${configure} ${missing})
foreach(message IN ITEMS
    "Doxygen was not found: TAVRIN_DOCS left out"
    "benchmark was not found: TAVRIN_BENCHMARKS left out"
    "abidiff was not found: tests of the ABI left out"
    "dpkg-architecture was not found: packages for Debian left out"
    "fish was not found: tests of completions for fish left out"
    "gcovr was not found: tests of the checks left out"
    "mandoc was not found: tests of the manual page left out"
    "npm was not found: tests with the XML conformance suite left out"
    "npm was not found: tests with the schema of SARIF left out"
    "pkg-config was not found: tests of the installation left out"
    "zsh was not found: tests of completions for zsh left out"
    "Python's module jsonschema was not found: tests of the formats of reports left out"
    "Python's module mpmath was not found: tests of colour data left out")
  string(FIND "${output}" "-- ${message}\n" position)
  if(position EQUAL -1)
    message(FATAL_ERROR "Configuring without anything optional does not report \"${message}\":\n${output}")
  endif()
endforeach()
file(GLOB_RECURSE scripts ${bare}/CTestTestfile.cmake)
set(tests "")
foreach(script IN LISTS scripts)
  file(READ ${script} content)
  string(APPEND tests "${content}")
endforeach()
if(NOT tests MATCHES "CmdMessage_test" OR tests MATCHES
    "XmlConformance|SarifSchema|ToolFormats|ManPage|ZshCompletionScript|Gates|Installation|Packages|KeepsTheTypes|PlanckianLocus|Benchmarks|Documentation")
  message(FATAL_ERROR "Tests without what they need, or no tests:\n${tests}")
endif()
file(REMOVE_RECURSE ${bare})
expect_refusal("Python's module sphinx was not found, which is needed for TAVRIN_DOCS"
  ${configure} -D TAVRIN_REQUIRE_OPTIONAL=ON -D CMAKE_DISABLE_FIND_PACKAGE_Doxygen=OFF -D SPHINX_PYTHON_MODULE=OFF)
expect_refusal("Doxygen was not found, which is needed for TAVRIN_DOCS"
  ${configure} -D TAVRIN_REQUIRE_OPTIONAL=ON -D CMAKE_DISABLE_FIND_PACKAGE_Doxygen=ON)
run("Configuring without network" ${configure} -D TAVRIN_REQUIRE_OPTIONAL=ON -D TAVRIN_ONLINE_TESTS=OFF
  -D CMAKE_DISABLE_FIND_PACKAGE_Doxygen=OFF -D SPHINX_PYTHON_MODULE=ON)
string(FIND "${output}" "-- TAVRIN_ONLINE_TESTS is off: tests with the XML conformance suite left out\n" position)
if(position EQUAL -1)
  message(FATAL_ERROR "Configuring without network does not report what is left out:\n${output}")
endif()

# The table contains exactly the options of the build.
file(STRINGS ${OTHER_CACHE} options REGEX "^TAVRIN_[A-Z_]+:(BOOL|STRING|PATH|FILEPATH)=")
list(TRANSFORM options REPLACE ":.*" "")
list(APPEND options BUILD_SHARED_LIBS BUILD_TESTING TAVRIN_LOGGER_LIBRARY TAVRIN_SUPPORT_LIBRARY TAVRIN_XML_LIBRARY)
list(SORT options)
file(STRINGS ${SOURCE_DIR}/docs/integration.md documented REGEX "^\\| `[A-Z_]+` \\|")
list(TRANSFORM documented REPLACE "^\\| `([A-Z_]+)`.*" "\\1")
if(NOT options STREQUAL documented)
  message(FATAL_ERROR "The build has the options\n  ${options}\nand docs/integration.md has, in this order,\n  ${documented}")
endif()
