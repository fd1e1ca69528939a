// Late-bound calls, and the scan of a worksheet's 5,000 cells, on the least server that there can be; beside the scan its limit,
// the same calls of Invoke alone. What a real server takes for its answers comes on top: the embedded one is there too.

#include <benchmark/benchmark.h>

#include <zpbase/platform/variants.h>
#include <zpbase/spreadsheet.h>

namespace {

constexpr int cellCount = 5'000;
constexpr DISPID memberValue = 0x0006;
constexpr DISPID memberRange = 0x00C5;

// A worksheet whose cells are all the number 1.5, and at once each of its ranges.
class Cells : public IDispatch {
 public:
  Cells() = default;
  Cells(Cells const &) = delete;
  Cells & operator=(Cells const &) = delete;
  virtual ~Cells() = default;

  HRESULT QueryInterface(IID const &, void **) override { return E_NOINTERFACE; }
  DWORD AddRef() override { return ++m_nReferences; }
  DWORD Release() override { return --m_nReferences; }
  HRESULT GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(IID const &, char16_t **, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
  HRESULT Invoke(DISPID id, IID const &, LCID, WORD, DISPPARAMS *, VARIANT * result, EXCEPINFO *, UINT *) override
  {
    if (id == memberRange) {
      AddRef();
      result->vt = VT_DISPATCH;
      result->pdispVal = this;
    } else {
      result->vt = VT_R8;
      result->dblVal = 1.5;
    }
    return S_OK;
  }

 private:
  DWORD m_nReferences = 1;
};

void perCell(benchmark::State & state)
{
  state.counters["cell"] = benchmark::Counter(static_cast<double>(state.iterations()) * cellCount,
                                              benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void scan(benchmark::State & state)
{
  Cells cells;
  GPExcelWorkSheet sheet("Sheet1");
  sheet.m_Link.AttachDispatch(&cells, FALSE);
  for (auto _ : state) {
    if (sheet.EnumRanges(&GPExcelWorkSheet::ProcessRanges, "Book1") != cellCount) state.SkipWithError("cells were missed");
  }
  perCell(state);
}
BENCHMARK(scan)->Unit(benchmark::kMillisecond);

// A worksheet of the embedded server with numbers and texts and gaps between them.
class Sample {
 public:
  Sample()
  {
    if (m_Application.CreateDispatch("Zephlow.Workbooks") == 0) return;
    GPWorkBooks books;
    books.AttachDispatch(m_Application.GetWorkBooks());
    m_Book.AttachDispatch(books.Add());
    m_Sheet.m_Link.AttachDispatch(m_Book.GetWorkSheet(COleVariant(1)));
    for (int cell = 0; cell < cellCount; ++cell) {
      GPCell const place(cell % 100, cell / 100 + 1);
      if (cell % 3 == 0) Put(place, COleVariant(cell / 7.0));
      if (cell % 3 == 1) Put(place, COleVariant("Text of a cell"));
    }
  }

  GPExcelWorkSheet m_Sheet{"Sample"};

 private:
  void Put(GPCell cell, COleVariant const & value)
  {
    GPRange range;
    range.AttachDispatch(m_Sheet.m_Link.GetCell(COleVariant(cell.GetName())));
    range.SetValue(value);
  }

  GPApplication m_Application;
  GPWorkBook m_Book;
};

void scanOfEmbeddedServer(benchmark::State & state)
{
  Sample sample;
  if (sample.m_Sheet.m_Link.HasOLELink() == 0) return state.SkipWithError("the embedded server is not built");
  for (auto _ : state) {
    if (sample.m_Sheet.EnumRanges(&GPExcelWorkSheet::ProcessRanges, "Book1") != cellCount)
      state.SkipWithError("cells were missed");
  }
  perCell(state);
}
BENCHMARK(scanOfEmbeddedServer)->Unit(benchmark::kMillisecond);

void invokeAlone(benchmark::State & state)
{
  Cells cells;
  COleVariant name("CV50");
  DISPPARAMS one{&name, nullptr, 1, 0};
  DISPPARAMS none{};
  for (auto _ : state) {
    for (int i = 0; i < cellCount; ++i) {
      COleVariant range;
      COleVariant value;
      cells.Invoke(memberRange, IID_NULL, 0, DISPATCH_PROPERTYGET, &one, &range, nullptr, nullptr);
      cells.Invoke(memberValue, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr);
      benchmark::DoNotOptimize(value.dblVal);
      range.Detach().pdispVal->Release();
    }
  }
  perCell(state);
}
BENCHMARK(invokeAlone)->Unit(benchmark::kMillisecond);

void readValue(benchmark::State & state)
{
  Cells cells;
  GPRange range;
  range.AttachDispatch(&cells, FALSE);
  for (auto _ : state) benchmark::DoNotOptimize(range.GetValue());
}
BENCHMARK(readValue);

}  // namespace

BENCHMARK_MAIN();
