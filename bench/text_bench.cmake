# fast_float, a peer of the number reader, where its header is installed.
find_path(ZP_FAST_FLOAT_HEADER fast_float/fast_float.h)
if(ZP_FAST_FLOAT_HEADER)
  target_compile_definitions(text_bench PRIVATE ZP_HAVE_FAST_FLOAT)
  target_include_directories(text_bench PRIVATE ${ZP_FAST_FLOAT_HEADER})
else()
  message(STATUS "text_bench: no fast_float, that peer is left out")
endif()
