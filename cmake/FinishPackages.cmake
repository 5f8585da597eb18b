# Changes what cpack cannot express in the Debian packages that it has written: the field for several architectures, and
# the scripts that call ldconfig in addition to the trigger.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree ${package}.tree)
  file(REMOVE_RECURSE ${tree})
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
  file(READ ${tree}/DEBIAN/control control)
  string(REGEX MATCH "Package: ([^\n]+)\n" name "${control}")
  string(REPLACE "${name}" "${name}Multi-Arch: ${CPACK_TAVRIN_MULTIARCH_${CMAKE_MATCH_1}}\n" control "${control}")
  file(WRITE ${tree}/DEBIAN/control "${control}")
  execute_process(COMMAND dpkg-deb --root-owner-group --build ${tree} ${package}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${tree})
endforeach()
