// The settings of an application, in a profile file or a registry hive, as a mapping of sections and keys.

#include <cstdlib>

#include <zpbase/platform/encoding.h>

#include "python/library_call.h"
#include "tools/program.h"
#include "tools/settings/settings_store.h"

namespace zp::python {

namespace {

// Puts the environment's choice of a hive back, which opening a store by its hive's name changes.
class HiveGuard {
 public:
  HiveGuard()
  {
    char const * const value = std::getenv(name);
    if (value != nullptr) m_Former = value;
  }
  ~HiveGuard()
  {
    if (m_Former)
      setenv(name, m_Former->c_str(), 1);
    else
      unsetenv(name);
  }
  HiveGuard(HiveGuard const &) = delete;
  HiveGuard & operator=(HiveGuard const &) = delete;

 private:
  static constexpr char const * name = "ZP_USER_HIVE";

  std::optional<std::string> m_Former;
};

using Place = std::pair<std::string, std::string>;  // section and key, UTF-8

// The application object is the process's one, so the store is opened for each call.
class Settings {
 public:
  explicit Settings(SettingsOptions options) : m_Options(std::move(options)) {}

  // What work does with the open store.
  template <class Work>
  auto In(Wanted wanted, Work const & work) const
  {
    auto const inStore = [&] {
      HiveGuard const guard;
      SettingsStore store(m_Options, wanted);
      return work(store);
    };
    return InLibrary(inStore, LibraryCall::Others::Wait);  // the environment is everyone's
  }

  std::vector<zp::Setting> List() const
  {
    return In(Wanted::ToRead, [](SettingsStore & store) { return store.List(CString()); });
  }

  // Does what write does, which gives FALSE for a change that was refused.
  template <class Write>
  void Change(Place const & place, CString const & text, Write const & write) const
  {
    CString const section = NameOf(place.first, "section");
    CString const key = NameOf(place.second, "key");
    In(Wanted::ToChange, [&](SettingsStore & store) { store.Require(write(store, section, key), section, key, text); });
  }

  std::string const & GetFile() const { return m_Options.hive.empty() ? m_Options.profile : m_Options.hive; }

 private:
  static CString NameOf(std::string const & name, char const * what)
  {
    if (name.empty()) throw py::value_error(py::str("the {} is empty").format(what));
    return ToText(name, what);
  }

