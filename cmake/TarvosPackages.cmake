# The Debian packages, one for each component of the install rules. Made by scripts/package, which builds the documents
# first.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvos)
set(CPACK_PACKAGE_VENDOR Tarvos)
set(CPACK_PACKAGE_CONTACT "Tarvos developers <developers@tarvos.example>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Runtime Development Documentation)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(_runtime libtarvos${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(_exactly "${_runtime} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(_about "The vocabulary that tracking applications share: images over OpenCV,
colour models, histograms, blobs and contours, the time-stamped state of a
target, and the services that every application needs.
")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${_runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "visual tracking framework, core libraries
${_about}
This package contains the shared libraries.")
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/shlibs.in ${PROJECT_BINARY_DIR}/debian/shlibs @ONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_LIST_DIR}/debian/triggers ${PROJECT_BINARY_DIR}/debian/shlibs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtarvos-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${_exactly}, libboost-dev (>= 1.74), libopencv-dev (>= 4.5)")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "libtarvos-doc, libeigen3-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "visual tracking framework, files for development
${_about}
This package contains the headers, the CMake package and the pkg-config files.")

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME libtarvos-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION "visual tracking framework, reference and guides
${_about}
This package contains the reference and the guides as HTML.")

# In every Debian package: its copyright and its changelog.
find_program(GZIP gzip REQUIRED)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/debian)
execute_process(COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md
  OUTPUT_FILE ${PROJECT_BINARY_DIR}/debian/changelog.gz COMMAND_ERROR_IS_FATAL ANY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog @ONLY)
execute_process(COMMAND ${GZIP} -9nc ${PROJECT_BINARY_DIR}/debian/changelog
  OUTPUT_FILE ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz COMMAND_ERROR_IS_FATAL ANY)
foreach(component Runtime Development Documentation)
  string(TOUPPER ${component} _upper)
  set(_package ${CPACK_DEBIAN_${_upper}_PACKAGE_NAME})
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/copyright ${PROJECT_BINARY_DIR}/debian/changelog.gz
    ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${_package} COMPONENT ${component})
endforeach()
install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/overrides RENAME ${_runtime}
  DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT Runtime)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/html
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libtarvos-doc COMPONENT Documentation
  PATTERN "*.md5" EXCLUDE
  PATTERN "*.map" EXCLUDE)
# The programs of the guides, each with its CMakeLists.txt where it has one.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/listings/
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libtarvos-doc/examples COMPONENT Documentation
  FILES_MATCHING PATTERN "*.cpp" PATTERN CMakeLists.txt)

include(CPack)
