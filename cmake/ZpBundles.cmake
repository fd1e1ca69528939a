# With CMAKE_UNITY_BUILD the sources of a target are compiled in bundles of sixteen, in about half the time, and those of zp in two
# bundles, since the headers that they share cost more than they do. These stay on their own: what they keep to themselves has a name
# that another file of their target uses too. A file that a build in bundles can't compile ("redefinition of ...") is named here, or
# better, names its things anew. Which files share a bundle changes with each new file.
set(ZP_COMPILED_ALONE
  data/GPv.cpp
  drawing/dxf_tables.cpp
  numeric/kernels_avx512.cpp
  numeric/kernels_baseline.cpp
  numeric/matrix_arithmetic.cpp
  numeric/vector_arithmetic.cpp
  platform/automation/command_target.cpp
  platform/documents/ole_document.cpp
  platform/registry/hive.cpp
  platform/registry/registry_text.cpp
  platform/resources/resources.cpp
  python/settings.cpp
  servers/embedded/package_writer.cpp
  servers/embedded/sheet_frame.cpp
  tests/data/GPv_test.cpp
  tests/faults/program_faults_test.cpp
  tests/faults/settings_operations.cpp
)

list(TRANSFORM ZP_COMPILED_ALONE PREPEND ${PROJECT_SOURCE_DIR}/)

# A source's properties belong to the folder whose targets compile it.
get_property(folders DIRECTORY PROPERTY SUBDIRECTORIES)
foreach(folder IN LISTS folders)
  get_property(inner DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  list(APPEND folders ${inner})
endforeach()
set_source_files_properties(${ZP_COMPILED_ALONE} DIRECTORY ${PROJECT_SOURCE_DIR} ${folders} PROPERTIES
  SKIP_UNITY_BUILD_INCLUSION ON)
# In larger ones clang-tidy sees from the destructors of documents and views through to lists that raise for a wrong position.
set_target_properties(zp_platform PROPERTIES UNITY_BUILD_BATCH_SIZE 8)
if(TARGET zp_tools)
  set_target_properties(zp_tools PROPERTIES UNITY_BUILD_BATCH_SIZE 56)
endif()
if(TARGET zp_header_gate)
  set_target_properties(zp_header_gate PROPERTIES UNITY_BUILD OFF)  # each header alone is what it looks at
endif()
