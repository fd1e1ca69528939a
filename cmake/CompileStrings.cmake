# Turns "id<tab>text" lines into the table TABLE that platform/resources asks. A line that starts with a tab goes on with the text
# above, behind a line end; lines that start with # and blank lines are skipped.
include(${CMAKE_CURRENT_LIST_DIR}/ResourceLines.cmake)
file(READ ${INPUT} content)
set(rows "")
set(open FALSE)
while(NOT content STREQUAL "")
  zp_take_line(content line)
  if(line MATCHES "^([0-9]+)\t(.*)$")
    set(id ${CMAKE_MATCH_1})
    zp_quote(text "${CMAKE_MATCH_2}")
    if(open)
      string(APPEND rows "\"},\n")
    endif()
    string(APPEND rows "    {${id}, \"${text}")
    set(open TRUE)
  elseif(open AND line MATCHES "^\t(.*)$")
    zp_quote(text "${CMAKE_MATCH_1}")
    string(APPEND rows "\\r\\n${text}")
  elseif(NOT line MATCHES "^#" AND NOT line STREQUAL "")
    message(FATAL_ERROR "${INPUT}: not an id, a tab and a text: ${line}")
  endif()
endwhile()
if(open)
  string(APPEND rows "\"},\n")
endif()
file(WRITE ${OUTPUT} "#include \"platform/resources/resources_internal.h\"

namespace zp {

extern ResourceText const ${TABLE}[];
extern unsigned int const ${TABLE}Count;

ResourceText const ${TABLE}[] = {
${rows}};

unsigned int const ${TABLE}Count = sizeof ${TABLE} / sizeof ${TABLE}[0];

}  // namespace zp
")
