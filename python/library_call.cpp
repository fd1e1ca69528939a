// One thread at a time, and what it was told.

#include "python/library_call.h"

#include "tools/program.h"

namespace zp::python {

namespace {

std::mutex g_Library;
std::vector<std::string> * g_pTold = nullptr;  // of the thread in the library

void keep(std::string_view line)
{
  if (g_pTold != nullptr) g_pTold->emplace_back(line);
}

}  // namespace

LibraryCall::LibraryCall(std::vector<std::string> & told, Others others)
{
  if (others == Others::GoOn) m_Released.emplace();
  m_Lock = std::unique_lock(g_Library);
  g_pTold = &told;
  SetTeller(keep);
}

LibraryCall::~LibraryCall()
{
  g_pTold = nullptr;
}

void Warn(std::vector<std::string> const & told)
{
  for (std::string const & line : told) {
    if (PyErr_WarnFormat(PyExc_UserWarning, 1, "%U", TextOf(line).ptr()) != 0) throw py::error_already_set();
  }
}

}  // namespace zp::python
