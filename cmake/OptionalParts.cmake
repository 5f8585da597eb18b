# Parts of the build that need packages or programs which a machine may lack: such a part is left out with a message, or
# configuring fails if TAVRIN_REQUIRE_OPTIONAL is set.

# tavrin_leave_out(<what> <missing>): reports that the build lacks <what> because <missing> was not found.
function(tavrin_leave_out what missing)
  if(TAVRIN_REQUIRE_OPTIONAL)
    message(FATAL_ERROR "${missing} was not found, which is needed for ${what} (see packaging/debian-packages.txt)")
  endif()
  message(STATUS "${missing} was not found: ${what} left out")
endfunction()

# tavrin_find_package_for(<option> <package> [<argument>...]): find_package() with these arguments for a part of the
# build. Turns its option off if the package is missing.
macro(tavrin_find_package_for option package)
  if(${option})
    find_package(${package} ${ARGN} QUIET)
    if(NOT ${package}_FOUND)
      tavrin_leave_out(${option} ${package})
      set(${option} OFF)
    endif()
  endif()
endmacro()

# tavrin_find_programs_for(<tests> <result> <program>...): finds programs that tests run. Sets <result> to whether all
# were found. <PROGRAM>_PROGRAM is the path of each and can be set to another one, or to OFF.
function(tavrin_find_programs_for tests result)
  set(found TRUE)
  foreach(program IN LISTS ARGN)
    string(MAKE_C_IDENTIFIER ${program} variable)
    string(TOUPPER ${variable}_PROGRAM variable)
    find_program(${variable} ${program})
    mark_as_advanced(${variable})
    if(NOT ${variable})
      tavrin_leave_out(${tests} ${program})
      set(found FALSE)
    endif()
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# tavrin_find_python_modules_for(<tests> <result> <module>...): the same with modules of Python.
# <MODULE>_PYTHON_MODULE is whether a module exists.
function(tavrin_find_python_modules_for tests result)
  set(found TRUE)
  foreach(module IN LISTS ARGN)
    string(TOUPPER ${module}_PYTHON_MODULE variable)
    if(NOT DEFINED ${variable})
      execute_process(COMMAND ${Python3_EXECUTABLE} -c "import ${module}" ERROR_QUIET RESULT_VARIABLE status)
      string(COMPARE EQUAL ${status} 0 ${variable})
      if(${variable})
        set(${variable} TRUE CACHE BOOL "Whether Python has the module ${module}")
        mark_as_advanced(${variable})
      endif()
    endif()
    if(NOT ${variable})
      tavrin_leave_out(${tests} "Python's module ${module}")
      set(found FALSE)
    endif()
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# tavrin_find_online_data_for(<tests> <result>): whether tests can fetch public test data.
function(tavrin_find_online_data_for tests result)
  if(TAVRIN_ONLINE_TESTS)
    tavrin_find_programs_for(${tests} found npm)
  else()
    message(STATUS "TAVRIN_ONLINE_TESTS is off: ${tests} left out")
    set(found FALSE)
  endif()
  set(${result} ${found} PARENT_SCOPE)
endfunction()
