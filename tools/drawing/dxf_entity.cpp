// The groups of each kind of entity, and what an entity needs to be whole.

#include "tools/drawing/dxf_entity.h"

#include <array>
#include <span>

#include <fmt/format.h>

namespace {

// Where a group's number goes.
struct Field {
  int code;
  double DxfEntity::*place;
};
using E = DxfEntity;
constexpr Field lineFields[] = {{10, &E::x}, {20, &E::y}, {11, &E::endX}, {21, &E::endY}};
constexpr Field pointFields[] = {{10, &E::x}, {20, &E::y}};
constexpr Field circleFields[] = {{10, &E::x}, {20, &E::y}, {40, &E::radius}};
constexpr Field arcFields[] = {{10, &E::x}, {20, &E::y}, {40, &E::radius}, {50, &E::startAngle}, {51, &E::endAngle}};
constexpr Field textFields[] = {{10, &E::x}, {20, &E::y}, {40, &E::height}, {41, &E::widthFactor}};

// Texts that a kind has beside its layer.
struct TextField {
  int code;
  std::string DxfEntity::*place;
};
constexpr TextField lineTexts[] = {{6, &E::lineType}};
constexpr TextField textTexts[] = {{1, &E::text}};

struct KindRow {
  char const * name;
  std::span<Field const> numbers;
  std::span<TextField const> texts;
};
constexpr std::array<KindRow, dxfKinds> kindTable = {{{"LINE", lineFields, lineTexts},
                                                      {"POINT", pointFields, {}},
                                                      {"CIRCLE", circleFields, {}},
                                                      {"ARC", arcFields, {}},
                                                      {"TEXT", textFields, textTexts}}};

constexpr int layerCode = 8;
constexpr int colorCode = 62;

KindRow const & rowOf(DxfEntity const & entity)
{
  return kindTable[static_cast<size_t>(entity.kind)];
}

}  // namespace

char const * NameOf(DxfKind kind)
{
  return kindTable[static_cast<size_t>(kind)].name;
}

bool DxfEntityBuilder::Begin(std::string_view name)
{
  for (size_t kind = 0; kind < dxfKinds; ++kind) {
    if (name != kindTable[kind].name) continue;
    m_Entity = {};
    m_Entity.kind = static_cast<DxfKind>(kind);
    m_nSeen = 0;
    return true;
  }
  return false;
}

// True the first time.
bool DxfEntityBuilder::Note(int code)
{
  if (code < 0 || code > 63) return true;
  bool const first = !Has(code);
  m_nSeen |= uint64_t{1} << code;
  return first;
}

std::string DxfEntityBuilder::TakeNumber(DxfTag const & tag)
{
  for (Field const & field : rowOf(m_Entity).numbers) {
    if (field.code != tag.code) continue;
    if (DxfReal(tag.value, m_Entity.*field.place)) return "";
    return fmt::format("\"{}\" is no number for group {}", DxfShown(tag.value), tag.code);
  }
  return fmt::format("a {} of ours has no group {}", NameOf(m_Entity.kind), tag.code);
}

std::string DxfEntityBuilder::Take(DxfTag const & tag)
{
  if (!Note(tag.code)) return fmt::format("group {} stands twice in one {}", tag.code, NameOf(m_Entity.kind));
  if (tag.code == layerCode) {
    m_Entity.layer = tag.value;
    return "";
  }
  if (tag.code == colorCode) {
    if (DxfInteger(tag.value, m_Entity.color) && m_Entity.color >= 1 && m_Entity.color <= 255) return "";
    return fmt::format("\"{}\" is no colour number", DxfShown(tag.value));
  }
  for (TextField const & field : rowOf(m_Entity).texts) {
    if (field.code != tag.code) continue;
    m_Entity.*field.place = tag.value;
    return "";
  }
  return TakeNumber(tag);
}

std::string DxfEntityBuilder::Judge() const
{
  char const * const name = NameOf(m_Entity.kind);
  auto const missing = [&](int code) { return fmt::format("the {} has no group {}", name, code); };
  for (int const code : {layerCode, colorCode})
    if (!Has(code)) return missing(code);
  for (TextField const & field : rowOf(m_Entity).texts)
    if (!Has(field.code)) return missing(field.code);
  for (Field const & field : rowOf(m_Entity).numbers)
    if (!Has(field.code)) return missing(field.code);
  if (m_Entity.kind == DxfKind::Text && !(m_Entity.height > 0)) return "the TEXT's height isn't above 0";
  if (m_Entity.radius < 0) return fmt::format("the {}'s radius is below 0", name);
  if (m_Entity.widthFactor < 0) return "the TEXT's width factor is below 0";
  return "";
}
