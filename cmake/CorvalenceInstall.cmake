# Installation. All paths in installed files are relative, so that the installation can be moved.
#
# The form names the icon as ../corvalence.ico, relative to the working directory, and presets are in "Presets" beside
# the program. The program is therefore installed into a folder of its own, with the icon in the folder above.
if(WIN32)
    set(corvalence_home ".")
    set(corvalence_program_dir "${CMAKE_INSTALL_BINDIR}")
else()
    set(corvalence_home "${CMAKE_INSTALL_LIBDIR}/corvalence")
    set(corvalence_program_dir "${corvalence_home}/bin")
endif()
# Not CMAKE_INSTALL_DOCDIR: in a build as a subdirectory, that is the parent project's directory.
set(corvalence_doc_dir "${CMAKE_INSTALL_DATAROOTDIR}/doc/corvalence")

install(TARGETS corvalence RUNTIME DESTINATION "${corvalence_program_dir}" COMPONENT corvalence_editor)
# Qt may be outside the system's library folders.
set_target_properties(corvalence PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
install(FILES packaging/small.qss DESTINATION "${CMAKE_INSTALL_DATADIR}/corvalence" COMPONENT corvalence_editor)
install(FILES corvalence.ico DESTINATION "${corvalence_home}" COMPONENT corvalence_editor)

if(NOT WIN32)
    # All programs can be called by name: the editor through a script, the others through links.
    set(links "${PROJECT_BINARY_DIR}/install")
    file(RELATIVE_PATH corvalence_program_from_bin "${CMAKE_INSTALL_FULL_BINDIR}"
        "${CMAKE_INSTALL_PREFIX}/${corvalence_program_dir}")
    configure_file(packaging/corvalence.in "${links}/corvalence" @ONLY)
    install(PROGRAMS "${links}/corvalence" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT corvalence_editor)
endif()

# Installs a command-line program with its link, manual page and completions.
function(corvalence_install_command program component)
    install(TARGETS ${program} RUNTIME DESTINATION "${corvalence_program_dir}" COMPONENT ${component})
    set_target_properties(${program} PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
    if(NOT WIN32)
        file(CREATE_LINK "${corvalence_program_from_bin}/${program}" "${links}/${program}" SYMBOLIC)
        install(FILES "${links}/${program}" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${component})
    endif()
    install(FILES packaging/man/${program}.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT ${component})
    install(FILES packaging/completions/${program}.bash
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
        COMPONENT ${component}
        RENAME ${program})
    install(FILES packaging/completions/_${program}
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions"
        COMPONENT ${component})
endfunction()
corvalence_install_command(corvalence-export corvalence_exporter)
corvalence_install_command(corvalence-sheet corvalence_sheet)
corvalence_install_command(corvalence-fit corvalence_fit)
set(corvalence_programs corvalence corvalence-export corvalence-sheet corvalence-fit)

if(WIN32)
    find_program(CORVALENCE_WINDEPLOYQT windeployqt HINTS "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS}"
        DOC "Copies the libraries of Qt to programs")
    if(CORVALENCE_WINDEPLOYQT)
        list(TRANSFORM corvalence_programs PREPEND "\"\${CMAKE_INSTALL_PREFIX}/${corvalence_program_dir}/"
            OUTPUT_VARIABLE programs)
        list(TRANSFORM programs APPEND ".exe\"")
        list(JOIN programs " " programs)
        install(CODE "
            execute_process(
                COMMAND \"${CORVALENCE_WINDEPLOYQT}\" ${programs}
                COMMAND_ERROR_IS_FATAL ANY)"
            COMPONENT corvalence_editor)
    endif()
endif()

# Documents for users. Developers read the others in the source tree.
install(FILES docs/README.installed.md DESTINATION "${corvalence_doc_dir}" COMPONENT corvalence_documentation
    RENAME README.md)
install(FILES CHANGELOG.md LICENSE docs/angles.schema.json docs/automation.md docs/fit.md docs/gallery.md docs/gauge-format.md
        docs/gauge.schema.json docs/guide.md docs/install.md docs/needle.md docs/sheet.md docs/sheet.png
    DESTINATION "${corvalence_doc_dir}" COMPONENT corvalence_documentation)
install(DIRECTORY docs/fit docs/gallery docs/guide DESTINATION "${corvalence_doc_dir}" COMPONENT corvalence_documentation)
install(DIRECTORY samples DESTINATION "${CMAKE_INSTALL_DATADIR}/corvalence" COMPONENT corvalence_samples
    FILES_MATCHING PATTERN "*.gauge" PATTERN "*.csv")

if(CORVALENCE_PORTABLE)
    # DT_RPATH instead of DT_RUNPATH: it also applies to the dependencies of the libraries.
    set_target_properties(${corvalence_programs} PROPERTIES
        INSTALL_RPATH "$ORIGIN/../lib"
        LINK_OPTIONS "LINKER:--disable-new-dtags")
    install(CODE "
        set(root \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
        execute_process(
            COMMAND \"${PROJECT_SOURCE_DIR}/packaging/portable/bundle\" \"\${root}/${corvalence_home}\"
                    \"\${root}/${corvalence_doc_dir}/bundled\" \"${QT6_INSTALL_PREFIX}/${QT6_INSTALL_PLUGINS}\"
            COMMAND_ERROR_IS_FATAL ANY)"
        COMPONENT corvalence_editor)
endif()
