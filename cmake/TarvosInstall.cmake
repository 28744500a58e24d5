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

# tarvos_install(<Name> <folder> <prefix of the Debian components> DESCRIPTION <text> [REQUIRES <pkg-config module>]
# [REQUIRES_PRIVATE <module>] [LIBS <flags>]): a library, its headers, its CMake targets and its pkg-config file.
function(tarvos_install name folder prefix)
  cmake_parse_arguments(TARVOS_PC "" "DESCRIPTION;REQUIRES;REQUIRES_PRIVATE;LIBS" "" ${ARGN})
  if(TARVOS_PC_REQUIRES)
    string(APPEND TARVOS_PC_REQUIRES "${TARVOS_POSTFIX} = ${PROJECT_VERSION}")
  endif()
  set(file_sets "")
  if(name STREQUAL "Math")
    set(file_sets FILE_SET views DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development)
  endif()
  install(TARGETS tarvos${name}S EXPORT Tarvos${name}Targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${prefix}Runtime NAMELINK_COMPONENT ${prefix}Development
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT ${prefix}Development
    ${file_sets}
    INCLUDES DESTINATION ${TARVOS_INCLUDEDIR})
  # An installed library finds its siblings beside itself, wherever the prefix is moved to.
  set_target_properties(tarvos${name}S PROPERTIES INSTALL_RPATH $ORIGIN)
  install(EXPORT Tarvos${name}Targets NAMESPACE Tarvos:: DESTINATION ${TARVOS_CMAKEDIR} COMPONENT ${prefix}Development)
  set(file ${CMAKE_CURRENT_BINARY_DIR}/tarvos-${folder}${TARVOS_POSTFIX}.pc)
  configure_file(cmake/tarvos.pc.in ${file} @ONLY)
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${prefix}Development)
endfunction()

tarvos_install(Math math "" DESCRIPTION "Math library of the Tarvos visual tracking framework")
tarvos_install(Core core "" DESCRIPTION "${PROJECT_DESCRIPTION}"
  REQUIRES tarvos-math REQUIRES_PRIVATE opencv4 LIBS -lopencv_core)
if(TARVOS_WITH_VISION)
  tarvos_install(Vision vision Vision DESCRIPTION "Histograms, regions and filters of the Tarvos visual tracking framework"
    REQUIRES tarvos-core)
endif()
if(TARVOS_WITH_VIDEO)
  tarvos_install(Video video Video DESCRIPTION "Frames in and out of the Tarvos visual tracking framework"
    REQUIRES tarvos-core LIBS -lopencv_videoio)
endif()
install(TARGETS tarvosImageFilesS LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TarvosConfig.cmake.in TarvosConfig.cmake
  INSTALL_DESTINATION ${TARVOS_CMAKEDIR})
write_basic_package_version_file(TarvosConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/TarvosConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/TarvosConfigVersion.cmake
  DESTINATION ${TARVOS_CMAKEDIR} COMPONENT Development)
