# Libraries, public headers, and what finds them: a CMake package and a pkg-config file. The installed
# folder may be moved.
include(CMakePackageConfigHelpers)
include(cmake/PublicHeaders.cmake)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/unitflow)
set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/unitflow)

function(install_headers source_folder)
    foreach(header IN LISTS ARGN)
        get_filename_component(subfolder ${header} DIRECTORY)
        install(FILES ${source_folder}/${header} DESTINATION ${header_folder}/${subfolder})
    endforeach()
endfunction()

function(install_library target export_name)
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${export_name})
    install(
        TARGETS ${target}
        EXPORT unitflow-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

install_library(unitflow engine)
install_headers(${PROJECT_SOURCE_DIR}/engine ${UNITFLOW_ENGINE_HEADERS} ${UNITFLOW_HOST_HEADERS})
if(TARGET unitflow-hostkit)
    install_library(unitflow-hostkit hostkit)
    install_headers(${PROJECT_SOURCE_DIR} ${UNITFLOW_HOSTKIT_HEADERS})
endif()
if(TARGET unitflow-trace)
    install_library(unitflow-trace trace)
    install_headers(${PROJECT_SOURCE_DIR} ${UNITFLOW_TRACE_HEADERS})
endif()
if(TARGET unitflow-filehost)
    install_library(unitflow-filehost filehost)
    set_target_properties(unitflow-filehost PROPERTIES INSTALL_RPATH $ORIGIN) # finds the engine
    install_headers(${PROJECT_SOURCE_DIR} ${UNITFLOW_FILEHOST_HEADERS})
endif()

if(TARGET unitflow-program)
    set_target_properties(unitflow-program PROPERTIES INSTALL_RPATH
                                                      $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
endif()

# What editors check descriptions by.
install(FILES docs/description.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/unitflow)

install(EXPORT unitflow-targets NAMESPACE Unitflow:: DESTINATION ${package_folder})
configure_package_config_file(cmake/unitflowConfig.cmake.in unitflowConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(unitflowConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(
    FILES ${PROJECT_BINARY_DIR}/unitflowConfig.cmake ${PROJECT_BINARY_DIR}/unitflowConfigVersion.cmake
          cmake/UnitflowHostChecks.cmake
    DESTINATION ${package_folder})

# From the folder of the pkg-config file to the prefix.
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${pkgconfig_folder} /prefix)
configure_file(cmake/unitflow.pc.in unitflow.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/unitflow.pc DESTINATION ${pkgconfig_folder})
