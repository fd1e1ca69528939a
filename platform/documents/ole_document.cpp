// CDocItem and COleDocument: a document's items, their stream and the commands on them.

#include <zpbase/platform/documents.h>

#include <memory>
#include <vector>

#include <zpbase/platform/archive.h>

IMPLEMENT_SERIAL(CDocItem, CCmdTarget, 1)
IMPLEMENT_DYNAMIC(COleDocument, CDocument)

namespace {

constexpr ULONGLONG tagBytes = 2;  // of the smallest item in a stream

}  // namespace

COleDocument::~COleDocument()
{
  COleDocument::DeleteContents();
}

void COleDocument::AddItem(CDocItem * item)
{
  m_Items.AddTail(item);
  item->m_pDocument = this;
}

void COleDocument::RemoveItem(CDocItem * item)
{
  POSITION const position = m_Items.Find(item);
  if (position == nullptr) return;
  m_Items.RemoveAt(position);
  item->m_pDocument = nullptr;
}

CDocItem * COleDocument::GetNextItem(POSITION & position) const
{
  return static_cast<CDocItem *>(m_Items.GetNext(position));
}

void COleDocument::DeleteContents()
{
  while (!m_Items.IsEmpty()) delete m_Items.RemoveHead();
}

void COleDocument::Serialize(CArchive & ar)
{
  CDocument::Serialize(ar);
  if (ar.IsStoring()) return m_Items.Serialize(ar);
  DWORD const count = ar.ReadCount();
  ar.RequireBytes(count * tagBytes);
  std::vector<std::unique_ptr<CObject>> items;
  for (DWORD i = 0; i < count; ++i) {
    items.emplace_back(ar.ReadOwnedObject(RUNTIME_CLASS(CDocItem)));
    if (items.back() == nullptr) items.pop_back();
  }
  COleDocument::DeleteContents();
  for (auto & item : items) AddItem(static_cast<CDocItem *>(item.release()));
}

void COleDocument::OnUpdatePasteMenu(CCmdUI * item)
{
  item->Enable(FALSE);
}

void COleDocument::OnUpdatePasteLinkMenu(CCmdUI * item)
{
  item->Enable(FALSE);
}

void COleDocument::OnUpdateEditLinksMenu(CCmdUI * item)
{
  item->Enable(FALSE);
}

void COleDocument::OnUpdateObjectVerbMenu(CCmdUI * item)
{
  item->Enable(FALSE);
}

// Neither has anything to work on, see the updates.
void COleDocument::OnEditLinks() {}

void COleDocument::OnEditConvert() {}
