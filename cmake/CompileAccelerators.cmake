# Turns the lines of resources/accelerators.txt, told there, into the tables that platform/resources asks.
include(${CMAKE_CURRENT_LIST_DIR}/ResourceLines.cmake)
file(READ ${INPUT} content)
set(keys "")
set(rows "")
while(NOT content STREQUAL "")
  zp_take_line(content line)
  if(line MATCHES "^table\t([0-9]+)$")
    set(id ${CMAKE_MATCH_1})
    if(NOT rows STREQUAL "")
      string(APPEND keys "};\n")
    endif()
    string(APPEND keys "constexpr ACCEL keys${id}[] = {\n")
    string(APPEND rows "    {${id}, keys${id}},\n")
  elseif(NOT rows STREQUAL "" AND line MATCHES "^key\t(0x[0-9A-F]+)\t(0x[0-9A-F]+)$")
    string(APPEND keys "    {FVIRTKEY, ${CMAKE_MATCH_1}, ${CMAKE_MATCH_2}},\n")
  elseif(NOT line MATCHES "^#" AND NOT line STREQUAL "")
    message(FATAL_ERROR "${INPUT}: not a table, or a key of one: ${line}")
  endif()
endwhile()
file(WRITE ${OUTPUT} "#include \"platform/resources/resources_internal.h\"

namespace zp {

${keys}};

AcceleratorTable const applicationAccelerators[] = {
${rows}};

unsigned int const applicationAcceleratorCount = sizeof applicationAccelerators / sizeof applicationAccelerators[0];

}  // namespace zp
")
