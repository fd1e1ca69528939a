# The development packages of LibreOffice. Defines LibreOfficeSdk_FOUND, LIBREOFFICE_PROGRAM (the folder of its programs), the target
# LibreOffice::uno, and zp_uno_headers(<folder> <stamp>), which lets cppumaker write the headers of the interfaces into a folder.
set(LIBREOFFICE_ROOT /usr/lib/libreoffice CACHE PATH "Where LibreOffice is installed")
find_program(LIBREOFFICE_CPPUMAKER cppumaker HINTS ${LIBREOFFICE_ROOT}/sdk/bin)
find_path(LIBREOFFICE_INCLUDE sal/types.h PATH_SUFFIXES libreoffice HINTS ${LIBREOFFICE_ROOT}/sdk/include)
find_path(LIBREOFFICE_PROGRAM types/offapi.rdb HINTS ${LIBREOFFICE_ROOT}/program NO_DEFAULT_PATH)
foreach(library IN ITEMS uno_cppu uno_cppuhelpergcc3 uno_sal)
  find_library(LIBREOFFICE_${library} ${library} HINTS ${LIBREOFFICE_ROOT}/sdk/lib)
  list(APPEND libreoffice_libraries LIBREOFFICE_${library})
endforeach()
mark_as_advanced(LIBREOFFICE_CPPUMAKER LIBREOFFICE_INCLUDE LIBREOFFICE_PROGRAM ${libreoffice_libraries})

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LibreOfficeSdk
  REQUIRED_VARS LIBREOFFICE_CPPUMAKER LIBREOFFICE_INCLUDE LIBREOFFICE_PROGRAM ${libreoffice_libraries})

if(LibreOfficeSdk_FOUND AND NOT TARGET LibreOffice::uno)
  add_library(LibreOffice::uno INTERFACE IMPORTED)
  target_compile_definitions(LibreOffice::uno INTERFACE LINUX OFFICE_PROGRAM_FOLDER="${LIBREOFFICE_PROGRAM}")
  target_include_directories(LibreOffice::uno SYSTEM INTERFACE ${LIBREOFFICE_INCLUDE})
  foreach(library IN LISTS libreoffice_libraries)
    target_link_libraries(LibreOffice::uno INTERFACE ${${library}})
  endforeach()
  # The libraries need others that lie beside the programs.
  target_link_options(LibreOffice::uno INTERFACE -Wl,-rpath-link,${LIBREOFFICE_PROGRAM} -Wl,-rpath,${LIBREOFFICE_PROGRAM})
endif()

function(zp_uno_headers folder stamp)
  add_custom_command(OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
    COMMAND ${LIBREOFFICE_CPPUMAKER} -O${folder} ${LIBREOFFICE_PROGRAM}/types.rdb ${LIBREOFFICE_PROGRAM}/types/offapi.rdb
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS ${LIBREOFFICE_PROGRAM}/types/offapi.rdb COMMENT "Writing the headers of the office's interfaces" VERBATIM)
endfunction()
