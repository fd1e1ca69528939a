// GPRptDoc: a text report as a document, its stream and its maps of commands, automation names and interfaces.

#include <zpbase/views.h>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/automation.h>
#include <zpbase/platform/message_map.h>

IMPLEMENT_DYNCREATE(GPRptDoc, COleDocument)

namespace {

constexpr UINT pasteCommand = 0xE125;
constexpr UINT pasteLinkCommand = 0xE126;
constexpr UINT linksCommand = 0xE201;
constexpr UINT convertCommand = 0xE202;
constexpr UINT firstVerbCommand = 0xE210;

// {FDE493E1-4FBF-11CF-AEA4-00805F506A27}
constexpr IID reportInterface{0xFDE493E1, 0x4FBF, 0x11CF, {0xAE, 0xA4, 0x00, 0x80, 0x5F, 0x50, 0x6A, 0x27}};

}  // namespace

GPRptDoc::GPRptDoc() : GPRptDoc(nullptr, nullptr) {}

GPRptDoc::GPRptDoc(CStringArray * lines, int (*pageHeader)(CString &, int, int))
    : m_pPageHeader(pageHeader), m_pLines(lines != nullptr ? lines : new CStringArray)
{
  EnableAutomation();
  AfxOleLockApp();
}

GPRptDoc::~GPRptDoc()
{
  m_pLines.reset();
  AfxOleUnlockApp();
}

// The lines' count, each line, and what the base streams.
void GPRptDoc::Serialize(CArchive & ar)
{
  m_pLines->Serialize(ar);
  COleDocument::Serialize(ar);
}

void GPRptDoc::DeleteContents()
{
  m_pLines->RemoveAll();
}

BOOL GPRptDoc::OnNewDocument()
{
  return COleDocument::OnNewDocument() ? 1 : 0;
}

AFX_MSGMAP const * GPRptDoc::GetThisMessageMap()
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnUpdateCommandUI<&GPRptDoc::OnUpdatePasteMenu>(pasteCommand),
                                                 zp::OnUpdateCommandUI<&GPRptDoc::OnUpdatePasteLinkMenu>(pasteLinkCommand),
                                                 zp::OnUpdateCommandUI<&GPRptDoc::OnUpdateObjectVerbMenu>(convertCommand),
                                                 zp::OnCommand<&GPRptDoc::OnEditConvert>(convertCommand),
                                                 zp::OnUpdateCommandUI<&GPRptDoc::OnUpdateEditLinksMenu>(linksCommand),
                                                 zp::OnCommand<&GPRptDoc::OnEditLinks>(linksCommand),
                                                 zp::OnUpdateCommandUI<&GPRptDoc::OnUpdateObjectVerbMenu>(firstVerbCommand)};
  static constexpr AFX_MSGMAP map{&COleDocument::GetThisMessageMap, entries};
  return &map;
}

AFX_MSGMAP const * GPRptDoc::GetMessageMap() const
{
  return GetThisMessageMap();
}

AFX_DISPMAP const * GPRptDoc::GetDispatchMap() const
{
  static constexpr AFX_DISPMAP map{&COleDocument::GetThisDispatchMap, {}};
  return &map;
}

AFX_INTERFACEMAP const * GPRptDoc::GetInterfaceMap() const
{
  static constexpr AFX_INTERFACEMAP_ENTRY entries[] = {{&reportInterface, &zp::DispatchInterfaceOf}};
  static constexpr AFX_INTERFACEMAP map{&COleDocument::GetThisInterfaceMap, entries};
  return &map;
}

GPRptDoc * FindGPRptDoc(CString const & title)
{
  return static_cast<GPRptDoc *>(FindDocByTitle(RUNTIME_CLASS(GPRptDoc), title));
}
