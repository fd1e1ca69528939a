// One store after the other.

#include "tools/store/many_stores.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>
#include <zpbase/platform/exceptions.h>

#include "tools/json_output.h"
#include "tools/program.h"

namespace {

std::string jsonText(std::string const & text)
{
  return DumpJson(nlohmann::json(text));
}

// What stopped the work at a store; empty if nothing did.
template <class Step>
std::string stoppedBy(Step const & step, int & status)
{
  try {
    status = step();
    return "";
  } catch (Failure const & failure) {
    status = failure.GetStatus();
    return failure.what();
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    status = exitWanting;
    return Describe(*caught);
  }
}

}  // namespace

void StoreOutput::PrintWithMark(std::string_view lines, std::string const & mark)
{
  while (!lines.empty()) {
    size_t const bytes = std::min(lines.find('\n'), lines.size() - 1) + 1;
    Print(mark);
    Print(lines.substr(0, bytes));
    lines.remove_prefix(bytes);
  }
}

void StoreOutput::PrintLines(std::string_view lines)
{
  if (!m_bMany) return PrintShown(lines);
  PrintWithMark(VisibleLines(lines), Visible(m_strStore) + ": ");
}

void StoreOutput::PrintJson(std::string_view json)
{
  if (!m_bMany) return Print(json);
  m_bResult = true;
  Print(fmt::format("  {{\n    \"store\": {},\n    \"result\":\n", jsonText(m_strStore)));
  json.remove_suffix(json.ends_with('\n') ? 1 : 0);
  PrintWithMark(json, "    ");
}

void StoreOutput::End(int status, std::string const & error)
{
  if (!m_bMany || !m_bJson) return;
  if (!m_bResult) Print(fmt::format("  {{\n    \"store\": {}", jsonText(m_strStore)));
  if (!error.empty()) Print(fmt::format(",\n    \"error\": {}", jsonText(error)));
  Print(fmt::format(",\n    \"status\": {}\n  }}", status));
}

void ManyStoresArguments::AddOptions(CLI::App & command)
{
  command.add_option("STORE", stores, "Index file, record file, or the stem of both; several, one after the other")->required();
  command.add_option("--record", record, "Record file, when its name doesn't follow from the index file's");
  command.add_flag("--json", json, "Print the result as JSON");
}

ExitStatus ManyStoresArguments::ForEachStore(
    std::function<ExitStatus(StoreNames const & names, StoreOutput & output)> const & use) const
{
  bool const isMany = stores.size() > 1;
  if (isMany && !record.empty()) throw Failure("--record: belongs to one store, and several are named", exitUsage);
  StoreOutput only(stores.front(), json, false);
  if (!isMany) return use(ResolveStore(stores.front(), record), only);
  int worst = exitDone;
  for (size_t i = 0; i < stores.size() && worst != exitInterrupted; ++i) {
    StoreOutput output(stores[i], json, true);
    if (json) Print(i == 0 ? "[\n" : ",\n");
    int status = exitDone;
    std::string const error = stoppedBy([&] { return use(ResolveStore(stores[i], ""), output); }, status);
    output.End(status, error);
    if (!error.empty()) Tell(error);
    worst = std::max(worst, status);
  }
  if (json) Print("\n]\n");
  return static_cast<ExitStatus>(worst);
}
