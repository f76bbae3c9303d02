# Runs when the project is installed: fills in the entries that name programs by their full paths, which are known
# only now, and installs them. Expects program_dir, bin_dir and data_dir, which may be relative to the prefix, and
# the folders here and work.
foreach(folder program_dir bin_dir data_dir)
    get_filename_component(${folder} "${${folder}}" ABSOLUTE BASE_DIR "${CMAKE_INSTALL_PREFIX}")
endforeach()
set(program_folder "${program_dir}")
set(program "${program_dir}/corvalence")
set(exporter "${bin_dir}/corvalence-export")
# A command stands in quotes, and begins a field with the per cent sign.
string(REPLACE "%" "%%" program_in_command "${program}")
string(REPLACE "%" "%%" exporter_in_command "${exporter}")

configure_file("${here}/corvalence.desktop.in" "${work}/corvalence.desktop" @ONLY)
configure_file("${here}/corvalence.thumbnailer.in" "${work}/corvalence.thumbnailer" @ONLY)
file(INSTALL "${work}/corvalence.desktop" DESTINATION "${data_dir}/applications")
file(INSTALL "${work}/corvalence.thumbnailer" DESTINATION "${data_dir}/thumbnailers")
