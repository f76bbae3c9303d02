# Runs during the installation, when the prefix is known: writes the full paths of the programs into the desktop files
# and installs these. Input: program_dir, bin_dir and data_dir, which may be relative to the prefix; the folder "here"
# with the templates and the folder "work" for the results.
foreach(folder program_dir bin_dir data_dir)
    get_filename_component(${folder} "${${folder}}" ABSOLUTE BASE_DIR "${CMAKE_INSTALL_PREFIX}")
endforeach()
set(program_folder "${program_dir}")
set(program "${program_dir}/corvalence")
set(exporter "${bin_dir}/corvalence-export")
# In a command the per cent sign starts a field code.
string(REPLACE "%" "%%" program_in_command "${program}")
string(REPLACE "%" "%%" exporter_in_command "${exporter}")

configure_file("${here}/corvalence.desktop.in" "${work}/corvalence.desktop" @ONLY)
configure_file("${here}/corvalence.thumbnailer.in" "${work}/corvalence.thumbnailer" @ONLY)
file(INSTALL "${work}/corvalence.desktop" DESTINATION "${data_dir}/applications")
file(INSTALL "${work}/corvalence.thumbnailer" DESTINATION "${data_dir}/thumbnailers")
