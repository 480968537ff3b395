# `cpack` in the folder of a build makes Debian's packages, one of each component; scripts/packages builds as a distribution
# does and calls it. docs/packaging.md tells the rest.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME naviappframework)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGE_CONTACT "NaviAppFramework maintainers <maintainers@naviappframework.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL runtime dev tools doc)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE ${CPACK_PACKAGE_NAME})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(lExact "= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")

# nfw_debian_package(COMPONENT NAME SECTION FIELD TEXT...): one package
function(nfw_debian_package nComponent nName nSection)
  cmake_parse_arguments(PARSE_ARGV 3 l "" "DEPENDS;RECOMMENDS;SUGGESTS;ARCHITECTURE;SUMMARY;TEXT" "")
  string(TOUPPER ${nComponent} lUpper)
  foreach(lField DEPENDS RECOMMENDS SUGGESTS ARCHITECTURE)
    if(l_${lField})
      set(CPACK_DEBIAN_${lUpper}_PACKAGE_${lField} "${l_${lField}}" PARENT_SCOPE)
    endif()
  endforeach()
  set(CPACK_DEBIAN_${lUpper}_PACKAGE_NAME ${nName} PARENT_SCOPE)
  set(CPACK_DEBIAN_${lUpper}_PACKAGE_SECTION ${nSection} PARENT_SCOPE)
  set(CPACK_DEBIAN_${lUpper}_DESCRIPTION "${l_SUMMARY}\n${l_TEXT}" PARENT_SCOPE)
endfunction()

set(lFrame "NaviAppFramework is what the navigation applications of an in-vehicle unit
share: components with a lifecycle, positions of a satellite receiver and of
dead reckoning, recordings and their replay, mount events, settings, an
application log, and message-driven threads.")
nfw_debian_package(runtime libnaviappframework1 libs SUMMARY "frame of in-vehicle navigation applications"
  TEXT "${lFrame}

This package has the two shared libraries that applications load.")
nfw_debian_package(dev libnaviappframework-dev libdevel SUMMARY "frame of in-vehicle navigation applications - headers"
  DEPENDS "libnaviappframework1 (${lExact})" SUGGESTS "libnaviappframework-doc"
  TEXT "${lFrame}

This package has the headers, which are the manual, and what CMake and pkg-
config need to find them.")
nfw_debian_package(tools nfw-tools utils SUMMARY "drive, record, replay and inspect positions"
  DEPENDS "libnaviappframework1 (${lExact})"
  TEXT "${lFrame}

This package has nfw-drive, an application that shows, records and replays
positions of a receiver, a file, the network or a simulated drive, and
nfw-log, which looks into recordings, mends, cuts and converts them.")
nfw_debian_package(doc libnaviappframework-doc doc SUMMARY "frame of in-vehicle navigation applications - documentation"
  ARCHITECTURE all SUGGESTS "libnaviappframework-dev"
  TEXT "${lFrame}

This package has the guide, the pages on architecture, threads, replays,
formats and porting, and programs to start from.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packaging/symbols
  ${PROJECT_BINARY_DIR}/packaging/shlibs ${PROJECT_BINARY_DIR}/packaging/triggers)
foreach(lLibrary NaviAppFramework NfwPlatform)
  string(APPEND lShlibs "lib${lLibrary} ${PROJECT_VERSION_MAJOR} libnaviappframework1 (>= ${PROJECT_VERSION})\n")
endforeach()
file(WRITE ${PROJECT_BINARY_DIR}/packaging/shlibs "${lShlibs}")
file(WRITE ${PROJECT_BINARY_DIR}/packaging/triggers "activate-noawait ldconfig\n")

# What Debian wants beside the files of the components is made when they stand where they are packed.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/complete.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/repack.cmake)
set(CPACK_NFW_PACKAGING_DIR ${PROJECT_SOURCE_DIR}/packaging/debian)
set(CPACK_NFW_SYMBOLS ${PROJECT_BINARY_DIR}/packaging/symbols)
include(CPack)
