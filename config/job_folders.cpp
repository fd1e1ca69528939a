// What sibling modules of the simulator set and this library only reads: the job's directories and the resource module.

#include <zpbase/config.h>

#include <zpbase/job_folders.h>

char job_path[260] = "";
char workfile_path[260] = "";
char poolfile_path[260] = "";

HINSTANCE GetZPLWResourceHandle()
{
  return nullptr;  // the strings and templates of the application are compiled into the program
}
