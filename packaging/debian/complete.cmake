# Run by cpack on the tree of each component before it is packed: manual pages and changes compressed without a time, the
# copyright, what lintian is told to pass over, and the symbols of the libraries, which have to be those that are listed.
foreach(lPair runtime=libnaviappframework1 dev=libnaviappframework-dev tools=nfw-tools doc=libnaviappframework-doc)
  string(REGEX MATCH "^([^=]*)=(.*)$" lPair ${lPair})
  set(lTree ${CPACK_TEMPORARY_DIRECTORY}/${CMAKE_MATCH_1})
  set(lPackage ${CMAKE_MATCH_2})
  if(NOT IS_DIRECTORY ${lTree})
    message(FATAL_ERROR "cpack has not staged ${lTree}")
  endif()
  set(lDoc ${lTree}/usr/share/doc/${lPackage})
  configure_file(${CPACK_NFW_PACKAGING_DIR}/copyright ${lDoc}/copyright COPYONLY)
  configure_file(${CPACK_NFW_PACKAGING_DIR}/changelog ${lDoc}/changelog.Debian COPYONLY)
  configure_file(${CPACK_NFW_PACKAGING_DIR}/../../CHANGELOG.md ${lDoc}/changelog COPYONLY)
  if(EXISTS ${CPACK_NFW_PACKAGING_DIR}/${lPackage}.lintian-overrides)
    configure_file(${CPACK_NFW_PACKAGING_DIR}/${lPackage}.lintian-overrides
      ${lTree}/usr/share/lintian/overrides/${lPackage} COPYONLY)
  endif()
  file(GLOB lPlain ${lTree}/usr/share/man/man1/*.1 ${lDoc}/changelog ${lDoc}/changelog.Debian)
  execute_process(COMMAND gzip -9nf ${lPlain} COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB_RECURSE lFiles ${lTree}/usr/share/* ${lTree}/usr/include/*)
  foreach(lFile IN LISTS lFiles)
    file(CHMOD ${lFile} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  endforeach()
endforeach()

file(GLOB lBinaries ${CPACK_TEMPORARY_DIRECTORY}/tools/usr/bin/* ${CPACK_TEMPORARY_DIRECTORY}/runtime/usr/lib/*/lib*.so.*.*.*)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${lBinaries} COMMAND_ERROR_IS_FATAL ANY)

file(GLOB lLibraries ${CPACK_TEMPORARY_DIRECTORY}/runtime/usr/lib/*/lib*.so.*.*.*)
list(TRANSFORM lLibraries PREPEND -e)
get_filename_component(lScratch ${CPACK_NFW_SYMBOLS} DIRECTORY)
file(MAKE_DIRECTORY ${lScratch}/debian)
file(WRITE ${lScratch}/debian/control "Source: naviappframework\n\nPackage: libnaviappframework1\nArchitecture: any\n")
execute_process(WORKING_DIRECTORY ${lScratch} COMMAND_ERROR_IS_FATAL ANY
  COMMAND dpkg-gensymbols -c4 -plibnaviappframework1 -v${CPACK_PACKAGE_VERSION}
    -P${CPACK_TEMPORARY_DIRECTORY}/runtime -I${CPACK_NFW_PACKAGING_DIR}/libnaviappframework1.symbols
    -O${CPACK_NFW_SYMBOLS} ${lLibraries})
