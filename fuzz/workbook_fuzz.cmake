if(NOT TARGET zpworkbook)
  include(${PROJECT_SOURCE_DIR}/servers/embedded/model.cmake)
endif()
target_link_libraries(workbook_fuzz PRIVATE zpworkbook)
