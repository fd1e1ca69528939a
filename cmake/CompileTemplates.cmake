# Turns the lines of resources/templates.txt, told there, into the table of dialog templates that platform/resources asks.
include(${CMAKE_CURRENT_LIST_DIR}/ResourceLines.cmake)
file(READ ${INPUT} content)
set(controls "")
set(rows "")
while(NOT content STREQUAL "")
  zp_take_line(content line)
  if(line MATCHES "^dialog\t([0-9]+)\t(.*)$")
    set(id ${CMAKE_MATCH_1})
    zp_quote(title "${CMAKE_MATCH_2}")
    if(NOT rows STREQUAL "")
      string(APPEND controls "};\n")
    endif()
    string(APPEND controls "constexpr DialogControl controls${id}[] = {\n")
    string(APPEND rows "    {${id}, \"${title}\", controls${id}},\n")
  elseif(NOT rows STREQUAL "" AND line MATCHES "^(static|button)\t([0-9]+)\t([^\t]*)(\tdefault)?$")
    set(kind DialogControl::Static)
    if(CMAKE_MATCH_1 STREQUAL "button")
      set(kind DialogControl::Button)
    endif()
    set(id ${CMAKE_MATCH_2})
    set(default false)
    if(NOT "${CMAKE_MATCH_4}" STREQUAL "")
      set(default true)
    endif()
    zp_quote(text "${CMAKE_MATCH_3}")
    string(APPEND controls "    {${kind}, ${id}, \"${text}\", ${default}},\n")
  elseif(NOT line MATCHES "^#" AND NOT line STREQUAL "")
    message(FATAL_ERROR "${INPUT}: not a dialog, or a control of one: ${line}")
  endif()
endwhile()
file(WRITE ${OUTPUT} "#include \"platform/resources/resources_internal.h\"

namespace zp {

${controls}};

DialogTemplate const applicationTemplates[] = {
${rows}};

unsigned int const applicationTemplateCount = sizeof applicationTemplates / sizeof applicationTemplates[0];

}  // namespace zp
")
