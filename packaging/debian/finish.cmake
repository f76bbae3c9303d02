# CPack runs this after the installation for the Debian package.
execute_process(
    COMMAND "${CPACK_CORVALENCE_SOURCE}/packaging/debian/finish" "${CPACK_TEMPORARY_DIRECTORY}"
            "${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}" "${CPACK_PACKAGE_CONTACT}"
    COMMAND_ERROR_IS_FATAL ANY)
