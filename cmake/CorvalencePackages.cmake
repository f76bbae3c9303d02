# Packages, made by cpack: with CORVALENCE_PORTABLE the archive that contains Qt, otherwise a Debian package.
set(CPACK_PACKAGE_NAME corvalence)
set(CPACK_PACKAGE_VENDOR "The Corvalence developers")
set(CPACK_PACKAGE_CONTACT "${CORVALENCE_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${CORVALENCE_WEB_PAGE}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "designs the faces of round instruments")
set(CPACK_MONOLITHIC_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_CORVALENCE_SOURCE "${PROJECT_SOURCE_DIR}")

if(CORVALENCE_PORTABLE)
    set(CPACK_GENERATOR External)
    string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" system)
    set(CPACK_PACKAGE_FILE_NAME "corvalence-${PROJECT_VERSION}-${system}")
    set(CPACK_PACKAGING_INSTALL_PREFIX "/")
    set(CPACK_EXTERNAL_ENABLE_STAGING ON)
    set(CPACK_EXTERNAL_PACKAGE_SCRIPT "${PROJECT_SOURCE_DIR}/packaging/portable/pack.cmake")
else()
    set(CPACK_GENERATOR DEB)
    # CMAKE_INSTALL_PREFIX is then the final path, which the desktop files contain.
    set(CPACK_SET_DESTDIR ON)
    set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/debian/finish.cmake")
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
    set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ca-certificates, fonts-dejavu-core, qt6-image-formats-plugins")
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
    set(CPACK_PACKAGE_DESCRIPTION
"Builds the face of a meter, a clock, a cockpit panel or a game gauge from
layers of ticks, arcs and labels, and shows it live. An existing dial can be
traced over its picture.

Faces are exported as transparent PNG, as SVG, and as a table of needle angles
for animation; corvalence-export does the same from the command line, without
a display.")
endif()
include(CPack)
