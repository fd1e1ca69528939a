#include "tests/support/RecordingServer.h"

#include <algorithm>
#include <utility>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/automation.h>
#include <zpbase/platform/string.h>

namespace {

constexpr CLSID recordingClass{0x5A504C57, 0x0002, 0x4000, {0x80, 0, 0, 0, 0, 0, 0, 1}};

std::string shown(VARIANT const & value)
{
  COleVariant text;
  if (FAILED(VariantChangeType(&text, &value, 0, VT_BSTR))) return std::to_string(value.vt);
  return std::to_string(value.vt) + ":" + zp::BstrToText(text.bstrVal).GetString();
}

std::string textOf(DISPPARAMS const & params)
{
  return params.cArgs == 1 && params.rgvarg->vt == VT_BSTR ? zp::BstrToText(params.rgvarg->bstrVal).GetString() : "";
}

// The item of an index that counts from 1, or null.
template <class Item>
std::shared_ptr<Item> itemOf(std::vector<std::shared_ptr<Item>> const & items, DISPPARAMS const & params)
{
  auto const index = static_cast<size_t>(params.rgvarg->iVal);
  return params.rgvarg->vt == VT_I2 && index >= 1 && index <= items.size() ? items[index - 1] : nullptr;
}

bool isTaken(RecordingServer::Sheets const & sheets, std::string const & name)
{
  return std::any_of(sheets.begin(), sheets.end(), [&](auto const & sheet) { return zp::EqualsNoCase(sheet->name, name); });
}

}  // namespace

std::string ShownArguments(DISPPARAMS const & params)
{
  std::string text;
  for (UINT i = 0; i < params.cArgs; ++i) {
    text += text.empty() ? " " : ", ";
    if (i < params.cNamedArgs) text += std::to_string(params.rgdispidNamedArgs[i]) + "=";
    text += shown(params.rgvarg[i]);
  }
  return text;
}

// An object of the server, of the kind that its name tells.
class RecordingServer::Thing : public IDispatch {
 public:
  Thing(RecordingServer & server, std::string kind, std::shared_ptr<Book> book = {}, std::shared_ptr<Sheet> sheet = {},
        std::string cell = {})
      : m_pServer(&server),
        m_strKind(std::move(kind)),
        m_pBook(std::move(book)),
        m_pSheet(std::move(sheet)),
        m_strCell(std::move(cell))
  {
    ++m_pServer->m_nLive;
  }
  Thing(Thing const &) = delete;
  Thing & operator=(Thing const &) = delete;
  virtual ~Thing() = default;

