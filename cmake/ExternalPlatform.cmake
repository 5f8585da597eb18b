# The controller's own platform libraries in place of those below platform/. They are linked as they are; their
# interface is that of include/tavrin_platform.
foreach(name xml support logger)
  string(TOUPPER TAVRIN_${name}_LIBRARY variable)
  set(${variable} "" CACHE FILEPATH "The platform's ${name} library, for TAVRIN_BUNDLED_PLATFORM=OFF")
  if(NOT EXISTS "${${variable}}")
    message(FATAL_ERROR "TAVRIN_BUNDLED_PLATFORM is OFF, so ${variable} has to name a library, not \"${${variable}}\"")
  endif()
  add_library(tavrin::${name} UNKNOWN IMPORTED GLOBAL)
  set_target_properties(tavrin::${name} PROPERTIES
    IMPORTED_LOCATION "${${variable}}"
    INTERFACE_INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}/include;${PROJECT_SOURCE_DIR}"
    INTERFACE_LINK_LIBRARIES Boost::headers)
endforeach()
