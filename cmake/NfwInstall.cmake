# What an application needs to build against the library: the two libraries, their headers, a CMake package and a
# pkg-config file. Both find their folders from where they stand, so the installed tree may be moved.
include(CMakePackageConfigHelpers)

set(NFW_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/NaviAppFramework)

set_target_properties(NfwPlatform PROPERTIES EXPORT_NAME Platform)
install(TARGETS NaviAppFramework NfwPlatform EXPORT NaviAppFrameworkTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/NaviAppFramework FILES_MATCHING PATTERN "*.h")

install(EXPORT NaviAppFrameworkTargets NAMESPACE nfw:: DESTINATION ${NFW_PACKAGE_DIR})
configure_package_config_file(cmake/NaviAppFrameworkConfig.cmake.in NaviAppFrameworkConfig.cmake
  INSTALL_DESTINATION ${NFW_PACKAGE_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(NaviAppFrameworkConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/NaviAppFrameworkConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/NaviAppFrameworkConfigVersion.cmake DESTINATION ${NFW_PACKAGE_DIR})

set(NFW_PC_PLATFORM_CFLAGS "-I\${includedir}/platform")
set(NFW_PC_PLATFORM_LIBS "-lNfwPlatform")
get_target_property(lPlatformType NfwPlatform TYPE)
if(lPlatformType STREQUAL "INTERFACE_LIBRARY")  # the unit's own libraries: their flags are the unit's
  set(NFW_PC_PLATFORM_CFLAGS "")
  set(NFW_PC_PLATFORM_LIBS "")
endif()
file(RELATIVE_PATH NFW_PC_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file(cmake/NaviAppFramework.pc.in NaviAppFramework.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/NaviAppFramework.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
