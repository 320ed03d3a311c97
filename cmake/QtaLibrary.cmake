# libqta: every module's objects in one shared and one static library, installed
# with the public headers, a CMake package (qta::qta, qta::qta_static) and qta.pc.
get_property(QTA_MODULES GLOBAL PROPERTY QTA_MODULES)
get_property(QTA_EXTERNAL_LIBRARIES GLOBAL PROPERTY QTA_EXTERNAL_LIBRARIES)
list(REMOVE_DUPLICATES QTA_EXTERNAL_LIBRARIES)

set(qta_objects)
foreach(module IN LISTS QTA_MODULES)
  list(APPEND qta_objects $<TARGET_OBJECTS:qta_${module}_objects>)
endforeach()

add_library(qta SHARED ${qta_objects})
add_library(qta_static STATIC ${qta_objects})
set_target_properties(qta PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
set_target_properties(qta_static PROPERTIES OUTPUT_NAME qta)
target_link_libraries(qta PRIVATE ${QTA_EXTERNAL_LIBRARIES})
target_link_libraries(qta_static PUBLIC ${QTA_EXTERNAL_LIBRARIES})
# qta/export.h: QTA_EXPORT marks what the shared library exports; everything
# else is hidden.
include(GenerateExportHeader)
generate_export_header(qta BASE_NAME QTA EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/include/qta/export.h)
foreach(lib qta qta_static)
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

include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/qtaConfig.cmake.in ${PROJECT_BINARY_DIR}/qtaConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qta)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qtaConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qtaConfig.cmake ${PROJECT_BINARY_DIR}/qtaConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qta)

file(RELATIVE_PATH QTA_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/qta.pc.in ${PROJECT_BINARY_DIR}/qta.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qta.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
