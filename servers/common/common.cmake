# zp_servers: what the servers of spreadsheets share, above all the objects that a program sees.
if(NOT TARGET zp_servers)
  file(GLOB common_rooms CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*.cpp)
  add_library(zp_servers STATIC ${common_rooms})
  set_target_properties(zp_servers PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(zp_servers PRIVATE ${ZP_COMPILE_OPTIONS})
  target_include_directories(zp_servers PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(zp_servers PUBLIC zpbase::zpbase)
endif()
