# Writes a Debian package for each component to packages/ of the build directory, with cpack. StagePackages.cmake adds
# the files that only packages contain; FinishPackages.cmake changes what cpack cannot express.

# Version and maintainer are those of the newest entry of the changelog.
set(CPACK_TAVRIN_DEBIAN ${PROJECT_SOURCE_DIR}/packaging/debian)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CPACK_TAVRIN_DEBIAN}/changelog)
file(READ ${CPACK_TAVRIN_DEBIAN}/changelog changelog)
string(REGEX MATCH "^[^ ]+ \\(([^)]+)-([^)-]+)\\).*\n -- ([^>]+>)" match "${changelog}")
if(NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR "The newest version in packaging/debian/changelog is \"${CMAKE_MATCH_1}\", not ${PROJECT_VERSION}")
endif()
set(version ${CMAKE_MATCH_1}-${CMAKE_MATCH_2})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_2})
set(CPACK_PACKAGE_CONTACT ${CMAKE_MATCH_3})

set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${TAVRIN_ARCHITECTURE})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavrin-driver)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/StagePackages.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/FinishPackages.cmake)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime development tools)
# The documentation does not depend on the architecture: only the build that can write it packages it.
if(TAVRIN_DOCS)
  list(APPEND CPACK_COMPONENTS_ALL documentation)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Dependencies on the libraries of this package are found in the build directory. For another architecture, those on
# other libraries are found in the directory of its packages, with its package database.
foreach(library driver colorimetry diagnostics xml support logger)
  get_target_property(directory tavrin_${library} BINARY_DIR)
  list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${directory})
endforeach()
set(CPACK_TAVRIN_DPKG_DATABASE "")
if(CMAKE_CROSSCOMPILING)
  list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${CMAKE_FIND_ROOT_PATH}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE} ${CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES})
  set(CPACK_TAVRIN_DPKG_DATABASE ${CMAKE_FIND_ROOT_PATH}/var/lib/dpkg)
endif()

# tavrin_package(<component> <name> <section> <multi-arch> <depends> <description>): the package of a component.
# Dependencies that dpkg-shlibdeps finds are added.
macro(tavrin_package component name section multiarch depends description)
  string(TOUPPER ${component} variable)
  set(CPACK_DEBIAN_${variable}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${variable}_PACKAGE_SECTION ${section})
  set(CPACK_TAVRIN_MULTIARCH_${name} ${multiarch})
  set(CPACK_DEBIAN_${variable}_PACKAGE_DEPENDS ${depends})
  set(CPACK_COMPONENT_${variable}_DESCRIPTION ${description})
endmacro()

set(about "The controller's core, its driver host and the drivers exchange messages:
commands, what travels over bindings, and conditionals. This library defines
them, with a colour value, the check of a project's structure and the record of
a device that was discovered on the network.")

tavrin_package(runtime libtavrin-driver${PROJECT_VERSION_MAJOR} libs same ""
"driver-support library of a home-automation controller
${about}
.
This package has the shared libraries.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_TAVRIN_CONTROL ${PROJECT_BINARY_DIR}/packages/control)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  "${CPACK_TAVRIN_CONTROL}/shlibs;${CPACK_TAVRIN_CONTROL}/symbols;${CPACK_TAVRIN_CONTROL}/triggers")

tavrin_package(development libtavrin-driver-dev libdevel same
"${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${version}), libboost-dev (>= ${TAVRIN_BOOST_VERSION}), libjsoncpp-dev"
"driver-support library of a home-automation controller, for development
${about}
.
This package has the headers, and packages for CMake and pkg-config.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "libgmock-dev, liblog4cplus-dev, libtavrin-driver-doc, pkgconf")

tavrin_package(tools tavrin-tools utils foreign "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${version})"
"tool to show and check messages of a home-automation controller
tavrin shows command messages, binding messages and conditionals the way a
driver receives them, and checks the structure of whole projects. It also shows
colours, and draws them into a chromaticity diagram.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS libtavrin-driver-doc)

tavrin_package(documentation libtavrin-driver-doc doc foreign ""
"driver-support library of a home-automation controller, documentation
${about}
.
This package has the documentation, sample drivers, and messages and projects
to try the tool tavrin with.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)

include(CPack)
