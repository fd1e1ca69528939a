# The rooms of zp dxf that turn bytes into drawings and back.
foreach(room IN ITEMS conversion dxf_colors dxf_entity dxf_frame dxf_picture dxf_reader dxf_tags metafile_survey record_names)
  target_sources(dxf_fuzz PRIVATE ${PROJECT_SOURCE_DIR}/tools/drawing/${room}.cpp)
endforeach()
find_package(fmt REQUIRED)
target_sources(dxf_fuzz PRIVATE ${PROJECT_SOURCE_DIR}/tools/pictures/picture.cpp ${PROJECT_SOURCE_DIR}/tools/program.cpp
               ${PROJECT_SOURCE_DIR}/tools/output_file.cpp ${PROJECT_SOURCE_DIR}/tools/shown_text.cpp)
target_link_libraries(dxf_fuzz PRIVATE fmt::fmt cairo)
