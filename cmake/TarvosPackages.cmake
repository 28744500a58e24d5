# The Debian packages, one for each component of the install rules. Made by scripts/package, which builds the documents
# first.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvos)
set(CPACK_PACKAGE_VENDOR Tarvos)
set(CPACK_PACKAGE_CONTACT "Tarvos developers <developers@tarvos.example>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Runtime Development VisionRuntime VisionDevelopment VideoRuntime VideoDevelopment Documentation)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Where dpkg-shlibdeps finds the libraries of the package that the others depend on.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/core ${PROJECT_BINARY_DIR}/math)
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

# What stands on these: a library with its files for development each.
foreach(name Vision Video)
  string(TOUPPER ${name} _upper)
  string(TOLOWER ${name} _lower)
  set(_library libtarvos-${_lower}${PROJECT_VERSION_MAJOR})
  set(CPACK_DEBIAN_${_upper}RUNTIME_PACKAGE_NAME ${_library})
  set(CPACK_DEBIAN_${_upper}RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_${_upper}RUNTIME_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_${_upper}RUNTIME_PACKAGE_DEPENDS "${_exactly}")
  set(CPACK_DEBIAN_${_upper}RUNTIME_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_LIST_DIR}/debian/triggers ${PROJECT_BINARY_DIR}/debian/${_lower}/shlibs)
  set(CPACK_DEBIAN_${_upper}RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  file(WRITE ${PROJECT_BINARY_DIR}/debian/${_lower}/shlibs
    "libtarvos${name}S ${PROJECT_VERSION_MAJOR} ${_library} (>= ${PROJECT_VERSION})\n")
  set(CPACK_DEBIAN_${_upper}DEVELOPMENT_PACKAGE_NAME libtarvos-${_lower}-dev)
  set(CPACK_DEBIAN_${_upper}DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_${_upper}DEVELOPMENT_PACKAGE_DEPENDS
    "${_library} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), libtarvos-dev (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), libopencv-dev (>= 4.5)")
endforeach()
set(CPACK_DEBIAN_VISIONRUNTIME_DESCRIPTION "visual tracking framework, histograms, regions and filters
${_about}
This package contains the library that works on it: it fills histograms, marks
skin, finds regions and filters states.")
set(CPACK_DEBIAN_VISIONDEVELOPMENT_DESCRIPTION "visual tracking framework, files for development with regions and filters
${_about}
This package contains the headers, the CMake package and the pkg-config file
of the library that fills histograms, marks skin, finds regions and filters
states.")
set(CPACK_DEBIAN_VIDEORUNTIME_DESCRIPTION "visual tracking framework, frames in and out
${_about}
This package contains the library that reads and writes videos.")
set(CPACK_DEBIAN_VIDEODEVELOPMENT_DESCRIPTION "visual tracking framework, files for development with videos
${_about}
This package contains the headers, the CMake package and the pkg-config file of
the library that reads and writes videos.")

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
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} _upper)
  set(_package ${CPACK_DEBIAN_${_upper}_PACKAGE_NAME})
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/copyright ${PROJECT_BINARY_DIR}/debian/changelog.gz
    ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${_package} COMPONENT ${component})
endforeach()
foreach(component Runtime VisionRuntime VideoRuntime)
  string(TOUPPER ${component} _upper)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/overrides RENAME ${CPACK_DEBIAN_${_upper}_PACKAGE_NAME}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/html
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libtarvos-doc COMPONENT Documentation
  PATTERN "*.md5" EXCLUDE
  PATTERN "*.map" EXCLUDE)
# The programs of the guides, each with its CMakeLists.txt where it has one.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/listings/
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libtarvos-doc/examples COMPONENT Documentation
  FILES_MATCHING PATTERN "*.cpp" PATTERN CMakeLists.txt)

include(CPack)
