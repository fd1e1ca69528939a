// Starting and ending an office. A guard, a small shell of its own group, holds one end of a pair of sockets: when our end
// closes, because the office was ended or because this process died, it kills the group that it was told last and removes the
// files.
#include "office_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <thread>

#include <rtl/digest.h>
#include <osl/file.hxx>
#include <rtl/ustring.hxx>

#include "failure.h"
#include "office_text.h"

namespace office {
namespace {

using namespace std::chrono_literals;

constexpr int wantsRestart = 81;  // the status of an office that has just filled its profile
constexpr int mostRestarts = 3;
constexpr auto timeToEnd = 3s;

// A lock is removed only if it is one of this office, whose folder it names.
constexpr char guardScript[] = R"(
folder=$1
shift
group=
while read -r what value; do
  case $what in
    group) group=$value ;;
    lock) set -- "$@" "$value" ;;
  esac
done
if [ -n "$group" ]; then
  kill -s KILL -- "-$group"
  n=0
  while [ $n -lt 20 ] && kill -s 0 -- "-$group"; do sleep 0.05; n=$((n + 1)); done
fi
for file in "$@"; do
  case $file in
    */.~lock.*) grep -q -F -- "${folder##*/}" "$file" || continue ;;
  esac
  rm -f -- "$file"
done
rm -rf -- "$folder"
)";

std::vector<char *> pointersTo(std::vector<std::string> & words)
{
  std::vector<char *> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string & word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

// This process's environment with some variables set anew.
std::vector<std::string> environmentWith(std::vector<std::string> const & settings)
{
  std::vector<std::string> all = settings;
  for (char ** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    std::string_view const text = *entry;
    bool isSet = false;
    for (std::string const & setting : settings) isSet |= text.starts_with(setting.substr(0, setting.find('=') + 1));
    if (!isSet) all.emplace_back(text);
  }
  return all;
}

// Starts a program in a group of its own, with every signal as at birth, its input from a descriptor (or nothing, for -1), its
// output thrown away, and no other descriptor of ours. The error number, or 0.
int spawn(std::vector<std::string> words, std::vector<std::string> environment, int input, pid_t & child)
{
  posix_spawn_file_actions_t files;
  posix_spawnattr_t how;
  sigset_t signals;
  if (int const error = posix_spawn_file_actions_init(&files)) return error;
  if (int const error = posix_spawnattr_init(&how)) {
    posix_spawn_file_actions_destroy(&files);
    return error;
  }
  int error = input >= 0 ? posix_spawn_file_actions_adddup2(&files, input, 0)
                         : posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
  for (int const output : {1, 2})
    if (error == 0) error = posix_spawn_file_actions_addopen(&files, output, "/dev/null", O_WRONLY, 0);
  if (error == 0) error = posix_spawn_file_actions_addclosefrom_np(&files, 3);
  sigemptyset(&signals);
  if (error == 0) error = posix_spawnattr_setsigmask(&how, &signals);
  sigfillset(&signals);
  if (error == 0) error = posix_spawnattr_setsigdefault(&how, &signals);
  if (error == 0) error = posix_spawnattr_setflags(&how, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  if (error == 0)
    error = posix_spawn(&child, words.front().c_str(), &files, &how, pointersTo(words).data(), pointersTo(environment).data());
  posix_spawnattr_destroy(&how);
  posix_spawn_file_actions_destroy(&files);
  return error;
}

// Waits for a child for a while; true when it is no more, or no child of ours that could be waited for.
bool waitFor(pid_t child, std::chrono::milliseconds time, int & status)
{
  for (auto const end = std::chrono::steady_clock::now() + time;; std::this_thread::sleep_for(2ms)) {
    pid_t const waited = waitpid(child, &status, WNOHANG);
    if (waited == child || (waited < 0 && errno != EINTR)) return true;
    if (std::chrono::steady_clock::now() >= end) return false;
  }
}

[[noreturn]] void refuseToStart(std::string const & what, int error)
{
  throw Failure{startFailed, what + ": " + TextOfError(error)};
}

// The pipe by which an office finds another one of the same profile: its name is a digest of the profile's.
std::string profilesPipe(std::string const & profile)
{
  rtl::OUString const text = FromUtf8(profile);
  std::array<sal_uInt8, RTL_DIGEST_LENGTH_MD5> bytes{};
  if (rtl_digest_MD5(text.getStr(), static_cast<sal_uInt32>(text.getLength()) * sizeof(sal_Unicode), bytes.data(),
                     bytes.size()) != rtl_Digest_E_None) {
    return {};
  }
  constexpr std::string_view digits = "0123456789abcdef";
  std::string name = "SingleOfficeIPC_";
  for (sal_uInt8 const byte : bytes) {
    if (byte > 0xF) name += digits[byte >> 4];
    name += digits[byte & 0xF];
  }
  return name;
}

}  // namespace

std::string PipeFile(std::string const & name)
{
  return "/tmp/OSL_PIPE_" + std::to_string(getuid()) + "_" + name;
}

OfficeProcess::OfficeProcess(std::string const & programFolder, std::string const & parentFolder)
    : m_Program(programFolder + "/soffice.bin")
{
  MakeFolder(parentFolder);
  try {
    m_Pipe = "zephlow-" + std::to_string(getpid()) + m_Folder.substr(m_Folder.rfind('-'));
    m_Files = {PipeFile(m_Pipe), PipeFile(profilesPipe(m_Profile))};
    StartGuard();
    StartOffice();
  } catch (...) {
    if (m_ToGuard >= 0) close(m_ToGuard);
    int status = 0;
    if (m_Guard > 0) waitFor(m_Guard, timeToEnd, status);
    RemoveFiles();
    throw;
  }
}

OfficeProcess::~OfficeProcess()
{
  int status = 0;
  if (m_Office > 0) {
    kill(-m_Office, SIGKILL);
    waitFor(m_Office, timeToEnd, status);
    TellGuard("group", "");
  }
  close(m_ToGuard);
  if (!waitFor(m_Guard, timeToEnd, status)) {
    kill(-m_Guard, SIGKILL);
    waitFor(m_Guard, timeToEnd, status);
  }
  RemoveFiles();
}

void OfficeProcess::MakeFolder(std::string const & parentFolder)
{
  std::string name = parentFolder + "/zephlow-office-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) refuseToStart("No folder for the office's profile can be made in " + parentFolder, errno);
  m_Folder = name;
  rtl::OUString url;
  if (mkdir((m_Folder + "/tmp").c_str(), 0700) != 0 ||
      osl::FileBase::getFileURLFromSystemPath(FromUtf8(m_Folder + "/profile"), url) != osl::FileBase::E_None) {
    int const error = errno;
    rmdir(m_Folder.c_str());
    refuseToStart("The office's profile can't be made in " + m_Folder, error);
  }
  m_Profile = ToUtf8(url);
}

void OfficeProcess::StartGuard()
{
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) refuseToStart("The office's guard can't be started", errno);
  m_ToGuard = ends[0];
  std::vector<std::string> words = {"/bin/sh", "-c", guardScript, "sh", m_Folder};
  words.insert(words.end(), m_Files.begin(), m_Files.end());
  int const error = spawn(std::move(words), environmentWith({"LC_ALL=C"}), ends[1], m_Guard);
  close(ends[1]);
  if (error != 0) refuseToStart("The office's guard can't be started", error);
}

