#include "tests/faults/recorded_session.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>

#include <zpbase/data.h>
#include <zpbase/platform/archive.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

#include "tools/command_line.h"

namespace {

constexpr std::array<char const *, 2> fileNames = {"/a.SR", "/a.SI"};

// Takes note of what is written to the two files while it lives.
class Recorder {
 public:
  explicit Recorder(std::vector<WriteEvent> & events) : m_Kept(zp::GetHostCalls())
  {
    g_Real = m_Kept;
    g_pEvents = &events;
    g_Files.clear();
    zp::HostCalls & calls = zp::GetHostCalls();
    calls.Open = open;
    calls.Close = close;
    calls.WriteAt = writeAt;
    calls.SetLength = setLength;
  }
  ~Recorder() { zp::GetHostCalls() = m_Kept; }
  Recorder(Recorder const &) = delete;
  Recorder & operator=(Recorder const &) = delete;

 private:
  static int open(char const * path, unsigned int how, unsigned int mode)
  {
    bool const isNew = (how & zp::hostCreate) != 0 && !std::filesystem::exists(path);
    int const file = g_Real.Open(path, how, mode);
    for (int i = 0; i < 2; ++i) {
      if (file < 0 || !std::string_view(path).ends_with(fileNames[static_cast<size_t>(i)])) continue;
      g_Files[file] = i;
      if (isNew) g_pEvents->push_back({i, WriteEvent::Create, 0, ""});
    }
    return file;
  }
  static int close(int file)
  {
    g_Files.erase(file);
    return g_Real.Close(file);
  }
  static long writeAt(int file, void const * bytes, size_t count, LONGLONG position)
  {
    if (auto const found = g_Files.find(file); found != g_Files.end()) {
      g_pEvents->push_back({found->second, WriteEvent::Bytes, position, {static_cast<char const *>(bytes), count}});
    }
    return g_Real.WriteAt(file, bytes, count, position);
  }
  static int setLength(int file, LONGLONG length)
  {
    if (auto const found = g_Files.find(file); found != g_Files.end()) {
      g_pEvents->push_back({found->second, WriteEvent::Length, length, ""});
    }
    return g_Real.SetLength(file, length);
  }

  static inline zp::HostCalls g_Real;
  static inline std::vector<WriteEvent> * g_pEvents;
  static inline std::map<int, int> g_Files;

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
    Recorder const recorder(m_Result.events);
    m_Result.commits.push_back({0, {}});
    for (int round = 0; round < rounds; ++round) {
      if (!m_bByProgram) m_pStore = std::make_unique<GPDataFile>(Name(1), Name(0), CFile::modeReadWrite, nullptr);
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
  CString Name(size_t file) const { return FromHostPath(m_strFolder + fileNames[file]); }

  void Commit() { m_Result.commits.push_back({m_Result.events.size(), m_Records}); }

  void Step()
  {
    constexpr size_t ids = 9;
    constexpr size_t longest = 1400;
    int const id = static_cast<int>(m_Maker.Below(ids));
    auto const former = m_Records.find(id);
    size_t const kind = m_Maker.Below(5);
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
  auto const file = static_cast<size_t>(event.file);
  exists[file] = true;
  std::string & content = bytes[file];
  auto const position = static_cast<size_t>(event.position);
  if (event.kind == WriteEvent::Length) content.resize(position, '\0');
  if (event.kind != WriteEvent::Bytes) return;
  if (content.size() < position + event.bytes.size()) content.resize(position + event.bytes.size(), '\0');
  content.replace(position, event.bytes.size(), event.bytes);
}

void StoreImage::WriteTo(std::string const & folder) const
{
  for (size_t i = 0; i < bytes.size(); ++i) {
    std::string const name = folder + fileNames[i];
    if (exists[i])
      std::ofstream(name, std::ios::binary) << bytes[i];
    else
      std::filesystem::remove(name);
  }
}

StoreImage StoreImage::ReadFrom(std::string const & folder)
{
  StoreImage image;
  for (size_t i = 0; i < image.bytes.size(); ++i) {
    std::ifstream in(folder + fileNames[i], std::ios::binary);
    image.exists[i] = in.is_open();
    image.bytes[i].assign(std::istreambuf_iterator<char>(in), {});
  }
  return image;
}

RecordedSession RecordSession(std::string const & folder, unsigned int seed, bool byProgram)
{
  return Session(folder, seed, byProgram).Run();
}

Silence::Silence() : m_Kept{dup(1), dup(2)}
{
  std::fflush(nullptr);
  static int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, 1);
  dup2(nowhere, 2);
}

Silence::~Silence()
{
  std::fflush(nullptr);
  for (int i = 0; i < 2; ++i) {
    dup2(m_Kept[static_cast<size_t>(i)], i + 1);
    close(m_Kept[static_cast<size_t>(i)]);
  }
}

int RunSilently(std::vector<std::string> const & arguments)
{
  Silence const silence;
  std::vector<char const *> texts = {"zp"};
  for (std::string const & argument : arguments) texts.push_back(argument.c_str());
  return RunCommandLine(static_cast<int>(texts.size()), texts.data());
}
