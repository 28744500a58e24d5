include(GenerateExportHeader)

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

# tarvos_library(<target> <Name> <sources>...): a shared library with the alias Tarvos::<Name>, whose headers are
# included relative to the root of the repository and whose export macro TARVOS_<NAME>_EXPORT is in <name>/Export.h.
function(tarvos_library target name)
  string(TOLOWER ${name} folder)
  string(TOUPPER ${name} macro)
  add_library(${target} SHARED ${ARGN})
  add_library(Tarvos::${name} ALIAS ${target})
  tarvos_compile_options(${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    DEBUG_POSTFIX _d
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  generate_export_header(${target} BASE_NAME TARVOS_${macro}
    EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/include/${folder}/Export.h)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>)
endfunction()
