# Completes the files that cpack has installed for each Debian package, before it writes the package.

set(libraries ${CPACK_TEMPORARY_DIRECTORY}/runtime/usr/lib)

# Packages install libraries in the default directories of the loader.
file(GLOB_RECURSE programs ${libraries}/*.so.*.* ${CPACK_TEMPORARY_DIRECTORY}/tools/usr/bin/*)
foreach(program IN LISTS programs)
  file(RPATH_REMOVE FILE ${program})
endforeach()

# pkg-config omits directories of the system only if they have their usual names.
file(GLOB_RECURSE pcFiles ${CPACK_TEMPORARY_DIRECTORY}/development/*.pc)
foreach(pcFile IN LISTS pcFiles)
  file(READ ${pcFile} content)
  string(REGEX REPLACE "^prefix=[^\n]*" "prefix=/usr" content "${content}")
  file(WRITE ${pcFile} "${content}")
endforeach()

# zsh searches separate directories for completions of packages and of the administrator.
set(zsh ${CPACK_TEMPORARY_DIRECTORY}/tools/usr/share/zsh)
file(RENAME ${zsh}/site-functions ${zsh}/vendor-completions)

# compress(<file>): as Debian requires for manual pages and changelogs; the result is reproducible.
function(compress file)
  execute_process(COMMAND gzip --best --no-name --force ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# add(<name> <file>): a file of packaging/debian.
function(add name file)
  configure_file(${CPACK_TAVRIN_DEBIAN}/${name} ${file} COPYONLY NO_SOURCE_PERMISSIONS)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} variable)
  set(name ${CPACK_DEBIAN_${variable}_PACKAGE_NAME})
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  add(copyright ${share}/doc/${name}/copyright)
  add(changelog ${share}/doc/${name}/changelog.Debian)
  compress(${share}/doc/${name}/changelog.Debian)
  add(../../CHANGELOG.md ${share}/doc/${name}/changelog)
  compress(${share}/doc/${name}/changelog)
  set(overrides ${share}/lintian/overrides/${name})
  add(lintian-overrides ${overrides})
  if(EXISTS ${CPACK_TAVRIN_DEBIAN}/${name}.lintian-overrides)
    file(READ ${CPACK_TAVRIN_DEBIAN}/${name}.lintian-overrides own)
    file(APPEND ${overrides} "${own}")
  endif()
  if(component STREQUAL documentation)
    if(NOT EXISTS ${share}/doc/${name}/html/index.html)
      message(FATAL_ERROR "${name} needs the documentation, which the target docs writes")
    endif()
  endif()
  file(GLOB pages ${share}/man/man*/*.[1-9])
  foreach(page IN LISTS pages)
    compress(${page})
  endforeach()
endforeach()

# The dependencies of packages that link with the libraries: "symbols" lists the version that introduced each symbol,
# "shlibs" the version for whole libraries. Version nodes of symbols, such as TAVRIN_DRIVER_1.2, name that version;
# symbols without one get the current version.
set(name ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME})
set(symbols "")
set(shlibs "")
file(STRINGS ${CPACK_TAVRIN_DEBIAN}/../exported-symbols.${CPACK_DEBIAN_PACKAGE_ARCHITECTURE} lines)
foreach(line IN LISTS lines)
  if(line MATCHES "^(lib.*)\\.so\\.([0-9]+)$")
    string(APPEND symbols "${line} ${name} #MINVER#\n")
    string(APPEND shlibs "${CMAKE_MATCH_1} ${CMAKE_MATCH_2} ${name} (>= ${CPACK_PACKAGE_VERSION})\n")
  elseif(line MATCHES "(@|^ )TAVRIN_DRIVER_([0-9.]+)(@Base)?$")
    string(REGEX MATCH "^[0-9]+\\.[0-9]+\\.[0-9]+" release "${CMAKE_MATCH_2}.0.0")
    string(APPEND symbols "${line} ${release}\n")
  else()
    string(APPEND symbols "${line} ${CPACK_PACKAGE_VERSION}\n")
  endif()
endforeach()
file(WRITE ${CPACK_TAVRIN_CONTROL}/symbols "${symbols}")
file(WRITE ${CPACK_TAVRIN_CONTROL}/shlibs "${shlibs}")
file(WRITE ${CPACK_TAVRIN_CONTROL}/triggers "activate-noawait ldconfig\n")

# For dpkg-shlibdeps, which cpack runs next.
if(CPACK_TAVRIN_DPKG_DATABASE)
  set(ENV{DPKG_ADMINDIR} ${CPACK_TAVRIN_DPKG_DATABASE})
  set(ENV{DEB_HOST_ARCH} ${CPACK_DEBIAN_PACKAGE_ARCHITECTURE})
endif()
