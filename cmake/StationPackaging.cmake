# Debian packages (cpack -G DEB in the build directory), one per component:
#   libstation-configuration1      the five shared libraries and the catalogue
#   libstation-configuration-dev   headers, link names, the CMake package, the App 1.0 type description
#   station-tools                  station-config, station-settings (desktop entry, icon), the mount
#                                  helper, the demo station
# Dependencies on system libraries are computed from the binaries by dpkg-shlibdeps.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME station-configuration)
set(CPACK_PACKAGE_VENDOR "Station software team")
set(CPACK_PACKAGE_CONTACT "Station software team <station@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Configuration library of the assembly station")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime dev tools)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Stripped: the debugging information would name the build tree.
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# The tools' own libraries are found in the build tree; their package is named by the component
# dependency below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${CMAKE_BINARY_DIR}/platform ${CMAKE_BINARY_DIR}/lib_configuration)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libstation-configuration${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libstation-configuration-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "qtbase5-dev, qtdeclarative5-dev")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME station-tools)
# Loaded at run time by the settings application and the mount helper, invisible to dpkg-shlibdeps.
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "qml-module-qtquick2, qml-module-qtquick-controls2, qml-module-qtquick-layouts, qml-module-qtquick-window2, qml-module-qtquick-virtualkeyboard, qtvirtualkeyboard-plugin, qml-module-qt-labs-folderlistmodel, libqt5sql5-sqlite, fuse3")

set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Station configuration library: settings, storage folders, shares, sync")
set(CPACK_COMPONENT_DEV_DESCRIPTION "Station configuration library: development files")
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "Station configuration tools: station-config and station-settings")
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
include(CPack)
