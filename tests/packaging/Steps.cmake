# Shared functions of the tests that build the library again. SOURCE_DIR, BUILD_DIR and CONFIGURATION, the options of
# every build, are their arguments.

# run(<what> <command>...): runs a command, shows its output only if it fails, and returns it in `output`.
function(run what)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message("${output}")
    message(FATAL_ERROR "${what} failed (${result})")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

# expect_refusal(<pattern> <command>...): checks that the command fails with a matching message.
function(expect_refusal pattern)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  string(REGEX REPLACE "[ \n]+" " " output "${output}")
  if(result EQUAL 0 OR NOT output MATCHES "${pattern}")
    message(FATAL_ERROR "\"${ARGN}\" should be refused with \"${pattern}\", but gave\n${output}")
  endif()
endfunction()

# run_sample(<program>): checks the output of the sample first_command.
function(run_sample program)
  run("Running ${program}" ${program})
  if(NOT output MATCHES "^SET_LEVEL 40\n")
    message(FATAL_ERROR "${program} printed\n${output}")
  endif()
endfunction()

# install_and_use(<build>): installs a build, returns the directory in `prefix`, and builds and runs a sample with it.
# Returns the command that configures the samples in `configure_samples`.
function(install_and_use build)
  set(prefix ${BUILD_DIR}/installed)
  set(samples ${BUILD_DIR}/samples)
  file(REMOVE_RECURSE ${prefix} ${samples})
  run("Installing" ${CMAKE_COMMAND} --install ${build} --prefix ${prefix})
  set(configure_samples ${CMAKE_COMMAND} -S ${SOURCE_DIR}/examples ${CONFIGURATION} -D CMAKE_PREFIX_PATH=${prefix})
  run("Configuring the samples" ${configure_samples} -B ${samples})
  run("Building a sample" ${CMAKE_COMMAND} --build ${samples} --target first_command)
  run_sample(${samples}/first_command)
  set(prefix ${prefix} PARENT_SCOPE)
  set(configure_samples ${configure_samples} PARENT_SCOPE)
endfunction()
