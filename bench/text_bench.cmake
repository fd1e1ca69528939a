# fast_float, a peer of the number reader, where its header is installed.
find_path(ZP_FAST_FLOAT_HEADER fast_float/fast_float.h)
if(ZP_FAST_FLOAT_HEADER)
  zp_add_peer(text_bench ZP_HAVE_FAST_FLOAT SOURCE text_bench.cpp HEADERS ${ZP_FAST_FLOAT_HEADER})
else()
  message(STATUS "text_bench: no fast_float, that peer is left out")
endif()
