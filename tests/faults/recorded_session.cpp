#include "tests/faults/recorded_session.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>

#include <zpbase/data.h>
#include <zpbase/platform/archive.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

#include "tests/faults/ProgramInside.h"

namespace {

// Takes note of what happens to the files of one folder while it lives.
class Recorder {
 public:
  Recorder(std::string const & folder, std::vector<WriteEvent> & events) : m_Kept(zp::GetHostCalls())
  {
    g_Real = m_Kept;
    g_pEvents = &events;
    g_strFolder = folder;
    g_Files.clear();
    zp::HostCalls & calls = zp::GetHostCalls();
    calls.Open = open;
    calls.Close = close;
    calls.Write = write;
    calls.WriteAt = writeAt;
    calls.SetLength = setLength;
    calls.Sync = sync;
    calls.Rename = rename;
    calls.Remove = remove;
  }
  ~Recorder() { zp::GetHostCalls() = m_Kept; }
  Recorder(Recorder const &) = delete;
  Recorder & operator=(Recorder const &) = delete;

 private:
  struct OpenedFile {
    std::string name;
    LONGLONG position = 0;
  };

  // Whether the path leads to the folder or to one of the store's files in it; the name is empty for the folder.
  static bool isOurs(std::string_view path, std::string & name)
  {
    name = path == g_strFolder ? "" : path.substr(path.rfind('/') + 1);
    return path.starts_with(g_strFolder) && (name.empty() || name.starts_with("a."));
  }
  static void note(int file, WriteEvent::Kind kind, LONGLONG position, std::string bytes)
  {
    auto const found = g_Files.find(file);
    if (found != g_Files.end()) g_pEvents->push_back({found->second.name, kind, position, std::move(bytes)});
  }
  static int open(char const * path, unsigned int how, unsigned int mode)
  {
    bool const isNew = (how & zp::hostCreate) != 0 && !std::filesystem::exists(path);
    int const file = g_Real.Open(path, how, mode);
    std::string name;
    if (file < 0 || !isOurs(path, name)) return file;
    g_Files[file] = {name};
    if (isNew) note(file, WriteEvent::Create, 0, "");
    return file;
  }
  static int close(int file)
  {
    g_Files.erase(file);
    return g_Real.Close(file);
  }
  static long write(int file, void const * bytes, size_t count)
  {
    if (auto const found = g_Files.find(file); found != g_Files.end()) {
      note(file, WriteEvent::Bytes, found->second.position, {static_cast<char const *>(bytes), count});
      found->second.position += static_cast<LONGLONG>(count);
    }
    return g_Real.Write(file, bytes, count);
  }
  static long writeAt(int file, void const * bytes, size_t count, LONGLONG position)
  {
    note(file, WriteEvent::Bytes, position, {static_cast<char const *>(bytes), count});
    return g_Real.WriteAt(file, bytes, count, position);
  }
  static int setLength(int file, LONGLONG length)
  {
    note(file, WriteEvent::Length, length, "");
    return g_Real.SetLength(file, length);
  }
  static int sync(int file)
  {
    note(file, WriteEvent::Sync, 0, "");
    return 0;
  }
  static int rename(char const * from, char const * to)
  {
    int const result = g_Real.Rename(from, to);
    std::string name;
    std::string target;
    if (result == 0 && isOurs(from, name) && isOurs(to, target)) g_pEvents->push_back({name, WriteEvent::Rename, 0, target});
    return result;
  }
  static int remove(char const * path)
  {
    int const result = g_Real.Remove(path);
    std::string name;
    if (result == 0 && isOurs(path, name)) g_pEvents->push_back({name, WriteEvent::Remove, 0, ""});
    return result;
  }

  static inline zp::HostCalls g_Real;
  static inline std::vector<WriteEvent> * g_pEvents;
  static inline std::string g_strFolder;
  static inline std::map<int, OpenedFile> g_Files;

  zp::HostCalls m_Kept;
};

// Bytes that tell what they are nowhere else: an object with a text, or noise.
class Maker {
 public:
  explicit Maker(unsigned int seed) : m_Random(seed) {}

  size_t Below(size_t count) { return std::uniform_int_distribution<size_t>(0, count - 1)(m_Random); }

  std::string Noise(size_t length)
  {
    std::string bytes(length, '\0');
    for (char & c : bytes) c = static_cast<char>('A' + Below(26));
    return bytes;
  }

  std::string Bytes(size_t length)
  {
    std::string const bytes = Noise(length);
    if (Below(2) == 0) return bytes;
    GPs const text(1, CString(bytes.c_str()));
    GPMemFile file;
    CArchive ar(&file, CArchive::store);
    ar.WriteObject(&text);
    ar.Close();
    return {reinterpret_cast<char const *>(file.GetMemPtr()), static_cast<size_t>(file.GetLength())};
  }

 private:
  std::mt19937 m_Random;
};

class Session {
 public:
  Session(std::string const & folder, unsigned int seed, bool byProgram)
      : m_strFolder(folder), m_bByProgram(byProgram), m_Maker(seed)
  {
  }

