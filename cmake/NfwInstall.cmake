# What is installed, in four components: runtime (the two libraries), dev (what an application needs to build against
# them: headers, a CMake package, a pkg-config file), tools and doc. The package and the pkg-config file find their folders
# from where they stand, so the installed tree may be moved.
include(CMakePackageConfigHelpers)

set(NFW_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/NaviAppFramework)

set_target_properties(NfwPlatform PROPERTIES EXPORT_NAME Platform)
install(TARGETS NaviAppFramework NfwPlatform EXPORT NaviAppFrameworkTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/NaviAppFramework COMPONENT dev FILES_MATCHING PATTERN "*.h")

install(EXPORT NaviAppFrameworkTargets NAMESPACE nfw:: DESTINATION ${NFW_PACKAGE_DIR} COMPONENT dev)
configure_package_config_file(cmake/NaviAppFrameworkConfig.cmake.in NaviAppFrameworkConfig.cmake
  INSTALL_DESTINATION ${NFW_PACKAGE_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(NaviAppFrameworkConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/NaviAppFrameworkConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/NaviAppFrameworkConfigVersion.cmake DESTINATION ${NFW_PACKAGE_DIR} COMPONENT dev)

set(NFW_PC_PLATFORM_CFLAGS "-I\${includedir}/platform")
set(NFW_PC_PLATFORM_LIBS "-lNfwPlatform")
get_target_property(lPlatformType NfwPlatform TYPE)
if(lPlatformType STREQUAL "INTERFACE_LIBRARY")  # the unit's own libraries: their flags are the unit's
  set(NFW_PC_PLATFORM_CFLAGS "")
  set(NFW_PC_PLATFORM_LIBS "")
endif()
file(RELATIVE_PATH NFW_PC_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file(cmake/NaviAppFramework.pc.in NaviAppFramework.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/NaviAppFramework.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT dev)

# The pages as they are read, and the programs to start from.
set(NFW_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/libnaviappframework-doc)
install(FILES README.md CONTRIBUTING.md DESTINATION ${NFW_DOC_DIR} COMPONENT doc)
install(DIRECTORY docs/ DESTINATION ${NFW_DOC_DIR}/docs COMPONENT doc FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")
install(DIRECTORY examples/ DESTINATION ${NFW_DOC_DIR}/examples COMPONENT doc FILES_MATCHING PATTERN "*.h" PATTERN "*.cpp")
