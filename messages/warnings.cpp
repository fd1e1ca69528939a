// Warnings: the gate that decides whether they are wanted, and the file that they go to.

#include <zpbase/messages.h>

#include <algorithm>
#include <new>
#include <utility>

#include <zpbase/config.h>
#include <zpbase/job_folders.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/resources.h>
#include <zpbase/store.h>

namespace {

constexpr int undecided = 0;
constexpr int allowed = 1;
constexpr int off = 2;
constexpr unsigned int firstWarningID = 55008;
constexpr int maxWarning = 260;  // characters

int g_nGate = undecided;
zp::WarningTaker * g_pTaker = nullptr;
bool g_bWriting = false;  // a problem with the warnings file itself is not warned of

CString warningsPath()
{
  return CString(job_path) + GetWarningsFileName();
}

void appendLine(CString const & text)
{
  CString line = text.Left(maxWarning);
  for (int i = 0; i < line.GetLength(); ++i)
    if (line[i] == '\r' || line[i] == '\n') line.SetAt(i, ' ');
  GPFile file(warningsPath());
  if (!file.Open(file.Exists() ? CFile::modeWrite : CFile::modeCreate)) return;
  file.SeekToEnd();
  file.WriteLine(line);
  file.Close();
}

CString numberOf(unsigned int id)
{
  return zp::FormatResource(firstWarningID, {id - firstWarningID});
}

void putText(CString const & text)
{
  if ((job_path[0] == '\0' && g_pTaker == nullptr) || g_bWriting) return;
  struct Writing {
    Writing() { g_bWriting = true; }
    ~Writing() { g_bWriting = false; }
  } const writing;
  if (g_pTaker != nullptr)
    g_pTaker->Put(text.View());
  else
    appendLine(text);
}

// Puts the text that make gives, and returns what PutWarning gives. A warning tells of a failure, and may stand where nothing can
// be raised: one that can't be put, for want of memory too, is lost.
template <class Make>
int putIfAllowed(Make make)
{
  try {
    if (!AllowWarnings()) return 0;
    putText(make());
  } catch (CException * problem) {
    zp::ExceptionGuard const guard(problem);
  } catch (std::bad_alloc const &) {
  }
  return 1;
}

}  // namespace

int AllowWarnings()
{
  if (g_nGate == undecided) {
    if (AfxGetApp() == nullptr) return 1;
    CString setting;
    GetSysString(setting, "Misc", GetWarningsKey(), CString());
    g_nGate = setting.CompareNoCase(GetNoString()) == 0 ? off : allowed;
    if (g_nGate == allowed) FlushWarningsFile();
  }
  return g_nGate == allowed;
}

int PutWarning(char const * format, ...)
{
  va_list args;
  va_start(args, format);
  int const isAllowed = putIfAllowed([&] {
    CString text;
    text.FormatV(format, args);
    return text;
  });
  va_end(args);
  return isAllowed;
}

int PutWarning(unsigned int id, ...)
{
  va_list args;
  va_start(args, id);
  int const isAllowed = putIfAllowed([&] {
    CString format;
    if (!format.LoadString(id)) return numberOf(id) + zp::FormatResource(id, {});
    CString message;
    message.FormatV(format, args);
    return numberOf(id) + message;
  });
  va_end(args);
  return isAllowed;
}

int PutWarning(unsigned int id, std::initializer_list<zp::FormatArg> args)
{
  return putIfAllowed([&] { return numberOf(id) + zp::FormatResource(id, args); });
}

void FlushWarningsFile()
{
  if (job_path[0] != '\0') GPFile::DeleteFile(warningsPath());
}

namespace zp {

WarningTaker::WarningTaker(Take take) : m_Take(std::move(take)), m_pFormer(g_pTaker)
{
  g_pTaker = this;
}

WarningTaker::~WarningTaker()
{
  g_pTaker = m_pFormer;
}

void ResetWarningsGate()
{
  g_nGate = undecided;
}

}  // namespace zp
