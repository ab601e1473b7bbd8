# Debian packages, one for each component of the installation: the target "package", or cpack.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "the OverlayEditor authors")
set(CPACK_PACKAGE_CONTACT "the OverlayEditor authors <maintainers@overlayeditor.example>")
# Each package has a line of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL plugin sandbox zel development)
if(TARGET ogr_ZEL)
  list(APPEND CPACK_COMPONENTS_ALL gdal)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/packaging/PackageDate.cmake)
file(WRITE ${CPACK_PROJECT_CONFIG_FILE} "set(ENV{SOURCE_DATE_EPOCH} ${OVERLAYEDITOR_SOURCE_DATE})\n")
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/AddDebianFiles.cmake)
set(CPACK_DEBIAN_FILES ${CMAKE_CURRENT_LIST_DIR}/debian)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE overlayeditor)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_PLUGIN_PACKAGE_NAME overlayeditor)
# The font of the labels at edit points; and what opens the manual.
set(CPACK_DEBIAN_PLUGIN_PACKAGE_DEPENDS fonts-dejavu-core)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SUGGESTS halvis-sandbox)
set(CPACK_DEBIAN_PLUGIN_DESCRIPTION
    "overlay editor, a plug-in for the HALVIS globe
OverlayEditor draws overlay shapes on the globe with the mouse, gives them
exact numbers, attaches them to moving platforms, and keeps them as ZEL
files, plain text that can be exchanged and versioned.
This package holds the plug-in, which a host loads.")

set(CPACK_DEBIAN_SANDBOX_PACKAGE_NAME halvis-sandbox)
# The fonts of labels on the globe, and its picture.
set(CPACK_DEBIAN_SANDBOX_PACKAGE_DEPENDS
    "overlayeditor (= ${PROJECT_VERSION}), fonts-dejavu-core, fonts-liberation, xplanet-images")
set(CPACK_DEBIAN_SANDBOX_PACKAGE_RECOMMENDS "shared-mime-info, xdg-utils")
# Pictures where there is no screen.
set(CPACK_DEBIAN_SANDBOX_PACKAGE_SUGGESTS "xvfb, zel")
set(CPACK_DEBIAN_SANDBOX_DESCRIPTION
    "globe on which to draw overlays: a stand-in host for OverlayEditor
The sandbox loads the overlay editor and serves it as the host HALVIS
does: a globe, dialogs, platforms that move along their tracks, and
overlays attached to them. It shows ZEL files, draws them as pictures
without a window, and plays scripts that act as a person would.")

set(CPACK_DEBIAN_ZEL_PACKAGE_NAME zel)
set(CPACK_DEBIAN_ZEL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_ZEL_PACKAGE_SUGGESTS "bash-completion, gdal-driver-zel, halvis-sandbox")
set(CPACK_DEBIAN_ZEL_DESCRIPTION
    "check, describe and format ZEL overlay files
ZEL files describe shapes on the globe as plain text. The zel command
checks them as the host and its overlay editor read them, tells what is
in them, and writes them in one order and one form.")

set(CPACK_DEBIAN_GDAL_PACKAGE_NAME gdal-driver-zel)
set(CPACK_DEBIAN_GDAL_PACKAGE_ENHANCES "gdal-bin, qgis, python3-gdal")
set(CPACK_DEBIAN_GDAL_PACKAGE_SUGGESTS "gdal-bin, zel")
set(CPACK_DEBIAN_GDAL_DESCRIPTION
    "ZEL overlay files for GDAL and the programs that use it
ZEL files describe shapes on the globe as plain text. With this driver
GDAL reads and writes them, and so do QGIS, ogr2ogr and others: circles
come back as circles, with their names, sizes and colours.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME overlayeditor-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "overlayeditor (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS cmake)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "contract between OverlayEditor and its host, development files
The headers from which one can write another host for the overlay editor,
or another plug-in for its host, the files with which CMake's
find_package(OverlayEditor) finds them, and what holds plug-ins and hosts
against the contract: hpi-check-plugin and the plug-in HostProbe.")

include(CPack)
