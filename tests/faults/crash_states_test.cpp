// What is left of a store after a crash: every prefix of the writes of recorded sessions, with the last ones lost, torn and out
// of order, is looked at, recovered and written to. ZP_CRASH_STATES says how many states are tried.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <unordered_set>

#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

#include "tests/faults/ProgramInside.h"
#include "tests/faults/recorded_session.h"
#include "tests/support/TempFolder.h"
#include "tools/program.h"
#include "tools/store/store_check.h"
#include "tools/store/stored_records.h"

namespace {

constexpr size_t fewStates = 400;
constexpr size_t window = 3;  // so many of the last writes may be lost, each by itself
constexpr LONGLONG sectorBytes = 512;
constexpr int newID = 77;

struct CrashState {
  StoreImage image;
  size_t events;         // that had begun
  std::set<int> harmed;  // ids of whose writes something was lost or torn
  bool isPrefix;         // nothing was lost
  bool isHeaderTorn;     // a header that lies across two sectors: its id may be any
};

struct Tally {
  size_t states = 0;
  size_t sound = 0;
  size_t kept = 0;
  size_t suspectOnly = 0;
  size_t mixed = 0;
  size_t exchanged = 0;  // inside an exchange of the files
  size_t marked = 0;     // of these, to be finished
};

class CrashStates : public testing::Test {
 protected:
  std::string Folder() const { return m_Folder.Path().string(); }
  StoreNames Names(std::string const & stem) const { return {Folder() + "/" + stem + ".SI", Folder() + "/" + stem + ".SR"}; }

  bool IsSound() const
  {
    try {
      OpenStore store(Names("a"), StoreAccess::Look);
      store.RequireUsableIndex();
      return CheckStore(store, CheckDepth::Blocks).faults.empty();
    } catch (Failure const &) {
      return false;
    }
  }

  Records Load(std::string const & stem) const { return LoadRecords(Folder(), stem); }

  Records Recover(bool leaveSuspect) const
  {
    std::vector<std::string> arguments = {"store", "recover", Folder() + "/a", "--to", Folder() + "/b"};
    if (leaveSuspect) arguments.push_back("--leave-suspect");
    RunSilently(arguments);
    Records const records = Load("b");
    std::filesystem::remove(Folder() + "/b.SI");
    std::filesystem::remove(Folder() + "/b.SR");
    return records;
  }

  TempFolder m_Folder;
  RecordedSession m_Session;
  Tally m_Tally;

