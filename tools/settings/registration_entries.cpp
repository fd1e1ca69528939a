// Carrying settings to and from registration-entries files.

#include "tools/settings/registration_entries.h"

#include <cerrno>
#include <optional>

#include <fmt/format.h>

#include <zpbase/platform/encoding.h>
#include <zpbase/platform/system_error.h>

#include "tools/interrupt_guard.h"
#include "tools/program.h"
#include "tools/settings/settings_store.h"

namespace {

// The section that a key of the branch is, or nothing for another key.
std::optional<CString> sectionOf(CString const & key, CString const & branch)
{
  if (key.Left(branch.GetLength()).CompareNoCase(branch) != 0) return std::nullopt;
  CString const rest = key.Mid(branch.GetLength());
  if (rest.GetLength() < 2 || rest[0] != '\\') return std::nullopt;
  return rest.Mid(1);
}

// Without the zero that ends it.
std::string_view textOf(zp::RegistryEntry const & entry)
{
  std::string_view text = entry.data.View();
  if (text.ends_with('\0')) text.remove_suffix(1);
  return text;
}

// A hive keeps every type. A profile file has no form for those beyond text, integer and block.
BOOL writeValue(SettingsStore & store, CString const & section, zp::RegistryEntry const & entry)
{
  CWinApp & app = store.App();
  std::string_view const data = entry.data.View();
  if (store.IsRegistry()) {
    HKEY key = nullptr;
    CString const path = store.Path() + "\\" + section;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &key, nullptr) != 0)
      return FALSE;
    auto const * const bytes = reinterpret_cast<BYTE const *>(data.data());
    LONG const error = RegSetValueExA(key, entry.name, 0, entry.type, bytes, static_cast<DWORD>(data.size()));
    RegCloseKey(key);
    return error == ERROR_SUCCESS;
  }
  if (IsTextType(entry.type))
    return textOf(entry).find('\0') == std::string_view::npos &&
           app.WriteProfileString(section, entry.name, entry.data.GetString());
  if (entry.type == REG_DWORD && data.size() == 4) return app.WriteProfileInt(section, entry.name, NumberOfBytes(entry.data));
  return entry.type == REG_BINARY && store.WriteBlock(section, entry.name, data);
}

BOOL apply(SettingsStore & store, CString const & section, zp::RegistryEntry const & entry)
{
  switch (entry.kind) {
    case zp::RegistryEntry::RemoveKey:
      return store.App().WriteProfileString(section, nullptr, nullptr);
    case zp::RegistryEntry::RemoveValue:
      return store.App().WriteProfileString(section, entry.name, nullptr);
    default:
      return writeValue(store, section, entry);
  }
}

Refusal refusalOf(SettingsStore const & store, CString const & section, zp::RegistryEntry const & entry)
{
  if (entry.kind != zp::RegistryEntry::SetValue) return store.FindRefusalToRemove(section);
  bool const isText = IsTextType(entry.type);
  bool const hasForm = isText || entry.type == REG_BINARY || (entry.type == REG_DWORD && entry.data.GetLength() == 4);
  if (!store.IsRegistry() && !hasForm) return {fmt::format("a profile file has no form for the type {}", entry.type)};
  return store.FindRefusal(section, entry.name, isText ? CString(textOf(entry)) : CString());
}

struct Tally {
  unsigned int taken = 0;
  unsigned int removed = 0;  // settings and sections that the file removes
  unsigned int refused = 0;
  unsigned int elsewhere = 0;
};

// Raises SystemFailure while another program keeps the store locked: each entry would wait for that as long as this one did.
void take(SettingsStore & store, zp::RegistryEntry const & entry, std::string const & name, Tally & tally)
{
  std::optional<CString> const section = sectionOf(entry.key, store.Branch());
  if (!section) {
    ++tally.elsewhere;
  } else if (apply(store, *section, entry)) {
    ++(entry.kind == zp::RegistryEntry::SetValue ? tally.taken : tally.removed);
  } else {
    ++tally.refused;
    Refusal const refusal = refusalOf(store, *section, entry);
    std::string const line = fmt::format("{}: \"{}\" in the section \"{}\" was refused: {}", name,
                                         zp::TextToUtf8(entry.name.View()), zp::TextToUtf8(section->View()), refusal.cause);
    if (refusal.error == EWOULDBLOCK) throw SystemFailure(line + "; nothing behind it was tried", refusal.error);
    Tell(line);
  }
}

// A signal lets the change that it meets end.
void takeAll(SettingsStore & store, std::vector<zp::RegistryEntry> const & entries, std::string const & name, Tally & tally)
{
  InterruptGuard const guard;
  for (zp::RegistryEntry const & entry : entries) {
    if (InterruptGuard::IsInterrupted())
      throw Failure(fmt::format("{}: interrupted; the rest was not tried", name), exitInterrupted);
    take(store, entry, name, tally);
  }
}

void print(Tally const & tally, std::string const & name, int damaged, CString const & branch)
{
  PrintShown(fmt::format("{}: {} taken, {} removed, {} refused, {}, {} of other keys than {}\n", name,
                         Counted(tally.taken, "setting"), tally.removed, tally.refused,
                         Counted(static_cast<unsigned>(damaged), "damaged line"), tally.elsewhere,
                         zp::TextToUtf8(branch.View())));
}

}  // namespace

void ExportSettings(SettingsOptions const & options, std::string const & file)
{
  SettingsStore store(options, Wanted::ToRead);
  std::vector<zp::RegistryEntry> entries;
  for (zp::Setting & setting : store.List(CString()))
    entries.push_back({zp::RegistryEntry::SetValue, store.Branch() + "\\" + setting.section, std::move(setting.key), setting.type,
                       std::move(setting.data)});
  if (entries.empty()) Tell(store.TellEmpty(CString()));
  WriteWholeFile(file, zp::WriteRegistryText(entries));
}

ExitStatus ImportSettings(SettingsOptions const & options, std::string const & file)
{
  SettingsStore store(options, Wanted::ToChange);
  std::string const name = ShownName(file);
  std::vector<zp::RegistryEntry> entries;
  int damaged = 0;
  int lost = 0;
  if (!zp::ReadRegistryText(ReadWholeFile(file), entries, damaged, lost))
    throw Failure(fmt::format(
        "{}: is no registration-entries file; it must begin with REGEDIT4 or Windows Registry Editor Version 5.00", name));
  if (lost > 0)
    Tell(fmt::format("{}: {} that Windows-1252 lacks became \"?\"", name, Counted(static_cast<unsigned>(lost), "character")));
  Tally tally;
  try {
    takeAll(store, entries, name, tally);
  } catch (Failure const &) {
    print(tally, name, damaged, store.Branch());
    throw;
  }
  print(tally, name, damaged, store.Branch());
  if (tally.elsewhere > 0 && tally.taken + tally.removed + tally.refused == 0)
    throw Failure(fmt::format("{}: has no settings of this application; name the one that it is for with -c and -a", name));
  return tally.refused > 0 || damaged > 0 || lost > 0 ? exitWanting : exitDone;
}
