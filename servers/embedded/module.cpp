// What makes the embedded server known when its module is loaded.

#include <zpbase/platform/automation.h>

#include "servers/embedded/open_books.h"

namespace embedded {
namespace {

constexpr char progId[] = "Zephlow.Workbooks";
constexpr CLSID classId = {0x2B91D4E7, 0x5C3A, 0x4E86, {0x9F, 0x1D, 0x73, 0xA0, 0x48, 0xC6, 0x5B, 0xE2}};

HRESULT makeApplication(IUnknown ** object)
{
  try {
    *object = servers::MakeApplication(Workbooks::Get());
    return S_OK;
  } catch (std::bad_alloc const &) {
    return E_OUTOFMEMORY;
  }
}

struct Registration {
  Registration() { zp::RegisterAutomationServer(progId, classId, makeApplication); }
  ~Registration() { zp::UnregisterAutomationServer(progId, classId); }
};
Registration const registration;

}  // namespace
}  // namespace embedded
