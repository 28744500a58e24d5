# What every target of this project is compiled with. Private to the target: a parent project keeps its own flags.
function(tarvos_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Woverloaded-virtual
    $<$<BOOL:${TARVOS_WARNINGS_AS_ERRORS}>:-Werror>
    # Diagnostics name files relative to the root of the repository, wherever it is built.
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
endfunction()

# What the libraries have in common.
function(tarvos_library_properties target)
  tarvos_compile_options(${target})
  target_include_directories(${target} PRIVATE ${PROJECT_BINARY_DIR}/include)
  # A function that is exported may still be inlined into its neighbours.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  if(TARVOS_HARDENING)
    target_compile_definitions(${target} PRIVATE _FORTIFY_SOURCE=2 _GLIBCXX_ASSERTIONS)
    target_compile_options(${target} PRIVATE -fstack-protector-strong)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i.86")
      target_compile_options(${target} PRIVATE -fcf-protection)
    endif()
    target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
  endif()
  set_target_properties(${target} PROPERTIES
    DEBUG_POSTFIX _d
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# Users include <tarvos/core/...>: installed below include/, here through a link to the source tree. The short form
# "core/..." works through a system include folder, which compilers search after the user's own.
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/include)
file(CREATE_LINK ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/include/tarvos SYMBOLIC)

# tarvos_library(<target> <Name> SOURCES <files>... HEADERS <files>...): a shared library with the alias Tarvos::<Name>
# and its public headers.
function(tarvos_library target name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS" ${ARGN})
  add_library(${target} SHARED ${ARG_SOURCES})
  add_library(Tarvos::${name} ALIAS ${target})
  tarvos_library_properties(${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    VERIFY_INTERFACE_HEADER_SETS ON
    INTERFACE_HEADER_SETS_TO_VERIFY HEADERS)
  tarvos_public_headers(${target} HEADERS ${ARG_HEADERS})
  target_include_directories(${target} SYSTEM INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
endfunction()

# tarvos_public_headers(<target> <file set> <files>...): headers in the target's folder that users include.
function(tarvos_public_headers target set)
  set(include ${PROJECT_BINARY_DIR}/include)
  file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  list(TRANSFORM ARGN PREPEND ${include}/tarvos/${folder}/)
  target_sources(${target} PUBLIC FILE_SET ${set} TYPE HEADERS BASE_DIRS ${include} FILES ${ARGN})
endfunction()
