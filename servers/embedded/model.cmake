# zpworkbook: workbooks in memory and in .xlsx files, without the objects of automation over them. For the module, its tests, the
# benchmark and the fuzz target.
find_package(PkgConfig)
if(PkgConfig_FOUND)
  pkg_check_modules(libzip IMPORTED_TARGET GLOBAL libzip)
  pkg_check_modules(expat IMPORTED_TARGET GLOBAL expat)
endif()
find_package(fmt)
if(NOT libzip_FOUND OR NOT expat_FOUND OR NOT fmt_FOUND)
  message(STATUS "The server of workbooks is not built: install libzip-dev, libexpat1-dev, libfmt-dev and pkgconf for it")
  return()
endif()

include(${CMAKE_CURRENT_LIST_DIR}/../common/common.cmake)
set(workbook_rooms book_part cell cell_store cell_text chart_contents chart_writer iso_dates number_text package package_names
    package_writer relations sheet_writer workbook_writer properties sheet_frame styles_part usual plain_xml
    rich_text shared_strings sheet_part unkept workbook_reader xml_reader)
list(TRANSFORM workbook_rooms PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
list(TRANSFORM workbook_rooms APPEND .cpp)
add_library(zpworkbook STATIC ${workbook_rooms})
set_target_properties(zpworkbook PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
  POSITION_INDEPENDENT_CODE ON)
target_compile_options(zpworkbook PRIVATE ${ZP_COMPILE_OPTIONS})
target_include_directories(zpworkbook PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(zpworkbook PUBLIC zp_servers PRIVATE PkgConfig::libzip PkgConfig::expat fmt::fmt)
