// Case of wide characters.

#include <zpbase/platform/encoding.h>

#include <algorithm>
#include <array>

namespace zp {
namespace {

struct CaseRange {
  int first;
  int last;
  int distance;  // to the upper case
  int step;      // 2 where upper and lower case take turns
};

// In ascending order. A final sigma is a sigma; the dotless i stays, since its upper case is another letter's too.
constexpr std::array caseRanges = {
    CaseRange{'a', 'z', -32, 1},      CaseRange{0xE0, 0xF6, -32, 1},     CaseRange{0xF8, 0xFE, -32, 1},
    CaseRange{0xFF, 0xFF, 121, 1},    CaseRange{0x101, 0x12F, -1, 2},    CaseRange{0x133, 0x137, -1, 2},
    CaseRange{0x13A, 0x148, -1, 2},   CaseRange{0x14B, 0x177, -1, 2},    CaseRange{0x17A, 0x17E, -1, 2},
    CaseRange{0x1A1, 0x1A5, -1, 2},   CaseRange{0x1B0, 0x1B0, -1, 1},    CaseRange{0x1CE, 0x1DC, -1, 2},
    CaseRange{0x1DF, 0x1EF, -1, 2},   CaseRange{0x1F9, 0x21F, -1, 2},    CaseRange{0x223, 0x233, -1, 2},
    CaseRange{0x3AC, 0x3AC, -38, 1},  CaseRange{0x3AD, 0x3AF, -37, 1},   CaseRange{0x3B1, 0x3C1, -32, 1},
    CaseRange{0x3C2, 0x3C2, -31, 1},  CaseRange{0x3C3, 0x3CB, -32, 1},   CaseRange{0x3CC, 0x3CC, -64, 1},
    CaseRange{0x3CD, 0x3CE, -63, 1},  CaseRange{0x430, 0x44F, -32, 1},   CaseRange{0x450, 0x45F, -80, 1},
    CaseRange{0x461, 0x481, -1, 2},   CaseRange{0x48B, 0x4BF, -1, 2},    CaseRange{0x4C2, 0x4CE, -1, 2},
    CaseRange{0x4D1, 0x52F, -1, 2},   CaseRange{0x561, 0x586, -48, 1},   CaseRange{0x1E01, 0x1E95, -1, 2},
    CaseRange{0x1EA1, 0x1EFF, -1, 2}, CaseRange{0xFF41, 0xFF5A, -32, 1},
};

char16_t upperCase(char16_t c)
{
  auto const * const range = std::ranges::lower_bound(caseRanges, static_cast<int>(c), {}, &CaseRange::last);
  bool const isLower = range != caseRanges.end() && c >= range->first && (c - range->first) % range->step == 0;
  return isLower ? static_cast<char16_t>(c + range->distance) : c;
}

}  // namespace

std::u16string FoldCase(std::u16string_view wide)
{
  std::u16string folded(wide);
  std::ranges::transform(folded, folded.begin(), upperCase);
  return folded;
}

}  // namespace zp
