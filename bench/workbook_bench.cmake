target_link_libraries(workbook_bench PRIVATE zpworkbook PkgConfig::libzip PkgConfig::expat)
