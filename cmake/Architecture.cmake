# Sets TAVRIN_ARCHITECTURE, unless the tool chain has done so: Debian's name of the architecture that is built for, from
# the compiler's triplet. It is empty for those that the project is not tested on.
if(NOT TAVRIN_ARCHITECTURE)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -dumpmachine
    OUTPUT_VARIABLE triplet OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(triplet_amd64 "^x86_64-.*linux-gnu$")
  set(triplet_arm64 "^aarch64-.*linux-gnu$")
  set(triplet_armhf "^arm.*-linux-gnueabihf$")
  set(triplet_i386 "^i[3-6]86-.*linux-gnu$")
  foreach(architecture amd64 arm64 armhf i386)
    if(triplet MATCHES "${triplet_${architecture}}")
      set(TAVRIN_ARCHITECTURE ${architecture})
    endif()
  endforeach()
endif()
