# Run by cpack on the finished packages: those of libraries got scripts that call ldconfig, which the trigger does already.
foreach(lPackage IN LISTS CPACK_PACKAGE_FILES)
  if(NOT lPackage MATCHES "/libnaviappframework1_")
    continue()
  endif()
  set(lTree ${CPACK_TEMPORARY_DIRECTORY}/repacked)
  file(REMOVE_RECURSE ${lTree})
  execute_process(COMMAND dpkg-deb -R ${lPackage} ${lTree} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${lTree}/DEBIAN/postinst ${lTree}/DEBIAN/postrm)
  execute_process(COMMAND dpkg-deb --root-owner-group -Zxz -b ${lTree} ${lPackage} COMMAND_ERROR_IS_FATAL ANY
    OUTPUT_QUIET)
endforeach()
