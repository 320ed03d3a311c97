# libqta: every module's objects in one shared and one static library, installed
# with the public headers, a CMake package (qta::qta, qta::qta_static) and qta.pc.
# The third-party libraries of both come from the modules' declarations.
qta_check_module_includes()

get_property(modules GLOBAL PROPERTY QTA_MODULES_WITH_SOURCES)
get_property(public_libraries GLOBAL PROPERTY QTA_PUBLIC_LIBRARIES)
get_property(private_libraries GLOBAL PROPERTY QTA_PRIVATE_LIBRARIES)
list(REMOVE_DUPLICATES public_libraries)
list(REMOVE_DUPLICATES private_libraries)
list(REMOVE_ITEM private_libraries ${public_libraries})

list(TRANSFORM modules REPLACE "(.+)" "$<TARGET_OBJECTS:qta_\\1_objects>" OUTPUT_VARIABLE objects)
list(TRANSFORM public_libraries PREPEND qta_lib_ OUTPUT_VARIABLE public_targets)
list(TRANSFORM private_libraries PREPEND qta_lib_ OUTPUT_VARIABLE private_targets)

add_library(qta SHARED ${objects})
add_library(qta_static STATIC ${objects})
set_target_properties(qta PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
set_target_properties(qta_static PROPERTIES OUTPUT_NAME qta)

# qta/export.h: QTA_EXPORT marks what the shared library exports; the modules
# compile everything else hidden.
include(GenerateExportHeader)
generate_export_header(qta BASE_NAME QTA EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/include/qta/export.h)

foreach(lib qta qta_static)
  target_link_libraries(${lib} PUBLIC ${public_targets} PRIVATE ${private_targets})
  target_include_directories(${lib} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endforeach()
add_library(qta::qta ALIAS qta)
add_library(qta::qta_static ALIAS qta_static)

install(TARGETS qta qta_static EXPORT qtaTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/qta DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_BINARY_DIR}/include/qta/export.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qta)
install(EXPORT qtaTargets NAMESPACE qta:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qta)

# qtaConfig.cmake finds the third-party libraries again before it loads the targets.
get_property(QTA_FIND_DEPENDENCIES GLOBAL PROPERTY QTA_CONSUMER_FIND_CODE)
include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/qtaConfig.cmake.in ${PROJECT_BINARY_DIR}/qtaConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qta)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qtaConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qtaConfig.cmake ${PROJECT_BINARY_DIR}/qtaConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qta)

# qta.pc: pkg-config modules of public libraries go to Requires, those of
# private ones to Requires.private (libraries without one are header-only).
function(qta_pkg_config_modules libraries out)
  set(pc_modules)
  foreach(name IN LISTS libraries)
    get_property(pc GLOBAL PROPERTY QTA_LIBRARY_${name}_PKG_CONFIG)
    list(APPEND pc_modules ${pc})
  endforeach()
  list(JOIN pc_modules ", " joined)
  set(${out} "${joined}" PARENT_SCOPE)
endfunction()
qta_pkg_config_modules("${public_libraries}" QTA_PC_REQUIRES)
qta_pkg_config_modules("${private_libraries}" QTA_PC_REQUIRES_PRIVATE)
file(RELATIVE_PATH QTA_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/qta.pc.in ${PROJECT_BINARY_DIR}/qta.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qta.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