  HRESULT QueryInterface(IID const & iid, void ** object) override
  {
    if (iid != IID_IUnknown && (iid != IID_IDispatch || !m_pServer->m_bHasDispatch)) return E_NOINTERFACE;
    AddRef();
    *object = this;
    return S_OK;
  }
  DWORD AddRef() override
  {
    ++m_pServer->m_nLive;
    return ++m_nReferences;
  }
  DWORD Release() override
  {
    --m_pServer->m_nLive;
    DWORD const left = --m_nReferences;
    if (left == 0) delete this;
    return left;
  }
  HRESULT GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(IID const &, char16_t **, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
  HRESULT Invoke(DISPID id, IID const & reserved, LCID, WORD flags, DISPPARAMS * params, VARIANT * result, EXCEPINFO * exception,
                 UINT *) override;

 private:
  HRESULT Answer(DISPID id, WORD flags, DISPPARAMS const & params, VARIANT * result);
  HRESULT AnswerOfWorkbook(DISPID id, DISPPARAMS const & params, VARIANT * result);
  HRESULT Rename(std::string const & name);
  HRESULT Open(std::string const & name, VARIANT * result);

  template <class... Args>
  HRESULT Give(VARIANT * result, std::string kind, Args... args)
  {
    result->vt = VT_DISPATCH;
    result->pdispVal = new Thing(*m_pServer, std::move(kind), args...);
    return S_OK;
  }
  static HRESULT Give(VARIANT * result, COleVariant value)
  {
    *result = value.Detach();
    return S_OK;
  }
  HRESULT Add(VARIANT * result);
  HRESULT Count(VARIANT * result) const;

  Sheets & Siblings() const { return m_strKind.starts_with("Chart") ? m_pBook->charts : m_pBook->sheets; }

  RecordingServer * m_pServer;
  std::string m_strKind;
  std::shared_ptr<Book> m_pBook;
  std::shared_ptr<Sheet> m_pSheet;
  std::string m_strCell;
  DWORD m_nReferences = 1;
};

HRESULT RecordingServer::Thing::Invoke(DISPID id, IID const & reserved, LCID, WORD flags, DISPPARAMS * params, VARIANT * result,
                                       EXCEPINFO * exception, UINT *)
{
  if (reserved != IID_NULL) return E_INVALIDARG;
  CString call;
  call.Format("%s %04X %u", m_strKind.c_str(), static_cast<UINT>(id), UINT{flags});
  m_pServer->m_Calls.push_back(call.GetString() + ShownArguments(*params) + (result != nullptr ? "?" : ""));
  std::optional<HRESULT> const failure = m_pServer->FailureOf(call.GetString());
  if (!failure) return Answer(id, flags, *params, result);
  if (*failure == DISP_E_EXCEPTION && exception != nullptr) {
    zp::TellException(exception, E_FAIL, "Recorder", call.GetString());
    exception->bstrHelpFile = SysAllocString(u"help.txt");
    exception->wCode = 1004;
    exception->dwHelpContext = 7;
  }
  if (*failure == S_FALSE) result->vt = VT_DISPATCH;
  return *failure;
}

HRESULT RecordingServer::Thing::Answer(DISPID id, WORD flags, DISPPARAMS const & params, VARIANT * result)
{
  if (id == 0x76) return Count(result);
  if (id == 0xB5) return Add(result);
  if (m_strKind == "Workbook") return AnswerOfWorkbook(id, params, result);
  switch (id) {
    case 0x06:
      return m_pSheet->cells.contains(m_strCell) ? Give(result, m_pSheet->cells[m_strCell]) : S_OK;
    case 0x6E:
      if (flags == DISPATCH_PROPERTYPUT) return Rename(textOf(params));
      return Give(result, COleVariant(m_pSheet->name.c_str()));
    case 0xC5:
      return Give(result, "Range", m_pBook, m_pSheet, textOf(params));
    case 0xEB:
      return S_OK;
    case 0x23C: {
      if (params.cArgs == 0) return Give(result, "Workbooks");
      auto const book = itemOf(m_pServer->m_Open, params);
      return book ? Give(result, "Workbook", book) : DISP_E_BADINDEX;
    }
    case 0x2AA:
      return Open(textOf(params), result);
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

HRESULT RecordingServer::Thing::AnswerOfWorkbook(DISPID id, DISPPARAMS const & params, VARIANT * result)
{
  bool const isChart = id == 0x79;
  switch (id) {
    case 0x121:
      return Give(result, COleVariant(m_pBook->fullName.c_str()));
    case 0x130:
      return S_OK;
    case 0x115:
      std::erase(m_pServer->m_Open, m_pBook);
      return S_OK;
    case 0x79:
    case 0x1EE: {
      if (params.cArgs == 0) return Give(result, isChart ? "Charts" : "Worksheets", m_pBook);
      auto const sheet = itemOf(isChart ? m_pBook->charts : m_pBook->sheets, params);
      return sheet ? Give(result, isChart ? "Chart" : "Worksheet", m_pBook, sheet) : DISP_E_BADINDEX;
    }
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

HRESULT RecordingServer::Thing::Count(VARIANT * result) const
{
  size_t const count = m_strKind == "Workbooks" ? m_pServer->m_Open.size() : Siblings().size();
  return Give(result, COleVariant(static_cast<int>(count)));
}

HRESULT RecordingServer::Thing::Add(VARIANT * result)
{
  if (m_strKind == "Workbooks") {
    auto const book = std::make_shared<Book>(Book{"Book" + std::to_string(m_pServer->m_Open.size() + 1), {}, {}});
    m_pServer->m_Open.push_back(book);
    return Give(result, "Workbook", book);
  }
  std::string const kind = m_strKind.substr(0, m_strKind.size() - 1);
  auto const sheet = std::make_shared<Sheet>(Sheet{kind + std::to_string(Siblings().size() + 1), {}});
  Siblings().push_back(sheet);
  return Give(result, kind, m_pBook, sheet);
}

HRESULT RecordingServer::Thing::Rename(std::string const & name)
{
  if (isTaken(m_pBook->sheets, name) || isTaken(m_pBook->charts, name)) return E_INVALIDARG;
  m_pSheet->name = name;
  return S_OK;
}

HRESULT RecordingServer::Thing::Open(std::string const & name, VARIANT * result)
{
  auto const file = m_pServer->m_Files.find(name);
  if (file == m_pServer->m_Files.end()) return DISP_E_EXCEPTION;
  m_pServer->m_Open.push_back(std::make_shared<Book>(file->second));
  return Give(result, "Workbook", m_pServer->m_Open.back());
}

RecordingServer::RecordingServer(char const * progId) : m_strProgId(progId)
{
  zp::RegisterAutomationServer(progId, recordingClass, [this](IUnknown ** object) {
    if (SUCCEEDED(m_nMakeCode)) *object = MakeApplication();
    return m_nMakeCode;
  });
}

RecordingServer::~RecordingServer()
{
  Stop();
  zp::UnregisterAutomationServer(m_strProgId.c_str(), recordingClass);
}

IDispatch * RecordingServer::MakeApplication()
{
  ++m_nMade;
  return new Thing(*this, "Application");
}

void RecordingServer::Run()
{
  IDispatch * const application = MakeApplication();
  RegisterActiveObject(application, recordingClass, ACTIVEOBJECT_STRONG, &m_Running.emplace());
  application->Release();
}

void RecordingServer::Stop()
{
  if (m_Running) RevokeActiveObject(*m_Running, nullptr);
  m_Running.reset();
}

std::optional<HRESULT> RecordingServer::FailureOf(std::string const & call)
{
  auto const found = m_Failures.find(call);
  if (found == m_Failures.end() || found->second.after-- > 0) return std::nullopt;
  found->second.after = 0;
  return found->second.code;
}
