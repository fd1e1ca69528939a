// What a caller of the platform gets wrong is refused with the result that says so, and changes nothing.

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/automation.h>
#include <zpbase/platform/collections.h>
#include <zpbase/platform/drawing.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/registry.h>
#include <zpbase/platform/variants.h>

#include "tests/support/Raised.h"

namespace {

TEST(Refusals, OfArraysOfVariants)
{
  SAFEARRAYBOUND const bounds[] = {{2, 1}, {3, 0}};
  SAFEARRAYBOUND const none[] = {{0, 1}};
  SAFEARRAYBOUND const many[] = {{0xFFFFFFFF, 0}, {0xFFFFFFFF, 0}};
  SAFEARRAY * const block = SafeArrayCreate(VT_VARIANT, 2, bounds);
  ASSERT_NE(block, nullptr);
  for (SAFEARRAY const * refused :
       {SafeArrayCreate(VT_I4, 1, bounds), SafeArrayCreate(VT_VARIANT, 0, bounds), SafeArrayCreate(VT_VARIANT, 2, nullptr),
        SafeArrayCreate(VT_VARIANT, 1, none), SafeArrayCreate(VT_VARIANT, 2, many), SafeArrayCreate(VT_VARIANT, 0x10000, bounds)})
    EXPECT_EQ(refused, nullptr);
  LONG bound = 7;
  void * data = nullptr;
  LONG const place[] = {2, 3};
  SAFEARRAY * copy = block;
  for (HRESULT const code :
       {SafeArrayCopy(block, nullptr), SafeArrayGetLBound(nullptr, 1, &bound), SafeArrayGetUBound(block, 1, nullptr),
        SafeArrayAccessData(nullptr, &data), SafeArrayAccessData(block, nullptr), SafeArrayUnaccessData(nullptr),
        SafeArrayUnaccessData(block), SafeArrayPtrOfIndex(nullptr, place, &data), SafeArrayPtrOfIndex(block, nullptr, &data),
        SafeArrayPtrOfIndex(block, place, nullptr)})
    EXPECT_EQ(code, E_INVALIDARG);
  LONG const before[] = {0, 0};
  for (HRESULT const code : {SafeArrayGetLBound(block, 0, &bound), SafeArrayGetUBound(block, 3, &bound),
                             SafeArrayPtrOfIndex(block, place, &data), SafeArrayPtrOfIndex(block, before, &data)})
    EXPECT_EQ(code, DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayCopy(nullptr, &copy) | SafeArrayDestroy(nullptr), S_OK);
  EXPECT_TRUE(copy == nullptr && data == nullptr && bound == 7 && SafeArrayGetDim(nullptr) == 0 && SafeArrayGetDim(block) == 2);
  EXPECT_EQ(SafeArrayDestroy(block), S_OK);
}

TEST(Refusals, OfVariantsAndServers)
{
  EXPECT_TRUE(CodeOf<COleException>([] { COleVariant(short{1}, VT_I4); }));
  EXPECT_TRUE(CodeOf<COleException>([] { COleVariant(1, VT_R8); }));
  EXPECT_TRUE(CodeOf<COleException>([] { COleVariant(1.0, VT_I4); }));
  EXPECT_EQ(COleVariant(short{7}, VT_BOOL).boolVal, VARIANT_TRUE);
  COleVariant value("text");
  value = *&value;
  value = std::move(*&value);
  value.Attach(value);
  EXPECT_EQ(zp::BstrToText(value.bstrVal), "text");
  VARIANT odd{};
  for (VARTYPE const type : {VT_VARIANT, VT_BSTRA, VARTYPE{15}, VARTYPE{20}, VARTYPE{24}, VT_BYREF, VARTYPE{VT_BYREF | VT_NULL},
                             VARTYPE{VT_BYREF | 24}, VARTYPE{VT_ARRAY | VT_I4}}) {
    odd.vt = type;
    EXPECT_EQ(VariantClear(&odd), DISP_E_BADVARTYPE) << type;
    EXPECT_EQ(VariantCopy(&value, &odd), DISP_E_BADVARTYPE) << type;
  }
  EXPECT_EQ(value.vt, VT_BSTR);
  odd.vt = VT_BYREF | VT_UINT;
  EXPECT_EQ(VariantCopy(&odd, &odd) | VariantCopy(&value, &odd), S_OK);
  EXPECT_EQ(value.vt, VT_BYREF | VT_UINT);

  CLSID const id{9, 9, 9, {9}};
  CLSID found{};
  void * object = nullptr;
  DWORD registration = 5;
  zp::MakeAutomationObject const none = [](IUnknown **) { return S_OK; };
  EXPECT_EQ(zp::RegisterAutomationServer(nullptr, id, none) + zp::RegisterAutomationServer("", id, none) +
                zp::RegisterAutomationServer("No.Maker", id, nullptr),
            0);
  EXPECT_EQ(CLSIDFromProgID(nullptr, &found) & CLSIDFromProgID(u"x", nullptr), E_INVALIDARG);
  EXPECT_EQ(CoCreateInstance(id, nullptr, 0, IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(GetActiveObject(id, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(RegisterActiveObject(nullptr, id, ACTIVEOBJECT_WEAK, &registration), E_INVALIDARG);
  EXPECT_EQ(RevokeActiveObject(99, nullptr), E_INVALIDARG);
  ASSERT_EQ(zp::RegisterAutomationServer("Makes.Nothing", id, none), 1);
  EXPECT_EQ(CoCreateInstance(id, nullptr, 0, IID_IUnknown, &object), E_FAIL);
  zp::UnregisterAutomationServer("Makes.Nothing", id);
}

TEST(Refusals, OfPlacesOutsideACollection)
{
  CObArray objects;
  CUIntArray numbers;
  CStringArray texts;
  CUIntArray object;
  objects.Add(&object);
  numbers.Add(1);
  texts.Add(CString("a"));
  for (int const place : {-1, 2, std::numeric_limits<int>::min()}) {
    EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { objects.RemoveAt(place); })) << place;
    EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { numbers.RemoveAt(place); })) << place;
    EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { numbers.SetAt(place, 1); })) << place;
    EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { texts.GetAt(place); })) << place;
  }
  CObList list;
  POSITION none = nullptr;
  EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { list.GetNext(none); }) & CodeOf<CInvalidArgException>([&] { list.GetHead(); }));
  EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { objects.GetAt(1); }) &
              CodeOf<CInvalidArgException>([&] { objects.RemoveAt(0, 2); }));
  EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { objects.SetSize(-1); }));
  EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { numbers.SetSize(-1); }));
  EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { texts.SetSize(-1); }));
  EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { objects.InsertAt(0, nullptr, -1); }));
  EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { texts.InsertAt(-1, CString()); }));
  EXPECT_TRUE(CodeOf<CInvalidArgException>([&] { numbers.SetAtGrow(-1, 0); }));
  EXPECT_EQ(objects.GetSize() * 100 + numbers.GetSize() * 10 + texts.GetSize(), 111);
  objects.SetAtGrow(2, &object);
  numbers.InsertAt(3, 9);
  texts.SetAtGrow(2, texts[0]);
  EXPECT_TRUE(objects[1] == nullptr && objects[2] == &object && numbers[2] == 0 && numbers[3] == 9 && texts[2] == "a");
  numbers.FreeExtra();
}

