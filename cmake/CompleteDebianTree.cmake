# Run by CPack when the files of the package are in place and not packed yet.
execute_process(COMMAND ${CPACK_VANTREL_DEBIAN_FOLDER}/complete-tree ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr
                        ${CPACK_PACKAGE_CONTACT} COMMAND_ERROR_IS_FATAL ANY)