  void TryState(CrashState state);
  void CheckExchange(CrashState & state);
  void CheckReading(CrashState const & state, std::map<int, std::set<std::string>> const & versions);
  void CheckWriting(CrashState const & state, bool isSound);
  void CheckLibrary(CrashState const & state, Records const & kept);
};

// What was ever stored under each id by steps that had begun.
std::map<int, std::set<std::string>> versionsOf(RecordedSession const & session, size_t events)
{
  std::map<int, std::set<std::string>> versions;
  for (SessionStep const & step : session.steps) {
    if (step.firstEvent < events && !step.bytes.empty()) versions[step.id].insert(step.bytes);
  }
  return versions;
}

// The records of the last commit that no step touched since.
Records untouched(RecordedSession const & session, size_t events)
{
  SessionCommit const * last = nullptr;
  for (SessionCommit const & commit : session.commits) {
    if (commit.events <= events) last = &commit;
  }
  Records records = last->records;
  for (SessionStep const & step : session.steps) {
    if (step.firstEvent >= last->events && step.firstEvent < events) records.erase(step.id);
  }
  return records;
}

SessionStep const & stepOfEvent(RecordedSession const & session, size_t event)
{
  SessionStep const * found = nullptr;
  for (SessionStep const & step : session.steps) {
    if (step.firstEvent <= event) found = &step;
  }
  return *found;
}

// An exchange harms no record, whatever is lost of it.
void addHarmed(CrashState & state, RecordedSession const & session, size_t event)
{
  int const id = stepOfEvent(session, event).id;
  if (id != SessionStep::exchange) state.harmed.insert(id);
}

// How many of the last events may be lost: none that a later one has brought to the disk, nor one in front of such.
size_t losable(std::vector<WriteEvent> const & all, size_t events)
{
  std::set<std::string> synced;  // the folder among them, without a name
  for (size_t lost = 0; lost < std::min(events, window); ++lost) {
    WriteEvent const & event = all[events - 1 - lost];
    if (synced.contains(event.IsOfName() ? "" : event.file)) return lost;
    if (event.kind == WriteEvent::Sync) synced.insert(event.file);
  }
  return std::min(events, window);
}

// Every state after so many events; each is given to use.
template <class Use>
void forEachState(RecordedSession const & session, size_t events, Use const & use)
{
  size_t const lost = losable(session.events, events);
  StoreImage base;
  for (size_t i = 0; i < events - lost; ++i) base.Apply(session.events[i]);
  for (unsigned int kept = 0; kept < 1U << lost; ++kept) {
    CrashState state = {base, events, {}, kept + 1 == 1U << lost, false};
    for (size_t i = 0; i < lost; ++i) {
      size_t const event = events - lost + i;
      bool const isLost = (kept >> i & 1) == 0 && session.events[event].kind != WriteEvent::Create;
      if (!isLost)
        state.image.Apply(session.events[event]);
      else
        addHarmed(state, session, event);
    }
    use(state);
  }
  if (events == 0 || session.events[events - 1].kind != WriteEvent::Bytes) return;
  WriteEvent const & last = session.events[events - 1];
  StoreImage before = base;
  for (size_t i = events - lost; i + 1 < events; ++i) before.Apply(session.events[i]);
  auto const length = static_cast<LONGLONG>(before.files[last.file].size());
  std::set<size_t> cuts;
  for (LONGLONG at = (last.position / sectorBytes + 1) * sectorBytes; at < last.position + LONGLONG(last.bytes.size());
       at += sectorBytes)
    cuts.insert(static_cast<size_t>(at - last.position));
  if (last.position >= length) cuts.insert({1, 3, 5, 6, 7, last.bytes.size() / 2, last.bytes.size() - 1});
  for (size_t const cut : cuts) {
    if (cut == 0 || cut >= last.bytes.size()) continue;
    for (bool const isGrown : {false, true}) {  // the file's length may reach the disk before the bytes do
      CrashState state = {before, events, {}, false, cut < zp::BlockHeader::byteCount};
      addHarmed(state, session, events - 1);
      WriteEvent torn = last;
      torn.bytes.resize(cut);
      if (isGrown) torn.bytes.resize(last.bytes.size(), '\0');
      if (isGrown && last.position < length) continue;
      state.image.Apply(torn);
      use(state);
    }
  }
}

// No reader shows under an id what never was its record.
void CrashStates::CheckReading(CrashState const & state, std::map<int, std::set<std::string>> const & versions)
{
  Silence const silence;
  try {
    StoredRecords const records(Names("a"));
    if (records.IsIndexLost()) return;
    records.ForEach("", [&](int id, std::span<BYTE const> bytes) {
      auto const found = versions.find(id);
      bool const was = found != versions.end() && found->second.contains(std::string(bytes.begin(), bytes.end()));
      if (!was && !state.harmed.contains(id)) ADD_FAILURE() << "record " << id << " is shown with bytes that it never had";
    });
  } catch (Failure const &) {
    return;
  }
}

// A sound store takes a record and keeps the others; any other one is left as it is.
void CrashStates::CheckWriting(CrashState const & state, bool isSound)
{
  Records expected = isSound ? Load("a") : Records();
  expected[newID] = "new";
  int const status = RunSilently({"store", "put", Folder() + "/a", std::to_string(newID), Folder() + "/new"});
  auto const record = state.image.files.find(recordFile);
  if (!isSound && record != state.image.files.end() && !record->second.empty()) {
    EXPECT_EQ(status, 1);
    EXPECT_EQ(StoreImage::ReadFrom(Folder()), state.image);
  } else if (isSound) {
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(IsSound());
    EXPECT_EQ(Load("a"), expected);
  }
}

// The library writes to any store, and destroys no record of it.
void CrashStates::CheckLibrary(CrashState const & state, Records const & kept)
{
  state.image.WriteTo(Folder());
  constexpr int overwritten = 1;
  constexpr int deleted = 2;
  try {
    GPDataFile store(FromHostPath(Names("a").index), FromHostPath(Names("a").record), CFile::modeReadWrite, nullptr);
    std::string const bytes(300, 'n');
    store.StoreRec(bytes.data(), 300, newID);
    unsigned int const longer = store.GetRecLength(overwritten) + 1;
    store.StoreRec(std::string(longer, 'n').data(), longer, overwritten);
    store.DeleteRec(deleted);
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    return;
  }
  Records const now = Recover(false);
  for (auto const & [id, bytes] : kept) {
    if (id == overwritten || id == deleted || id == newID) continue;
    auto const found = now.find(id);
    EXPECT_TRUE(found != now.end() && found->second == bytes) << "record " << id << " was destroyed";
  }
}

// A step that exchanges the files has changed all or nothing, at the latest when the command that is named has ended it.
void CrashStates::CheckExchange(CrashState & state)
{
  state.image.WriteTo(Folder());
  if (state.image.Has(exchangeMark)) {
    ++m_Tally.marked;
    EXPECT_EQ(RunSilently({"store", "compact", Folder() + "/a"}), 0);
    state.image = StoreImage::ReadFrom(Folder());
    EXPECT_FALSE(state.image.Has(exchangeMark));
  }
  auto const & commits = m_Session.commits;
  auto const next = std::ranges::find_if(commits, [&](SessionCommit const & commit) { return commit.events >= state.events; });
  if (next == commits.begin() || next == commits.end() || !state.harmed.empty()) return;
  if (stepOfEvent(m_Session, state.events - 1).id != SessionStep::exchange) return;
  ++m_Tally.exchanged;
  Records const now = Load("a");
  EXPECT_TRUE(now == next->records || now == std::prev(next)->records) << "an exchange is half done";
}

void CrashStates::TryState(CrashState state)
{
  CheckExchange(state);
  auto const versions = versionsOf(m_Session, state.events);
  bool const isSound = IsSound();
  m_Tally.sound += isSound ? 1 : 0;
  ++m_Tally.states;
  if (!state.image.Has(recordFile)) return;
  Records const kept = Recover(true);
  Records const found = state.isPrefix ? kept : Recover(false);
  m_Tally.kept += kept.size();
  m_Tally.suspectOnly += found.size() - kept.size();
  for (auto const & [id, bytes] : untouched(m_Session, state.events)) {
    if (state.harmed.contains(id)) continue;
    auto const at = found.find(id);
    EXPECT_TRUE(at != found.end() && at->second == bytes) << "committed record " << id << " is missed";
  }
  for (auto const & [id, bytes] : kept) {
    auto const was = versions.find(id);
    if (was != versions.end() && was->second.contains(bytes)) continue;
    ++m_Tally.mixed;
    EXPECT_TRUE(state.harmed.contains(id) || state.isHeaderTorn) << "record " << id << " is kept with bytes that it never had";
  }
  CheckReading(state, versions);
  CheckWriting(state, isSound);
  CheckLibrary(state, kept);
}

std::string keyOf(StoreImage const & image)
{
  std::string key;
  for (auto const & [name, bytes] : image.files) key += name + '|' + bytes + '|';
  return key;
}

TEST_F(CrashStates, LoseNothingCommittedAndKeepNothingThatNeverWas)
{
  char const * const wanted = std::getenv("ZP_CRASH_STATES");
  size_t const most = wanted != nullptr ? std::strtoul(wanted, nullptr, 10) : fewStates;
  m_Folder.Write("new", "new");
  for (unsigned int seed = 1; m_Tally.states < most && !HasFailure(); ++seed) {
    StoreImage{}.WriteTo(Folder());
    m_Session = RecordSession(Folder(), seed, seed % 4 == 0);
    std::unordered_set<std::string> seen;
    size_t const stride = wanted != nullptr ? 1 : 7;  // the few are spread over a session
    for (size_t events = 0; events <= m_Session.events.size() && m_Tally.states < most; events += stride) {
      forEachState(m_Session, events, [&](CrashState const & state) {
        if (HasFailure() || !seen.insert(keyOf(state.image)).second) return;
        SCOPED_TRACE("seed " + std::to_string(seed) + ", " + std::to_string(events) + " events" +
                     (state.isPrefix ? "" : ", some lost"));
        TryState(state);
      });
    }
  }
  EXPECT_GE(m_Tally.states, most);
  std::printf("%zu states, %zu sound, %zu inside an exchange, %zu of them marked; ", m_Tally.states, m_Tally.sound,
              m_Tally.exchanged, m_Tally.marked);
  std::printf("%zu records kept, %zu suspect, %zu mixed from two writes\n", m_Tally.kept, m_Tally.suspectOnly, m_Tally.mixed);
}

}  // namespace
