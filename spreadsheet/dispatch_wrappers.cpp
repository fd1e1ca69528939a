// The links to the server's objects: each member is one late-bound call by the published number of the server's member.

#include <zpbase/spreadsheet.h>

#include "spreadsheet/session_internal.h"

namespace {

enum Member : DISPID {
  memberValue = 0x0006,
  memberName = 0x006E,
  memberCount = 0x0076,
  memberCharts = 0x0079,
  memberAdd = 0x00B5,
  memberRange = 0x00C5,
  memberSelect = 0x00EB,
  memberColumn = 0x00F0,
  memberColumns = 0x00F1,
  memberRow = 0x0101,
  memberRows = 0x0102,
  memberClose = 0x0115,
  memberSave = 0x011B,
  memberSaveAs = 0x011C,
  memberFullName = 0x0121,
  memberActivate = 0x0130,
  memberDisplayAlerts = 0x0157,
  memberUsedRange = 0x019C,
  memberWorksheets = 0x01EE,
  memberWorkbooks = 0x023C,
  memberOpen = 0x02AA
};

constexpr BYTE textParameter[] = {VT_BSTRA, 0};
constexpr BYTE variantParameter[] = {VT_VARIANT, 0};

IDispatch * objectOf(COleDispatchDriver & link, DISPID member, WORD flags)
{
  IDispatch * object = nullptr;
  link.InvokeHelper(member, flags, VT_DISPATCH, &object, nullptr);
  return object;
}

IDispatch * objectOf(COleDispatchDriver & link, DISPID member, WORD flags, VARIANT const & argument)
{
  IDispatch * object = nullptr;
  link.InvokeHelper(member, flags, VT_DISPATCH, &object, variantParameter, &argument);
  return object;
}

long numberOf(COleDispatchDriver & link, DISPID member)
{
  LONG number = 0;
  link.InvokeHelper(member, DISPATCH_PROPERTYGET, VT_I4, &number, nullptr);
  return number;
}

CString textOf(COleDispatchDriver & link, DISPID member)
{
  CString text;
  link.InvokeHelper(member, DISPATCH_PROPERTYGET, VT_BSTR, &text, nullptr);
  return text;
}

void setText(COleDispatchDriver & link, DISPID member, char const * text)
{
  link.InvokeHelper(member, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, textParameter, text);
}

void call(COleDispatchDriver & link, DISPID member)
{
  link.InvokeHelper(member, DISPATCH_METHOD, VT_EMPTY, nullptr, nullptr);
}

void call(COleDispatchDriver & link, DISPID member, VARIANT const & argument)
{
  link.InvokeHelper(member, DISPATCH_METHOD, VT_EMPTY, nullptr, variantParameter, &argument);
}

}  // namespace

GPRange::~GPRange()
{
  zp::Unlink(*this);
}

VARIANT GPRange::GetValue()
{
  VARIANT value{};
  InvokeHelper(memberValue, DISPATCH_PROPERTYGET, VT_VARIANT, &value, nullptr);
  return value;
}

void GPRange::SetValue(VARIANT const & value)
{
  InvokeHelper(memberValue, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, variantParameter, &value);
}

long GPRange::GetRow()
{
  return numberOf(*this, memberRow);
}

long GPRange::GetColumn()
{
  return numberOf(*this, memberColumn);
}

IDispatch * GPRange::GetRows()
{
  return objectOf(*this, memberRows, DISPATCH_PROPERTYGET);
}

IDispatch * GPRange::GetColumns()
{
  return objectOf(*this, memberColumns, DISPATCH_PROPERTYGET);
}

long GPRange::GetCount()
{
  return numberOf(*this, memberCount);
}

GPWorkSheet::~GPWorkSheet()
{
  zp::Unlink(*this);
}

CString GPWorkSheet::GetName()
{
  return textOf(*this, memberName);
}

void GPWorkSheet::SetName(char const * name)
{
  setText(*this, memberName, name);
}

IDispatch * GPWorkSheet::GetCell(tagVARIANT const & name)
{
  return objectOf(*this, memberRange, DISPATCH_PROPERTYGET, name);
}

IDispatch * GPWorkSheet::GetUsedRange()
{
  return objectOf(*this, memberUsedRange, DISPATCH_PROPERTYGET);
}

void GPWorkSheet::Select()
{
  call(*this, memberSelect);
}

GPWorkSheets::~GPWorkSheets()
{
  zp::Unlink(*this);
}

long GPWorkSheets::GetCount()
{
  return numberOf(*this, memberCount);
}

IDispatch * GPWorkSheets::Add()
{
  return objectOf(*this, memberAdd, DISPATCH_METHOD);
}

GPChart::~GPChart()
{
  zp::Unlink(*this);
}

CString GPChart::GetName()
{
  return textOf(*this, memberName);
}

void GPChart::SetName(char const * name)
{
  setText(*this, memberName, name);
}

void GPChart::Select()
{
  call(*this, memberSelect);
}

GPCharts::~GPCharts()
{
  zp::Unlink(*this);
}

long GPCharts::GetCount()
{
  return numberOf(*this, memberCount);
}

IDispatch * GPCharts::Add()
{
  return objectOf(*this, memberAdd, DISPATCH_METHOD);
}

GPWorkBook::~GPWorkBook()
{
  zp::Unlink(*this);
}

CString GPWorkBook::GetFullName()
{
  return textOf(*this, memberFullName);
}

void GPWorkBook::Activate()
{
  call(*this, memberActivate);
}

void GPWorkBook::Close(tagVARIANT const & saveChanges)
{
  call(*this, memberClose, saveChanges);
}

void GPWorkBook::Save()
{
  call(*this, memberSave);
}

void GPWorkBook::SaveAs(tagVARIANT const & fileName)
{
  call(*this, memberSaveAs, fileName);
}

IDispatch * GPWorkBook::GetWorkSheets()
{
  return objectOf(*this, memberWorksheets, DISPATCH_PROPERTYGET);
}

IDispatch * GPWorkBook::GetWorkSheet(tagVARIANT const & index)
{
  return objectOf(*this, memberWorksheets, DISPATCH_PROPERTYGET, index);
}

IDispatch * GPWorkBook::GetCharts()
{
  return objectOf(*this, memberCharts, DISPATCH_PROPERTYGET);
}

IDispatch * GPWorkBook::GetChart(tagVARIANT const & index)
{
  return objectOf(*this, memberCharts, DISPATCH_PROPERTYGET, index);
}

GPWorkBooks::~GPWorkBooks()
{
  zp::Unlink(*this);
}

long GPWorkBooks::GetCount()
{
  return numberOf(*this, memberCount);
}

IDispatch * GPWorkBooks::Add()
{
  return objectOf(*this, memberAdd, DISPATCH_METHOD);
}

IDispatch * GPWorkBooks::Open(tagVARIANT const & fileName)
{
  return objectOf(*this, memberOpen, DISPATCH_METHOD, fileName);
}

GPApplication::~GPApplication()
{
  zp::Unlink(*this);
}

IDispatch * GPApplication::GetWorkBooks()
{
  return objectOf(*this, memberWorkbooks, DISPATCH_PROPERTYGET);
}

IDispatch * GPApplication::GetWorkBook(tagVARIANT const & index)
{
  return objectOf(*this, memberWorkbooks, DISPATCH_PROPERTYGET, index);
}

void GPApplication::SetDisplayAlerts(int shown)
{
  COleVariant const value(static_cast<short>(shown != 0), VT_BOOL);
  InvokeHelper(memberDisplayAlerts, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, variantParameter, &value);
}
