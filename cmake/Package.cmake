# The Debian package that CPack makes of what is installed.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantrel)
set(CPACK_PACKAGE_VENDOR "The Vantrel developers")
set(CPACK_PACKAGE_CONTACT "The Vantrel developers <developers@vantrel.com>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Without a monospaced font the columns would not stand.
set(CPACK_DEBIAN_PACKAGE_DEPENDS fonts-dejavu-core)
# In this order: icons in the last lines of the panels, opening files, knowing their kinds, windows without X11.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-color-emoji, xdg-utils, shared-mime-info, qt6-wayland")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "file manager that shows the size of every folder")
file(READ packaging/debian/description CPACK_DEBIAN_PACKAGE_DESCRIPTION)

# What Debian wants beyond what other systems do is added to the tree before it is packed.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/CompleteDebianTree.cmake)
set(CPACK_VANTREL_DEBIAN_FOLDER ${PROJECT_SOURCE_DIR}/packaging/debian)

# Its files are as old as the last commit, so that the same commit gives the same package.
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/PackageTime.cmake)
set(CPACK_VANTREL_SOURCE_FOLDER ${PROJECT_SOURCE_DIR})
set(CPACK_VANTREL_RELEASE_DATE ${VANTREL_RELEASE_DATE})

include(CPack)
