# The install rules: libraries, headers, the CMake package and the pkg-config files, each in the component of the Debian
# package that it goes into.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(TARVOS_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/tarvos)
set(TARVOS_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/Tarvos)

# What pkg-config needs to know; the files of a Debug build stand beside those of a Release build as its libraries do.
set(TARVOS_POSTFIX "")
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
  set(TARVOS_POSTFIX _d)
endif()
set(TARVOS_DEFINITIONS "")
if(TARVOS_WITH_OPENGL)
  set(TARVOS_DEFINITIONS -DTARVOS_WITH_OPENGL)
endif()
file(RELATIVE_PATH TARVOS_PREFIX_FROM_PC
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})

set(TARVOS_Math_FILE_SETS FILE_SET views DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development)
foreach(name Math Core)
  string(TOLOWER ${name} folder)
  install(TARGETS tarvos${name}S EXPORT Tarvos${name}Targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development
    ${TARVOS_${name}_FILE_SETS}
    INCLUDES DESTINATION ${TARVOS_INCLUDEDIR})
  install(EXPORT Tarvos${name}Targets NAMESPACE Tarvos:: DESTINATION ${TARVOS_CMAKEDIR} COMPONENT Development)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/tarvos-${folder}.pc.in tarvos-${folder}${TARVOS_POSTFIX}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tarvos-${folder}${TARVOS_POSTFIX}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
endforeach()
install(TARGETS tarvosImageFilesS LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime)
# An installed library finds its sibling beside itself, wherever the prefix is moved to.
set_target_properties(tarvosCoreS PROPERTIES INSTALL_RPATH $ORIGIN)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TarvosConfig.cmake.in TarvosConfig.cmake
  INSTALL_DESTINATION ${TARVOS_CMAKEDIR})
write_basic_package_version_file(TarvosConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/TarvosConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/TarvosConfigVersion.cmake
  DESTINATION ${TARVOS_CMAKEDIR} COMPONENT Development)
