# Installation: libraries, public headers, catalogue, demo station and a CMake package
# (find_package(StationConfiguration) gives Station::Configuration and the siblings).
include(CMakePackageConfigHelpers)

set(STATION_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/StationConfiguration)

install(TARGETS StationUtilities StationCore StationAccess StationSync StationConfiguration
    EXPORT StationTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)

# Public headers only: implementation headers (*_p.h, the mount-table reader) stay in the tree.
foreach(_sibling utilities core access sync)
    install(DIRECTORY ${STATION_INTERFACES_DIR}/${_sibling} ${STATION_EXPORT_HEADERS_DIR}/${_sibling}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/station COMPONENT dev FILES_MATCHING PATTERN "*.h")
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/lib_configuration/source/ ${STATION_EXPORT_HEADERS_DIR}/configuration/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/station/configuration COMPONENT dev
    FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE PATTERN "mounttablereader.h" EXCLUDE)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/demo/station DESTINATION ${CMAKE_INSTALL_DATADIR}/station/demo COMPONENT tools
    USE_SOURCE_PERMISSIONS)

install(EXPORT StationTargets NAMESPACE Station:: DESTINATION ${STATION_PACKAGE_DIR} COMPONENT dev)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/StationConfigurationConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/StationConfigurationConfig.cmake
    INSTALL_DESTINATION ${STATION_PACKAGE_DIR}
    PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/StationConfigurationConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/StationConfigurationConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/StationConfigurationConfigVersion.cmake
    DESTINATION ${STATION_PACKAGE_DIR} COMPONENT dev)
