# Lines of a resource file and C++ texts made of them. No list is made of either: brackets and semicolons stay as they stand.

# zp_take_line(<text> <line>): moves the first line of the variable text to the variable line.
macro(zp_take_line text line)
  string(FIND "${${text}}" "\n" zp_end)
  if(zp_end EQUAL -1)
    set(${line} "${${text}}")
    set(${text} "")
  else()
    string(SUBSTRING "${${text}}" 0 ${zp_end} ${line})
    math(EXPR zp_end "${zp_end} + 1")
    string(SUBSTRING "${${text}}" ${zp_end} -1 ${text})
  endif()
endmacro()

# zp_quote(<out> <text>): the characters of a C++ text in its quotes.
function(zp_quote out text)
  string(REPLACE "\\" "\\\\" text "${text}")
  string(REPLACE "\"" "\\\"" text "${text}")
  set(${out} "${text}" PARENT_SCOPE)
endfunction()
