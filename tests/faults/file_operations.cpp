// GPFile's operations, objects in files of their own, and warnings.

#include <cstring>
#include <string_view>

#include <zpbase/data.h>
#include <zpbase/job_folders.h>
#include <zpbase/messages.h>
#include <zpbase/platform/application.h>
#include <zpbase/store.h>

#include "tests/faults/Operations.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr char const * names[] = {"a", "b", "c", "WARNINGS"};

// Two files, "a" and "b", and what stands under the names afterwards; "-" for nothing.
struct Files {
  Files()
  {
    folder.Write("a", "first\r\nsecond\r\n");
    folder.Write("b", "other");
  }
  State Look() const
  {
    State state;
    for (char const * const name : names) state[name] = folder.Has(name) ? folder.Read(name) : "-";
    return state;
  }
  CString Name(char const * name) const { return folder.Name(name); }

  TempFolder folder;
};

Operation onFiles(char const * name, std::function<void(Files &)> step, std::vector<std::string> mayBeTorn = {},
                  bool mayStandBetween = false)
{
  auto prepare = [step] {
    auto const files = std::make_shared<Files>();
    return Trial{[files, step] { step(*files); }, [files] { return files->Look(); }};
  };
  return {.name = name, .prepare = prepare, .mayBeTorn = std::move(mayBeTorn), .mayStandBetween = mayStandBetween};
}

// What came short is cut back where the system can still do so.
Operation onCopyBehind()
{
  Operation operation =
      onFiles("copy behind a file", [](Files & files) { GPFile(files.Name("b")).CopyFile(files.Name("a"), 1); });
  operation.mayBeTornForGood = {"b"};
  return operation;
}

// On the file "a", open.
Operation onOpenFile(char const * name, std::function<void(GPFile &)> step, std::vector<std::string> mayBeTorn = {})
{
  auto prepare = [step] {
    auto const files = std::make_shared<Files>();
    auto const file = std::make_shared<GPFile>(files->Name("a"));
    file->Open(CFile::modeReadWrite);
    return Trial{[file, step] { step(*file); },
                 [files, file] {
                   State state = files->Look();
                   state["place"] = file->IsOpen() ? std::to_string(file->GetPosition()) : "closed";
                   return state;
                 }};
  };
  return {.name = name, .prepare = prepare, .mayBeTorn = mayBeTorn, .mayMove = mayBeTorn};
}

// With an application and a job's folder, so that warnings go to a file.
Operation onWarnings()
{
  auto prepare = [] {
    auto const files = std::make_shared<Files>();
    auto const app = std::make_shared<CWinApp>("test");
    app->SetProfileFile(files->Name("test.ini"));
    return Trial{[files, app] {
                   std::strcpy(job_path, files->Name("").GetString());
                   zp::ResetWarningsGate();
                   PutWarning("%s is a long text of a warning, number %d", "this", 5);
                   job_path[0] = '\0';
                   zp::ResetWarningsGate();
                 },
                 [files] { return files->Look(); }};
  };
  return {.name = "put a warning", .prepare = prepare, .mayBeTorn = {"WARNINGS"}, .mayStandBetween = true};
}

}  // namespace

std::vector<Operation> FileOperations()
{
  std::vector<std::string> const destination = {"b"};
  return {
      onFiles("ask whether a file is there", [](Files & files) { GPFile::Exists(files.Name("a")); }),
      onFiles(
          "copy to a new file", [](Files & files) { GPFile::CopyFile(files.Name("c"), files.Name("a"), 0); }, {"c"}, true),
      onFiles(
          "copy over a file", [](Files & files) { GPFile::CopyFile(files.Name("b"), files.Name("a"), 0); }, destination, true),
      onCopyBehind(),
      onFiles("rename", [](Files & files) { GPFile::RenameFile(files.Name("c"), files.Name("a")); }),
      onFiles("remove", [](Files & files) { GPFile::DeleteFile(files.Name("a")); }),
      onFiles("compare", [](Files & files) { GPFile::CompareFiles(files.Name("a"), files.Name("b")); }),
      onFiles("set times", [](Files & files) { GPFile::SetStatus(files.Name("a"), CFileStatus()); }),
      onOpenFile("write a line", [](GPFile & file) { file.WriteLine("a line that is written"); }, {"a", "place"}),
      onOpenFile("read a line",
                 [](GPFile & file) {
                   CString line;
                   file.ReadLine(line);
                 }),
      onOpenFile("count lines", [](GPFile & file) { file.GetLineCount(); }, {"place"}),
      onFiles("store an object", [](Files & files) { GPs(1, "a text that is longer than most").Store(files.Name("c")); }, {"c"}),
      onFiles(
          "store over an object", [](Files & files) { GPs(1, "a text").Store(files.Name("b")); }, destination),
      onFiles(
          "load an array",
          [](Files & files) {
            GPDataArray array;
            array.LoadStringData(1, "a text that is longer than most");
            array.Store(files.Name("c"));
            GPDataArray loaded;
            loaded.Load(files.Name("c"));
          },
          {"c"}, true),
      onWarnings(),
  };
}