  RecordedSession Run()
  {
    constexpr int rounds = 4;
    constexpr int steps = 7;
    Recorder const recorder(m_strFolder, m_Result.events);
    m_Result.commits.push_back({0, {}});
    for (int round = 0; round < rounds; ++round) {
      if (!m_bByProgram)
        m_pStore = std::make_unique<GPDataFile>(Name(indexFile), Name(recordFile), CFile::modeReadWrite, nullptr);
      for (int step = 0; step < steps; ++step) {
        Step();
        if (m_bByProgram) Commit();
      }
      m_pStore.reset();
      if (!m_bByProgram) Commit();
    }
    return std::move(m_Result);
  }

 private:
  CString Name(char const * file) const { return FromHostPath(m_strFolder + '/' + file); }

  void Commit() { m_Result.commits.push_back({m_Result.events.size(), m_Records}); }

  void Step()
  {
    constexpr size_t ids = 9;
    constexpr size_t longest = 1400;
    int const id = static_cast<int>(m_Maker.Below(ids));
    auto const former = m_Records.find(id);
    size_t const kind = m_Maker.Below(m_bByProgram ? 7 : 5);
    if (kind == 5) return Exchange({"store", "compact", m_strFolder + "/a"});
    if (kind == 6 && !m_Records.empty()) return Import();
    if (former != m_Records.end() && kind == 0) return Delete(id);
    bool const isInPlace = former != m_Records.end() && kind == 1;
    Store(id, isInPlace ? m_Maker.Noise(former->second.size()) : m_Maker.Bytes(m_Maker.Below(longest) + 1));
  }

  void Store(int id, std::string const & bytes)
  {
    m_Result.steps.push_back({id, bytes, m_Result.events.size()});
    m_Records[id] = bytes;
    if (!m_bByProgram) {
      m_pStore->StoreRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id);
      return;
    }
    std::ofstream(m_strFolder + "/in", std::ios::binary) << bytes;
    RunSilently({"store", "put", m_strFolder + "/a", std::to_string(id), m_strFolder + "/in"});
  }

  void Delete(int id)
  {
    m_Result.steps.push_back({id, "", m_Result.events.size()});
    m_Records.erase(id);
    if (m_bByProgram)
      RunSilently({"store", "delete", m_strFolder + "/a", std::to_string(id)});
    else
      m_pStore->DeleteRec(id);
  }

  void Exchange(std::vector<std::string> const & arguments)
  {
    m_Result.steps.push_back({SessionStep::exchange, "", m_Result.events.size()});
    RunSilently(arguments);
  }

  void Import()
  {
    std::string json;
    for (int const id : {2, 20}) {
      std::string const bytes = m_Maker.Noise(30);
      std::string hex;
      zp::AppendHex(hex, bytes);
      json += std::string(json.empty() ? "" : ",") + R"({"id":)" + std::to_string(id) + R"(,"hex":")" + hex + "\"}";
      m_Result.steps.push_back({id, bytes, m_Result.events.size()});
      m_Records[id] = bytes;
    }
    std::ofstream(m_strFolder + "/in") << R"({"format":"zp-store-records","version":1,"records":[)" << json << "]}";
    Exchange({"store", "import", m_strFolder + "/a", m_strFolder + "/in"});
  }

  std::string m_strFolder;
  bool m_bByProgram;
  Maker m_Maker;
  Records m_Records;
  std::unique_ptr<GPDataFile> m_pStore;
  RecordedSession m_Result;
};

}  // namespace

void StoreImage::Apply(WriteEvent const & event)
{
  if (event.kind == WriteEvent::Sync) return;
  if (event.kind == WriteEvent::Remove || event.kind == WriteEvent::Rename) {
    auto taken = files.extract(event.file);
    if (taken && event.kind == WriteEvent::Rename) files[event.bytes] = std::move(taken.mapped());
    return;
  }
  std::string & content = files[event.file];
  auto const position = static_cast<size_t>(event.position);
  if (event.kind == WriteEvent::Length) content.resize(position, '\0');
  if (event.kind != WriteEvent::Bytes) return;
  if (content.size() < position + event.bytes.size()) content.resize(position + event.bytes.size(), '\0');
  content.replace(position, event.bytes.size(), event.bytes);
}

void StoreImage::WriteTo(std::string const & folder) const
{
  for (auto const & [name, bytes] : ReadFrom(folder).files) {
    if (!files.contains(name)) std::filesystem::remove(folder + '/' + name);
  }
  for (auto const & [name, bytes] : files) std::ofstream(folder + '/' + name, std::ios::binary) << bytes;
}

StoreImage StoreImage::ReadFrom(std::string const & folder)
{
  StoreImage image;
  for (auto const & entry : std::filesystem::directory_iterator(folder)) {
    std::string const name = entry.path().filename();
    if (!name.starts_with("a.")) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    image.files[name].assign(std::istreambuf_iterator<char>(in), {});
  }
  return image;
}

RecordedSession RecordSession(std::string const & folder, unsigned int seed, bool byProgram)
{
  return Session(folder, seed, byProgram).Run();
}

Records LoadRecords(std::string const & folder, std::string const & stem)
{
  constexpr int ids = 100;
  std::string const path = folder + '/' + stem;
  GPDataFile store(FromHostPath(path + ".SI"), FromHostPath(path + ".SR"), CFile::modeRead, nullptr);
  Records records;
  for (int id = 0; id < ids; ++id) {
    std::string bytes(store.GetRecLength(id), '\0');
    if (!bytes.empty() && store.LoadRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id) > 0) records[id] = bytes;
  }
  return records;
}
