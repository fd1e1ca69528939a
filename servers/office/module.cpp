// What makes the bridge known when its module is loaded.
#include <zpbase/platform/automation.h>

#include "failure.h"
#include "office_spreadsheet.h"
#include "office_text.h"
#include "servers/common/book_files.h"

namespace office {
namespace {

constexpr char progId[] = "Zephlow.Office";
constexpr CLSID classId = {0x6C2E7A14, 0x93B5, 0x4D0F, {0xA1, 0x58, 0x0E, 0x77, 0x4B, 0xC9, 0x21, 0xD6}};

// The application's object; why there is none becomes a warning, for the caller sees only a code.
HRESULT makeApplication(IUnknown ** object)
{
  try {
    *object = servers::MakeApplication(std::make_shared<OfficeSpreadsheet>(Link::Get()));
    return S_OK;
  } catch (Failure const & failure) {
    servers::Warn(failure.sentence);
    return failure.code;
  } catch (css::uno::Exception const & exception) {
    servers::Warn("The office can't be reached: " + ToUtf8(exception.Message));
    return startFailed;
  } catch (std::bad_alloc const &) {
    return E_OUTOFMEMORY;
  } catch (std::exception const & exception) {
    servers::Warn(std::string("The office can't be reached: ") + exception.what());
    return E_FAIL;
  }
}

struct Registration {
  Registration() { zp::RegisterAutomationServer(progId, classId, makeApplication); }
  ~Registration() { zp::UnregisterAutomationServer(progId, classId); }
};
Registration const registration;

}  // namespace
}  // namespace office
