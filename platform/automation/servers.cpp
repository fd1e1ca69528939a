// The servers that this process knows, by program identifier and by class, and their running objects.

#include <zpbase/platform/automation.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/encoding.h>

#include "platform/automation/servers_internal.h"

namespace {

constexpr std::string_view spreadsheet = "Excel.Application";
constexpr std::string_view ownSpreadsheet = "Zephlow.Workbooks";

struct Server {
  std::string progId;
  CLSID id;
  zp::MakeAutomationObject maker;
};

struct RunningObject {
  DWORD registration;
  CLSID id;
  IUnknown * object;
  bool isCounted;
};

// Modules register from their static objects: each table is there as soon as it is asked for.
std::vector<Server> & servers()
{
  static std::vector<Server> known;
  return known;
}

std::vector<RunningObject> & runningObjects()
{
  static std::vector<RunningObject> known;
  return known;
}

Server const * find(std::string_view progId)
{
  auto const found = std::find_if(servers().begin(), servers().end(),
                                  [&](Server const & server) { return zp::EqualsNoCase(server.progId, progId); });
  return found != servers().end() ? &*found : nullptr;
}

Server const * find(CLSID const & id)
{
  auto const found = std::find_if(servers().begin(), servers().end(), [&](Server const & server) { return server.id == id; });
  return found != servers().end() ? &*found : nullptr;
}

Server const * findOrLoad(std::string const & progId)
{
  if (Server const * const known = find(progId); known != nullptr) return known;
  return zp::LoadAutomationServer(progId.c_str()) != 0 ? find(progId) : nullptr;
}

}  // namespace

namespace zp {

int RegisterAutomationServer(char const * progId, CLSID const & id, MakeAutomationObject maker)
{
  if (progId == nullptr || *progId == '\0' || maker == nullptr || find(progId) != nullptr || find(id) != nullptr) return 0;
  servers().push_back({progId, id, std::move(maker)});
  return 1;
}

void UnregisterAutomationServer(char const * progId, CLSID const & id)
{
  if (progId == nullptr) return;
  std::erase_if(servers(), [&](Server const & server) { return server.id == id && EqualsNoCase(server.progId, progId); });
}

bool IsAutomationServer(std::string_view progId)
{
  return find(progId) != nullptr;
}

}  // namespace zp

HRESULT CLSIDFromProgID(char16_t const * progId, CLSID * id)
{
  if (progId == nullptr || id == nullptr) return E_INVALIDARG;
  std::string name;
  zp::AppendWide(name, progId);
  Server const * server = findOrLoad(name);
  if (server == nullptr && zp::EqualsNoCase(name, spreadsheet)) server = findOrLoad(std::string(ownSpreadsheet));
  *id = server != nullptr ? server->id : IID_NULL;
  return server != nullptr ? S_OK : CO_E_CLASSSTRING;
}

HRESULT CoCreateInstance(CLSID const & id, IUnknown * outer, DWORD, IID const & iid, void ** object)
{
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  Server const * const server = find(id);
  if (server == nullptr) return REGDB_E_CLASSNOTREG;
  zp::MakeAutomationObject const maker = server->maker;  // may change the table
  IUnknown * made = nullptr;
  HRESULT code = maker(&made);
  if (FAILED(code)) return code;
  if (made == nullptr) return E_FAIL;
  code = made->QueryInterface(iid, object);
  made->Release();
  return SUCCEEDED(code) && *object == nullptr ? E_NOINTERFACE : code;
}

HRESULT RegisterActiveObject(IUnknown * object, CLSID const & id, DWORD flags, DWORD * registration)
{
  static DWORD last = 0;
  if (object == nullptr || registration == nullptr || flags > ACTIVEOBJECT_WEAK) return E_INVALIDARG;
  bool const isCounted = flags == ACTIVEOBJECT_STRONG;
  runningObjects().push_back({++last, id, object, isCounted});
  if (isCounted) object->AddRef();
  *registration = last;
  return S_OK;
}

HRESULT RevokeActiveObject(DWORD registration, void *)
{
  auto const found = std::find_if(runningObjects().begin(), runningObjects().end(),
                                  [=](RunningObject const & row) { return row.registration == registration; });
  if (found == runningObjects().end()) return E_INVALIDARG;
  RunningObject const row = *found;
  runningObjects().erase(found);
  if (row.isCounted) row.object->Release();
  return S_OK;
}

HRESULT GetActiveObject(CLSID const & id, void *, IUnknown ** object)
{
  if (object == nullptr) return E_POINTER;
  auto const found =
      std::find_if(runningObjects().begin(), runningObjects().end(), [&](RunningObject const & row) { return row.id == id; });
  *object = found != runningObjects().end() ? found->object : nullptr;
  if (*object == nullptr) return MK_E_UNAVAILABLE;
  (*object)->AddRef();
  return S_OK;
}