void OfficeProcess::StartOffice()
{
  std::vector<std::string> const words = {m_Program,       "-env:UserInstallation=" + m_Profile,
                                          "--headless",    "--invisible",
                                          "--norestore",   "--nologo",
                                          "--nodefault",   "--nofirststartwizard",
                                          "--nolockcheck", "--accept=pipe,name=" + m_Pipe + ";urp;"};
  std::vector<std::string> const settings = {"LC_ALL=C.UTF-8", "SAL_ENABLE_FILE_LOCKING=1", "SAL_USE_VCLPLUGIN=svp",
                                             "TMPDIR=" + m_Folder + "/tmp"};
  pid_t office = -1;
  int const error = spawn(words, environmentWith(settings), -1, office);
  if (error != 0) refuseToStart(m_Program + " can't be started", error);
  m_Office = office;
  TellGuard("group", std::to_string(m_Office));
}

bool OfficeProcess::HasEnded(int & status)
{
  int raw = 0;
  if (m_Office > 0 && !waitFor(m_Office, 0ms, raw)) return false;
  m_Office = -1;
  TellGuard("group", "");
  status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
  if (status != wantsRestart || ++m_nRestarts > mostRestarts) return true;
  StartOffice();
  return false;
}

void OfficeProcess::WaitForEnd()
{
  int status = 0;
  if (m_Office <= 0 || !waitFor(m_Office, timeToEnd, status)) return;
  m_Office = -1;
  TellGuard("group", "");
}

void OfficeProcess::TellGuard(std::string const & what, std::string const & value) const
{
  std::string const text = what + " " + value + "\n";
  while (send(m_ToGuard, text.data(), text.size(), MSG_NOSIGNAL) < 0 && errno == EINTR) {
  }
}

void OfficeProcess::CleanLockOf(std::string const & file) const
{
  std::filesystem::path const path = file;
  if (file.find('\n') == std::string::npos)
    TellGuard("lock", (path.parent_path() / (".~lock." + path.filename().string() + "#")).string());
}

// The guard has done it unless somebody has killed it.
void OfficeProcess::RemoveFiles() const
{
  std::error_code ignored;
  std::filesystem::remove_all(m_Folder, ignored);
  for (std::string const & file : m_Files) std::filesystem::remove(file, ignored);
}

}  // namespace office