TEST(Refusals, OfTheRegistryAndOfDrawingObjects)
{
  HKEY key = nullptr;
  DWORD size = 1;
  char text[1];
  HKEY const closed = nullptr;
  for (LONG const error :
       {RegOpenKeyExA(closed, "a", 0, 0, &key), RegCreateKeyExA(closed, "a", 0, nullptr, 0, 0, nullptr, &key, &size),
        RegCloseKey(closed), RegEnumKeyExA(closed, 0, text, &size, nullptr, nullptr, nullptr, nullptr),
        RegEnumValueA(closed, 0, text, &size, nullptr, nullptr, nullptr, nullptr),
        RegQueryValueExA(closed, "a", nullptr, nullptr, nullptr, &size), RegSetValueExA(closed, "a", 0, 1, nullptr, 0),
        RegDeleteValueA(closed, "a"), RegDeleteTreeA(closed, "a")})
    EXPECT_EQ(error, ERROR_INVALID_HANDLE);
  EXPECT_EQ(RegCloseKey(HKEY_USERS) | RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
  CPen pen;
  CBrush brush;
  CFont font;
  LOGPEN penRecord{};
  LOGBRUSH brushRecord{};
  LOGFONT fontRecord{};
  EXPECT_EQ(pen.GetLogPen(&penRecord) + brush.GetLogBrush(&brushRecord) + font.GetLogFont(&fontRecord), 0);
  EXPECT_FALSE(pen.CreatePenIndirect(nullptr) || brush.CreateBrushIndirect(nullptr) || font.CreateFontIndirectA(nullptr));
  EXPECT_TRUE(pen.CreatePenIndirect(&penRecord) && brush.CreateBrushIndirect(&brushRecord) &&
              font.CreateFontIndirectA(&fontRecord));
  EXPECT_FALSE(pen.CreatePenIndirect(&penRecord) || brush.CreateBrushIndirect(&brushRecord) ||
               font.CreateFontIndirectA(&fontRecord));
  EXPECT_EQ(pen.GetLogPen(nullptr) + brush.GetLogBrush(nullptr) + font.GetLogFont(nullptr), 0);
}

TEST(Refusals, AreToldInTheRoomThereIs)
{
  char text[40] = "kept";
  EXPECT_EQ(CFileException().GetErrorMessage(text, 0), 0);
  EXPECT_STREQ(text, "kept");
  CArchiveException(CArchiveException::endOfFile, "").GetErrorMessage(text, sizeof text);
  EXPECT_STREQ(text, "The data ends before what it should hol");
  CArchiveException(CArchiveException::genericException, "").GetErrorMessage(text, sizeof text);
  EXPECT_STREQ(text, "An unspecified error occurred in the da");
  for (int const cause : {-1, 999}) {
    EXPECT_NE(CFileException(cause).GetErrorMessage(text, 5), 0);
    EXPECT_EQ(std::string(text).size(), 4U);
    EXPECT_NE(CArchiveException(cause, "f").GetErrorMessage(text, 2), 0);
    EXPECT_EQ(std::string(text).size(), 1U);
  }
}

}  // namespace
