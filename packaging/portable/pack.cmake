# CPack runs this after the installation for the portable archive. The same files give the same bytes.
set(date "$ENV{SOURCE_DATE_EPOCH}")
set(name "${CPACK_PACKAGE_FILE_NAME}")
set(stage "${CPACK_TEMPORARY_DIRECTORY}")
foreach(program corvalence corvalence-export corvalence-sheet corvalence-fit)
    file(CREATE_LINK bin/${program} "${stage}/${program}" SYMBOLIC)
endforeach()
execute_process(
    COMMAND chmod --recursive u=rwX,go=rX "${stage}"
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env LC_ALL=C XZ_DEFAULTS=--threads=1
            tar --create --xz --file "${CPACK_PACKAGE_DIRECTORY}/${name}.tar.xz" --directory "${stage}" --format=gnu
            --sort=name "--mtime=@${date}" --owner=0 --group=0 --numeric-owner "--transform=flags=rh;s,^\\.,${name}," .
    COMMAND_ERROR_IS_FATAL ANY)
