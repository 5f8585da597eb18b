# Installs four components: runtime, development, tools and documentation. An installation can be moved as a whole.
include(CMakePackageConfigHelpers)

# --- the libraries

if(TAVRIN_BUNDLED_PLATFORM)
  set(libraries tavrin_driver tavrin_colorimetry tavrin_diagnostics tavrin_xml tavrin_support tavrin_logger)
else()
  set(libraries tavrin_driver tavrin_colorimetry)
endif()
install(TARGETS ${libraries} EXPORT tavrin_driver-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

set(absentHeaders "")
if(NOT TAVRIN_BUNDLED_PLATFORM)
  set(absentHeaders PATTERN tavrin_diagnostics EXCLUDE REGEX "tavrin_testing/Diagnostics\\.h$" EXCLUDE)
endif()
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN *.h PATTERN internal EXCLUDE ${absentHeaders})
install(DIRECTORY tavrin_driver DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN *.h PATTERN internal EXCLUDE)

# --- the package for CMake

# Private dependencies are only needed by consumers that link statically.
set(private_dependencies "")
get_target_property(type tavrin_driver TYPE)
if(type STREQUAL STATIC_LIBRARY)
  set(private_dependencies fmt log4cplus)
  if(TAVRIN_BUNDLED_PLATFORM)
    list(APPEND private_dependencies EXPAT)
  endif()
endif()

list(TRANSFORM private_dependencies REPLACE "(.+)" "find_dependency(\\1)\n" OUTPUT_VARIABLE TAVRIN_STATIC_DEPENDENCIES)
list(JOIN TAVRIN_STATIC_DEPENDENCIES "" TAVRIN_STATIC_DEPENDENCIES)
configure_package_config_file(cmake/tavrin_driver-config.cmake.in tavrin_driver-config.cmake
  INSTALL_DESTINATION ${TAVRIN_INSTALL_CMAKEDIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(tavrin_driver-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/tavrin_driver-config.cmake ${PROJECT_BINARY_DIR}/tavrin_driver-config-version.cmake
  DESTINATION ${TAVRIN_INSTALL_CMAKEDIR} COMPONENT development)
if(NOT TAVRIN_BUNDLED_PLATFORM)
  configure_file(cmake/tavrin_driver-platform.cmake.in tavrin_driver-platform.cmake @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/tavrin_driver-platform.cmake
    DESTINATION ${TAVRIN_INSTALL_CMAKEDIR} COMPONENT development)
endif()
# The test kit needs packages that drivers do not need, so its target is loaded only on request.
install(TARGETS tavrin_testing EXPORT tavrin_driver-testing)
install(EXPORT tavrin_driver-testing NAMESPACE tavrin:: DESTINATION ${TAVRIN_INSTALL_CMAKEDIR} COMPONENT development)
install(EXPORT tavrin_driver-targets NAMESPACE tavrin:: DESTINATION ${TAVRIN_INSTALL_CMAKEDIR} COMPONENT development)

# --- the package for pkg-config

# The module finds its prefix relative to its directory, unless that directory is an absolute path.
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  set(TAVRIN_PKG_PREFIX ${CMAKE_INSTALL_PREFIX})
else()
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig OUTPUT_VARIABLE TAVRIN_PKG_PREFIX)
  string(PREPEND TAVRIN_PKG_PREFIX "\${pcfiledir}/")
endif()
foreach(directory LIBDIR INCLUDEDIR)
  cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_${directory} BASE_DIRECTORY "\${prefix}" OUTPUT_VARIABLE TAVRIN_PKG_${directory})
endforeach()
# pkg-config separates words by spaces.
foreach(path PREFIX LIBDIR INCLUDEDIR)
  string(REPLACE " " "\\ " TAVRIN_PKG_${path} "${TAVRIN_PKG_${path}}")
endforeach()
set(TAVRIN_PKG_LIBRARIES -ltavrin_driver)
foreach(library xml support logger)
  if(TAVRIN_BUNDLED_PLATFORM)
    list(APPEND TAVRIN_PKG_LIBRARIES -ltavrin_${library})
  else()
    string(TOUPPER ${library} variable)
    list(APPEND TAVRIN_PKG_LIBRARIES ${TAVRIN_${variable}_LIBRARY})
  endif()
endforeach()
list(JOIN TAVRIN_PKG_LIBRARIES " " TAVRIN_PKG_LIBRARIES)
list(JOIN private_dependencies " " TAVRIN_PKG_PRIVATE)
string(TOLOWER "${TAVRIN_PKG_PRIVATE}" TAVRIN_PKG_PRIVATE)
configure_file(cmake/tavrin_driver.pc.in tavrin_driver.pc @ONLY)
# The libraries on top of the driver library have modules that require its module.
set(additions colorimetry)
if(TAVRIN_BUNDLED_PLATFORM)
  list(APPEND additions diagnostics)
endif()
foreach(library IN LISTS additions)
  set(TAVRIN_LIBRARY ${library})
  get_target_property(TAVRIN_LIBRARY_DESCRIPTION tavrin_${library} TAVRIN_DESCRIPTION)
  configure_file(cmake/tavrin_addition.pc.in tavrin_${library}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/tavrin_${library}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/tavrin_driver.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

# --- the tool

if(TAVRIN_TOOLS)
  # Finds the libraries that are installed with it, below any prefix.
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR} OUTPUT_VARIABLE lib)
  set_target_properties(tavrin_tool PROPERTIES INSTALL_RPATH $ORIGIN/${lib})
  install(TARGETS tavrin_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)

  set(tools ${PROJECT_BINARY_DIR}/tools)
  set(data ${CMAKE_INSTALL_DATADIR})
  install(FILES tools/tavrin/report.schema.json DESTINATION ${data}/tavrin COMPONENT tools)
  install(FILES ${tools}/tavrin/tavrin.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
  install(FILES ${tools}/generators/completions/tavrin DESTINATION ${data}/bash-completion/completions COMPONENT tools)
  install(FILES ${tools}/generators/completions/_tavrin DESTINATION ${data}/zsh/site-functions COMPONENT tools)
  install(FILES ${tools}/generators/completions/tavrin.fish DESTINATION ${data}/fish/vendor_completions.d COMPONENT tools)
endif()

# --- the documentation

install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
  FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN site EXCLUDE PATTERN snippets EXCLUDE)
install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/html DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation OPTIONAL)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation PATTERN show EXCLUDE)
install(PROGRAMS examples/show DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT documentation)
