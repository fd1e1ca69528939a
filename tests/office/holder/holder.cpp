// Another program that uses the bridge: without an argument it starts an office, says so, and waits to be killed; with the name
// of a pipe it makes a workbook in the office there, tells how many there are and which is the new one, and goes; with "exit" it
// keeps a link to the office into its own end, and so does a fork of it.

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "servers/office/workbook_files.h"

namespace {

COleDispatchDriver g_link;

int exitWithALink()
{
  if (!g_link.CreateDispatch("Zephlow.Office")) return 1;
  pid_t const child = fork();
  if (child == 0) std::exit(0);
  int status = 1;
  waitpid(child, &status, 0);
  return status == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char ** argv)
{
  if (argc > 1 && std::string_view(argv[1]) == "exit") return exitWithALink();
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
