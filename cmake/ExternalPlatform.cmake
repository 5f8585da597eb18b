# Uses the platform libraries of a controller instead of those below platform/. They are linked unchanged and implement
# the interface in include/tavrin_platform.
set(mistakes "")
foreach(name xml support logger)
  string(TOUPPER TAVRIN_${name}_LIBRARY variable)
  set(${variable} "" CACHE FILEPATH "The platform's ${name} library, for TAVRIN_BUNDLED_PLATFORM=OFF")
  if("${${variable}}" STREQUAL "")
    list(APPEND mistakes "${variable} is not set")
  elseif(NOT EXISTS "${${variable}}")
    list(APPEND mistakes "${variable} is \"${${variable}}\", which does not exist")
  elseif(IS_DIRECTORY "${${variable}}")
    list(APPEND mistakes "${variable} is \"${${variable}}\", which is a directory")
  endif()
  add_library(tavrin::${name} UNKNOWN IMPORTED GLOBAL)
  set_target_properties(tavrin::${name} PROPERTIES
    IMPORTED_LOCATION "${${variable}}"
    INTERFACE_INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}/include;${PROJECT_SOURCE_DIR}"
    INTERFACE_LINK_LIBRARIES Boost::headers)
endforeach()
if(mistakes)
  list(JOIN mistakes "\n  " mistakes)
  message(FATAL_ERROR "Without the bundled platform, three variables name the files of the platform's libraries:\n"
    "  ${mistakes}")
endif()
