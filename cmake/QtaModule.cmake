# qta_add_module(NAME [DEPENDS module...]
#                [PUBLIC_LIBRARIES lib...] [PRIVATE_LIBRARIES lib...])
#
# Declares the module NAME: its public headers in include/qta/NAME/, its
# sources and private headers in src/NAME/. The libraries are names from the
# table in QtaDependencies.cmake: PUBLIC when a public header exposes their
# types, PRIVATE when only the sources use them. libqta, qtaConfig.cmake and
# qta.pc take their third-party dependencies from these declarations alone.
#
# A module with sources becomes the object library qta_NAME_objects (compiled
# once, later packed into libqta) and the static library qta_NAME that tests,
# tools and other modules link. A module without sources yet is an INTERFACE
# library qta_NAME, so the modules above it keep building.
#
# A module may only use the modules named in DEPENDS and what they depend on.
# Two checks enforce that direction:
#   * qta_check_module_includes(), called once every module is declared, stops
#     the configuration at an #include of another module's public header
#     ("qta/OTHER/...") that is not allowed, or of a private header
#     ("OTHER/...", under src/) from another module or from a public header;
#   * at build time, qta_NAME_layercheck links the module's objects with only
#     its dependencies into a shared object with --no-undefined, so a call into
#     a module it may not use fails the build.
function(qta_add_module name)
  cmake_parse_arguments(MOD "" "" "DEPENDS;PUBLIC_LIBRARIES;PRIVATE_LIBRARIES" ${ARGN})
  if(MOD_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "qta_add_module(${name}): unknown arguments ${MOD_UNPARSED_ARGUMENTS}")
  endif()

  set(allowed ${name})
  foreach(dep IN LISTS MOD_DEPENDS)
    get_property(dep_declared GLOBAL PROPERTY QTA_ALLOWED_${dep} SET)
    if(NOT dep_declared)
      message(FATAL_ERROR "module ${name} depends on ${dep}, which is not declared before it")
    endif()
    get_property(dep_allowed GLOBAL PROPERTY QTA_ALLOWED_${dep})
    list(APPEND allowed ${dep_allowed})
  endforeach()
  list(REMOVE_DUPLICATES allowed)

  foreach(lib IN LISTS MOD_PUBLIC_LIBRARIES MOD_PRIVATE_LIBRARIES)
    qta_require_library(${lib})
  endforeach()
  list(TRANSFORM MOD_PUBLIC_LIBRARIES PREPEND qta_lib_ OUTPUT_VARIABLE public_targets)
  list(TRANSFORM MOD_PRIVATE_LIBRARIES PREPEND qta_lib_ OUTPUT_VARIABLE private_targets)
  list(TRANSFORM MOD_DEPENDS PREPEND qta_ OUTPUT_VARIABLE dep_targets)
  set(include_dirs $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                   $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>)

  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)
  if(sources)
    add_library(qta_${name}_objects OBJECT ${sources})
    set_target_properties(qta_${name}_objects PROPERTIES
      POSITION_INDEPENDENT_CODE ON
      CXX_VISIBILITY_PRESET hidden
      VISIBILITY_INLINES_HIDDEN ON)
    target_include_directories(qta_${name}_objects PUBLIC ${include_dirs}
                                                   PRIVATE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(qta_${name}_objects PUBLIC ${dep_targets} ${public_targets}
                                              PRIVATE ${private_targets})

    add_library(qta_${name} STATIC $<TARGET_OBJECTS:qta_${name}_objects>)
    target_include_directories(qta_${name} PUBLIC ${include_dirs})
    target_link_libraries(qta_${name} PUBLIC ${dep_targets} ${public_targets}
                                      PRIVATE ${private_targets})

    if(NOT QTA_SANITIZE AND NOT QTA_BUILD_FUZZERS)
      add_library(qta_${name}_layercheck SHARED $<TARGET_OBJECTS:qta_${name}_objects>)
      target_link_libraries(qta_${name}_layercheck PRIVATE ${dep_targets} ${public_targets}
                                                           ${private_targets})
      target_link_options(qta_${name}_layercheck PRIVATE -Wl,--no-undefined)
    endif()
    set_property(GLOBAL APPEND PROPERTY QTA_MODULES_WITH_SOURCES ${name})
  else()
    add_library(qta_${name} INTERFACE)
    target_include_directories(qta_${name} INTERFACE ${include_dirs})
    target_link_libraries(qta_${name} INTERFACE ${dep_targets} ${public_targets}
                                                ${private_targets})
  endif()

  set_property(GLOBAL PROPERTY QTA_ALLOWED_${name} ${allowed})
  set_property(GLOBAL APPEND PROPERTY QTA_MODULES ${name})
  set_property(GLOBAL APPEND PROPERTY QTA_PUBLIC_LIBRARIES ${MOD_PUBLIC_LIBRARIES})
  set_property(GLOBAL APPEND PROPERTY QTA_PRIVATE_LIBRARIES ${MOD_PRIVATE_LIBRARIES})
endfunction()

# Stops the configuration at the first #include that crosses the module wall
# the wrong way (see qta_add_module): a public header of another module that
# is not allowed, a private header of another module, a private header from a
# public header (it would not be installed), or any path with "..". Module
# names are lower case and may hold digits and underscores.
function(qta_check_module_includes)
  get_property(modules GLOBAL PROPERTY QTA_MODULES)
  set(include_line "^[ \t]*#[ \t]*include[ \t]*[<\"]")
  foreach(name IN LISTS modules)
    get_property(allowed GLOBAL PROPERTY QTA_ALLOWED_${name})
    file(GLOB_RECURSE public_files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/qta/${name}/*)
    file(GLOB_RECURSE private_files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*)
    foreach(file IN LISTS public_files private_files)
      file(STRINGS ${file} lines REGEX "${include_line}")
      foreach(line IN LISTS lines)
        string(REGEX MATCH "${include_line}([^>\"]*)" _ "${line}")
        set(path "${CMAKE_MATCH_1}")
        string(REGEX MATCH "^(qta/)?([a-z0-9_]+)/" _ "${path}")
        set(public "${CMAKE_MATCH_1}")
        set(module "${CMAKE_MATCH_2}")
        if(path MATCHES "(^|/)\\.\\./")
          message(FATAL_ERROR "${file}: module ${name} may not include ${path}: no \"..\" in includes")
        elseif(public AND NOT module IN_LIST allowed)
          message(FATAL_ERROR "${file}: module ${name} may not include qta/${module}/ "
                              "(it builds only on: ${allowed})")
        elseif(NOT public AND module IN_LIST modules AND
               (NOT module STREQUAL name OR file IN_LIST public_files))
          message(FATAL_ERROR "${file}: module ${name} may not include ${module}/, "
                              "the private headers of module ${module}")
        endif()
      endforeach()
    endforeach()
  endforeach()
endfunction()