  SettingsOptions m_Options;
};

// A text, a number or bytes, as the setting's type is.
py::object valueOf(zp::Setting const & setting)
{
  if (IsTextType(setting.type)) return TextOf(TextToUtf8(setting.data.GetString()));
  if (setting.type == REG_DWORD && setting.data.GetLength() == 4) return py::int_(NumberOfBytes(setting.data));
  return py::bytes(std::string(setting.data.View()));
}

py::tuple placeOf(zp::Setting const & setting)
{
  return py::make_tuple(TextOf(TextToUtf8(setting.section.View())), TextOf(TextToUtf8(setting.key.View())));
}

bool isAt(zp::Setting const & setting, Place const & place)
{
  CString section;
  CString key;
  return Utf8ToText(place.first, section) && Utf8ToText(place.second, key) && setting.section.CompareNoCase(section) == 0 &&
         setting.key.CompareNoCase(key) == 0;
}

py::object get(Settings const & settings, Place const & place)
{
  for (zp::Setting const & setting : settings.List()) {
    if (isAt(setting, place)) return valueOf(setting);
  }
  throw py::key_error(py::str("no setting {!r} in the section {!r}").format(place.second, place.first));
}

void setNumber(Settings const & settings, Place const & place, py::handle value)
{
  int overflow = 0;
  long const number = PyLong_AsLongAndOverflow(value.ptr(), &overflow);
  if (overflow != 0 || number < INT32_MIN || number > UINT32_MAX)
    throw py::value_error("an integer is from -2147483648 to 4294967295");
  auto const bits = static_cast<int>(static_cast<uint32_t>(number));
  settings.Change(place, CString(), [&](SettingsStore & store, CString const & section, CString const & key) {
    return store.App().WriteProfileInt(section, key, bits);
  });
}

void set(Settings const & settings, Place const & place, py::handle value)
{
  if (py::isinstance<py::bool_>(value))
    throw py::type_error("a setting is a str, an int or bytes; programs keep flags as Yes, No");
  if (py::isinstance<py::int_>(value)) return setNumber(settings, place, value);
  if (py::isinstance<py::bytes>(value)) {
    auto const bytes = value.cast<std::string>();
    return settings.Change(place, CString(), [&](SettingsStore & store, CString const & section, CString const & key) {
      return store.WriteBlock(section, key, bytes);
    });
  }
  if (!py::isinstance<py::str>(value)) throw py::type_error("a setting is a str, an int or bytes");
  CString const text = ToText(value.cast<std::string>(), "the value");
  settings.Change(place, text, [&](SettingsStore & store, CString const & section, CString const & key) {
    return store.App().WriteProfileString(section, key, text);
  });
}

void remove(Settings const & settings, Place const & place)
{
  get(settings, place);
  settings.Change(place, CString(), [&](SettingsStore & store, CString const & section, CString const & key) {
    return store.App().WriteProfileString(section, key, nullptr);
  });
}

void clear(Settings const & settings)
{
  settings.In(Wanted::ToRead, [](SettingsStore & store) {
    for (zp::Setting const & each : store.List(CString()))
      store.RequireRemoved(store.App().WriteProfileString(each.section, each.key, nullptr), each.section);
  });
}

Settings openSettings(py::object const & profile, py::object const & hive, std::string const & application,
                      std::string const & company)
{
  SettingsOptions options;
  options.application = application;
  options.company = company;
  if (!profile.is_none()) options.profile = HostNameOf(profile);
  if (!hive.is_none()) options.hive = HostNameOf(hive);
  if (!profile.is_none() && (!hive.is_none() || !company.empty()))
    throw py::value_error("settings are in a profile file or in a registry hive; name one of them");
  if (application.empty() || (!profile.is_none() && options.profile.empty()) || (!hive.is_none() && options.hive.empty()))
    throw py::value_error("a name is empty");
  return Settings(options);
}

}  // namespace

void AddSettings(py::module_ & module)
{
  py::class_<Settings>(
      module, "Settings",
      "The settings of an application: a mapping of (section, key) to str, int or bytes. Sections and keys compare\n"
      "without the case of ASCII letters. Every look and change goes to the file; a profile file keeps texts alone.")
      .def("__getitem__", &get)
      .def("__setitem__", &set)
      .def("__delitem__", &remove)
      .def(
          "clear", &clear,
          "Removes all settings, one after the other. Where the file refuses that, this raises OSError, and those that were not\n"
          "removed by then stay.")
      .def("__contains__",
           [](Settings const & settings, py::handle key) {
             py::detail::make_caster<Place> caster;
             if (!caster.load(key, true)) return false;  // texts with lone surrogates among them
             auto const place = py::detail::cast_op<Place>(std::move(caster));
             for (zp::Setting const & setting : settings.List()) {
               if (isAt(setting, place)) return true;
             }
             return false;
           })
      .def("__len__", [](Settings const & settings) { return settings.List().size(); })
      .def("__iter__",
           [](Settings const & settings) {
             py::list places;
             for (zp::Setting const & setting : settings.List()) places.append(placeOf(setting));
             return py::iter(places);
           })
      .def("__repr__", [](Settings const & settings) { return py::str("<Settings {!r}>").format(TextOf(settings.GetFile())); });
  module.def(
      "settings", &openSettings, py::kw_only(), py::arg("profile") = py::none(), py::arg("hive") = py::none(),
      py::arg("application") = "Zephlow", py::arg("company") = "",
      "The settings in a profile file or, with hive or company, in a branch of a registry hive; by default those of the\n"
      "application's own profile file. Reading from a profile file that isn't there raises FileNotFoundError, writing makes\n"
      "it, but not its folder. What the system refuses raises the OSError of its kind.");
}

}  // namespace zp::python
