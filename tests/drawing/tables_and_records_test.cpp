// Colours, fill patterns, the plain records, and the contexts that a view prepares.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include <zpbase/drawing.h>
#include <zpbase/platform/documents.h>

namespace {

TEST(ColorTable, CyclesThroughTheRowsThatArentSkipped)
{
  unsigned long const colors[] = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080,
                                  0xF0CAA6, 0xC0DCC0, 0xC0C0C0, 0xA4A0A0, 0x808080, 0xFF0000, 0x00FF00,
                                  0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xF0FBFF, 0xFFFFFF, 0xFFFFFFFF};
  for (int i = 0; i < 21; ++i) {
    EXPECT_EQ(GetCOLORREF(i), colors[i]);
    EXPECT_EQ(GetColorTableIndex(colors[i]), i);
    EXPECT_EQ(GetNextCOLORREF(colors[i]), i < 16 ? colors[i + 1] : 0);
  }
  EXPECT_EQ(GetColorTableIndex(0x123456), -1);
  EXPECT_EQ(GetNextCOLORREF(0x123456), 0U);
  EXPECT_EQ(GetColorTableIndex(~0UL), 20);
  EXPECT_EQ(GetCOLORREF(-1), 0);
  EXPECT_EQ(GetCOLORREF(21), 0);
}

TEST(FillPatterns, AreSevenRows)
{
  unsigned int const patterns[] = {0xFFFF, HS_CROSS, HS_DIAGCROSS, HS_HORIZONTAL, HS_VERTICAL, HS_BDIAGONAL, HS_FDIAGONAL};
  ASSERT_EQ(GetFillPatternTableSize(), 7U);
  for (unsigned int i = 0; i < 7; ++i) {
    EXPECT_EQ(GetFillPatternTableAddress()[i], patterns[i]);
    EXPECT_EQ(GetFillPattern(i), patterns[i]);
    EXPECT_EQ(GetFillPatternTableIndex(patterns[i]), static_cast<int>(i));
  }
  EXPECT_EQ(GetFillPatternTableIndex(6), -1);
  EXPECT_EQ(GetFillPattern(7), 0xFFFFU);
}

TEST(DrawingRecords, HaveTheirDefaultsAndAreCopiedWhole)
{
  auto const paint = [](GPPaintBox const & box) {
    return std::array<long, 5>{long(box.m_nPenColor), long(box.m_nPenWidth), long(box.m_nPenStyle), long(box.m_nFillColor),
                               long(box.m_nFillPattern)};
  };
  GPPaintBox box;
  EXPECT_EQ(paint(box), (std::array<long, 5>{0, 1, 0, 0xFFFFFFFF, 0xFFFF}));
  EXPECT_EQ(paint(GPPaintBox(1, 0, 2, 3, 4)), (std::array<long, 5>{1, 1, 2, 3, 4}));
  GPPaintBox const other(1, 3, 2, ~0UL, 4);
  box = other;
  box = static_cast<GPPaintBox const &>(box);
  EXPECT_EQ(paint(box), (std::array<long, 5>{1, 3, 2, 0xFFFFFFFF, 4}));

  auto const all = [](GPFSheetVals const & values) {
    return std::to_string(values.m_nFirst) + ' ' + std::to_string(values.m_nSecond) + ' ' + std::to_string(values.m_nThird) +
           ' ' + std::to_string(values.m_nFourth) + ' ' + values.m_strFormat.GetString();
  };
  EXPECT_EQ(all(GPFSheetVals()), "0 1 1 64 %.4g");
  EXPECT_EQ(all(GPFSheetVals(1, 2, 3, 4, "")), "1 2 3 4 %.4g");
  EXPECT_EQ(all(GPFSheetVals(~0UL, -2, 3, 4, "%g")), "4294967295 -2 3 4 %g");
}

class HalfSizeView : public CView {
 public:
  void OnPrepareDC(CDC * dc, CPrintInfo * info) override
  {
    m_pPrinting = info;
    dc->SetMapMode(MM_ANISOTROPIC);
    dc->SetWindowOrg(10, -10);
    dc->SetWindowExt(2, 2);
    dc->SetViewportExt(1, -1);
    dc->SetViewportOrg(100, 200);
  }
  CPrintInfo * m_pPrinting = reinterpret_cast<CPrintInfo *>(this);

 protected:
  void OnDraw(CDC *) override {}
};

TEST(ViewContexts, ArePreparedByTheirViewAsTheyAreBuilt)
{
  HalfSizeView view;  // without a window
  GPClientDC client(&view);
  EXPECT_EQ(view.m_pPrinting, nullptr);
  GPPaintDC paint(&view);
  EXPECT_EQ(client.GetWindow(), &view);
  EXPECT_EQ(paint.GetWindow(), &view);
  RECT rect{10, -10, 17, 0x7FFFFFFF};
  for (CDC const * const dc : {static_cast<CDC *>(&client), static_cast<CDC *>(&paint)}) {
    RECT copy = rect;
    dc->LPtoDP(&copy);
    EXPECT_EQ(copy, (RECT{100, 200, 104, 200 - 1073741829}));
  }
  client.SetMapMode(MM_TEXT);  // a logical unit is one of the device
  POINT point{11, -9};
  client.LPtoDP(&point);
  EXPECT_EQ(point, (POINT{101, 201}));
  EXPECT_TRUE(client.IsKindOf(RUNTIME_CLASS(CClientDC)));
  EXPECT_TRUE(paint.IsKindOf(RUNTIME_CLASS(CPaintDC)));
}

}  // namespace
