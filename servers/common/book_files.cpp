// Looking at files by their names.

#include "servers/common/book_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include <zpbase/messages.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/paths.h>

#include "servers/common/failure.h"
#include "servers/common/wide_text.h"

namespace servers {
namespace {

namespace fs = std::filesystem;

fs::path withoutSteps(fs::path const & path)
{
  fs::path plain;
  for (fs::path const & step : path) plain = step == ".." ? fs::weakly_canonical(plain / step) : plain / step;
  return plain.lexically_normal();
}

}  // namespace

std::string HostPathOf(std::u16string_view path)
{
  std::string inside;
  zp::AppendWide(inside, path);
  if (inside.empty()) Refuse("No file is named");
  std::string host;
  if (zp::TextToWide(inside) != path || !ToHostPath(inside, host)) Refuse("There is no such drive or folder: " + FromWide(path));
  return withoutSteps(fs::absolute(host)).string();
}

std::u16string InsidePathOf(std::string const & file)
{
  return zp::TextToWide(FromHostPath(file).View());
}

bool LeadToSameFile(std::string const & one, std::string const & other)
{
  std::error_code error;
  return one == other || (fs::equivalent(one, other, error) && fs::canonical(one, error) == fs::canonical(other, error));
}

void RequireFile(std::string const & file)
{
  struct stat state {};
  if (stat(file.c_str(), &state) != 0) Refuse(file + " can't be opened: " + TextOfError(errno));
  if (!S_ISREG(state.st_mode)) Refuse(file + " is no file");
  if (state.st_size == 0) Refuse(file + " is empty");
}

FileStamp StampOf(std::string const & file)
{
  struct stat state {};
  if (stat(file.c_str(), &state) != 0) return {};
  return {state.st_dev, state.st_ino, state.st_size, state.st_mtim.tv_sec, state.st_mtim.tv_nsec};
}

void RequireWritable(std::string const & file)
{
  if (access(file.c_str(), W_OK) != 0) Refuse(file + " can't be written: " + TextOfError(errno));
}

void RequireNewFile(std::string const & file)
{
  struct stat state {};
  if (lstat(file.c_str(), &state) == 0) Refuse(file + " is there already");
  if (errno != ENOENT && errno != ENOTDIR) Refuse(file + " can't be written: " + TextOfError(errno));
}

void RequireFolder(std::string const & file)
{
  std::error_code error;
  if (!fs::is_directory(fs::path(file).parent_path(), error)) Refuse(file + " can't be written: there is no such folder");
}

void Warn(std::string_view sentence)
{
  std::string text;
  zp::AppendWide(text, ToWide(sentence));
  PutWarning("%s", text.c_str());
}

}  // namespace servers
