// Another program that uses the bridge: without an argument it starts an office, says so, and waits to be killed; with the name
// of a pipe it makes a workbook in the office there, tells how many there are and which is the new one, and goes.

#include <unistd.h>

#include <cstdio>

#include "servers/office/workbook_files.h"

int main(int argc, char ** argv)
{
  office::LinkSettings settings = office::LinkSettings::FromEnvironment();
  settings.pipe = argc > 1 ? argv[1] : "none-such";
  office::Link link(settings);
  if (argc > 1) {
    office::Workbook const made = office::CreateWorkbook(link);
    auto const all = link.ListWorkbooks();
    std::printf("%zu%s%s", all.size(), all.back() == made ? ", last" : "", link.HasStartedTheOffice() ? ", started" : "");
    return 0;
  }
  if (write(1, "!", 1) != 1) return 1;
  for (;;) pause();
}
