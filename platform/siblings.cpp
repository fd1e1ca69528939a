// What sibling modules of the simulator own and this library only reads.

#include <zpbase/config.h>
#include <zpbase/text.h>

char job_path[260] = "";
char workfile_path[260] = "";
char poolfile_path[260] = "";

HINSTANCE GetZPLWResourceHandle()
{
  return nullptr;  // the strings and templates of the application are compiled into the program
}
