// zp store compact: the store is compacted as a copy, the copy is compared record by record, and the two files are exchanged.

#include "tools/interrupt_guard.h"
#include "tools/json_output.h"
#include "tools/shown_text.h"
#include "tools/store/many_stores.h"
#include "tools/store/store_arguments.h"

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/records/object_json.h"
#include "tools/store/store_check.h"
#include "tools/store/store_copy.h"

namespace {

struct Gain {
  unsigned long long before = 0;
  unsigned long long after = 0;
  std::string tidied;
};

unsigned long long compactedSize(CheckReport const & report)
{
  unsigned long long size = 0;
  for (SurveyBlock const & at : report.survey.blocks) {
    if (!at.block.isFree) size += zp::BlockHeader::byteCount + at.block.length;
  }
  return size;
}

Gain compactStore(StoreNames const & names)
{
  OpenStore store(names, StoreAccess::Replace);
  CheckReport const report = CheckStore(store);
  if (store.GetIndex().state == StoreIndex::UnknownClass) {
    throw Failure(fmt::format("{}: {}; compact it with a program that knows the class", names.index, store.GetIndex().problem));
  }
  RequireSound(report);
  Gain gain = {report.survey.fileLength, compactedSize(report), store.GetEndedExchange()};
  if (gain.after == gain.before) return gain;
  StoreCopy copy(store, report);
  copy.Change([](GPDataFile & tables) { tables.DegasRecFile(); });
  copy.Check(report.records, [](int) { return nullptr; });
  if (copy.GetSize() != gain.after) throw Failure(fmt::format("{}: can't be compacted; the store is as it was", names.record));
  if (InterruptGuard::IsInterrupted()) throw Interrupted();
  copy.PutInPlace();
  return gain;
}

void printGain(StoreNames const & names, Gain const & gain, StoreOutput & output)
{
  if (!gain.tidied.empty()) output.PrintLines(gain.tidied + "\n");
  unsigned long long const won = gain.before - gain.after;
  if (won == 0) return output.PrintLines(fmt::format("{}: {} bytes, nothing to win\n", Visible(names.record), gain.before));
  output.PrintLines(fmt::format("{}: {} bytes instead of {}, {:.1f}% won\n", Visible(names.record), gain.after, gain.before,
                                100.0 * static_cast<double>(won) / static_cast<double>(gain.before)));
}

struct CompactCommand : ManyStoresArguments {
  static constexpr char const * name = "compact";
  static constexpr char const * help = "Win back free space; also ends a compaction that was interrupted";
  static constexpr char const * example = "zp store compact job";

  ExitStatus Run() const
  {
    InterruptGuard const guard;
    return ForEachStore([this](StoreNames const & names, StoreOutput & output) {
      try {
        Gain const gain = compactStore(names);
        if (json)
          output.PrintJson(DumpJson(Json{{"before", gain.before}, {"after", gain.after}, {"tidied", gain.tidied}}, 2) + "\n");
        else
          printGain(names, gain, output);
        return exitDone;
      } catch (Interrupted const &) {
        return exitInterrupted;
      }
    });
  }
};

}  // namespace

void AddCompactCommand(CLI::App & family, int & status)
{
  AddCommand<CompactCommand>(family, status);
}
