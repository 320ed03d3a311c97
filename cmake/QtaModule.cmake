# qta_add_module(NAME [DEPENDS module...] [LIBRARIES lib...])
#
# Builds src/NAME/*.cpp into the object library qta_NAME_objects (compiled once,
# later packed into libqta) and the static library qta_NAME that tests, tools
# and other modules link. A module may only use the modules named in DEPENDS
# and what they depend on; two checks enforce that direction:
#   * at configure time, an #include of another module's header that is not
#     among the allowed modules stops the configuration;
#   * at build time, qta_NAME_layercheck links the module's objects with only
#     its dependencies into a shared object with --no-undefined, so a call into
#     a module it may not use fails the build.
function(qta_add_module name)
  cmake_parse_arguments(MOD "" "" "DEPENDS;LIBRARIES" ${ARGN})

  set_property(GLOBAL PROPERTY QTA_DECLARED_${name} TRUE)
  set(allowed ${name})
  foreach(dep IN LISTS MOD_DEPENDS)
    get_property(dep_declared GLOBAL PROPERTY QTA_DECLARED_${dep})
    get_property(dep_allowed GLOBAL PROPERTY QTA_ALLOWED_${dep})
    if(NOT dep_declared)
      message(FATAL_ERROR "module ${name} depends on ${dep}, which is not declared before it")
    elseif(NOT dep_allowed)
      message(STATUS "qta: module ${name} waits for module ${dep}")
      return()
    endif()
    list(APPEND allowed ${dep_allowed})
  endforeach()
  list(REMOVE_DUPLICATES allowed)

  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)
  if(NOT sources)
    # A module is declared before its first code arrives; its target comes with it.
    message(STATUS "qta: module ${name} has no sources yet")
    return()
  endif()
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/qta/${name}/*.h
                                      ${PROJECT_SOURCE_DIR}/src/${name}/*.h)
  foreach(file IN LISTS sources headers)
    file(STRINGS ${file} includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]qta/[a-z]+/")
    foreach(line IN LISTS includes)
      string(REGEX MATCH "qta/([a-z]+)/" _ "${line}")
      if(NOT CMAKE_MATCH_1 IN_LIST allowed)
        message(FATAL_ERROR "${file}: module ${name} may not include qta/${CMAKE_MATCH_1}/ "
                            "(it builds only on: ${allowed})")
      endif()
    endforeach()
  endforeach()

  add_library(qta_${name}_objects OBJECT ${sources})
  set_target_properties(qta_${name}_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_include_directories(qta_${name}_objects PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
    PRIVATE ${PROJECT_SOURCE_DIR}/src)
  foreach(dep IN LISTS MOD_DEPENDS)
    target_link_libraries(qta_${name}_objects PUBLIC qta_${dep}_objects)
  endforeach()
  target_link_libraries(qta_${name}_objects PUBLIC ${MOD_LIBRARIES})

  add_library(qta_${name} STATIC $<TARGET_OBJECTS:qta_${name}_objects>)
  target_include_directories(qta_${name} PUBLIC ${PROJECT_SOURCE_DIR}/include
                                                ${PROJECT_BINARY_DIR}/include)
  target_link_libraries(qta_${name} PUBLIC ${MOD_LIBRARIES})
  foreach(dep IN LISTS MOD_DEPENDS)
    target_link_libraries(qta_${name} PUBLIC qta_${dep})
  endforeach()

  if(NOT QTA_SANITIZE AND NOT QTA_BUILD_FUZZERS)
    add_library(qta_${name}_layercheck SHARED $<TARGET_OBJECTS:qta_${name}_objects>)
    target_link_libraries(qta_${name}_layercheck PRIVATE ${MOD_LIBRARIES})
    foreach(dep IN LISTS MOD_DEPENDS)
      target_link_libraries(qta_${name}_layercheck PRIVATE qta_${dep})
    endforeach()
    target_link_options(qta_${name}_layercheck PRIVATE -Wl,--no-undefined)
  endif()

  set_property(GLOBAL PROPERTY QTA_ALLOWED_${name} ${allowed})
  set_property(GLOBAL APPEND PROPERTY QTA_MODULES ${name})
  set_property(GLOBAL APPEND PROPERTY QTA_EXTERNAL_LIBRARIES ${MOD_LIBRARIES})
endfunction()
