# Downloads the schema of SARIF 2.1.0 as sarif/schema.json in the current directory.
#
# cmake -D NPM=... -P SarifSchema.cmake
include(${CMAKE_CURRENT_LIST_DIR}/../support/NpmPackage.cmake)

if(EXISTS sarif/schema.json)
  return()
endif()
fetch_npm_package("The schema of SARIF" @microsoft/jest-sarif@1.0.0-beta.0
  0357ce84f77a21ce620e4e05f583f0d6a341e1717eefe22f891ef197caf617a433424c7972963d2ec1a4dab1318852047016e3a559d29b058606e9004a4890f4
  archive)
file(ARCHIVE_EXTRACT INPUT ${archive} PATTERNS package/lib/schemas/sarif-2.1.0-rtm.5.json)
file(COPY_FILE package/lib/schemas/sarif-2.1.0-rtm.5.json schema.json)
file(MAKE_DIRECTORY sarif)
file(RENAME schema.json sarif/schema.json)
