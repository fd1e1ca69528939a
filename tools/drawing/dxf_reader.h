// A DXF drawing as zp dxf writes it, read back: its line types and its entities one after the other, with everything that is
// broken in it on the way. Any bytes are safe to read, and memory doesn't grow with them.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/drawing/dxf_entity.h"
#include "tools/drawing/dxf_tags.h"

class DxfReader {
 public:
  using Visitor = std::function<void(DxfEntity const &)>;

  explicit DxfReader(DxfTagReader::Source source) : m_Tags(std::move(source), m_Problems) {}
  DxfReader(DxfReader const &) = delete;
  DxfReader & operator=(DxfReader const &) = delete;

  // Reads the whole file once and shows each entity that is whole; one that isn't is told and left out.
  void Read(Visitor const & visit);

  DxfProblems const & GetProblems() const { return m_Problems; }
  unsigned long long GetCount(DxfKind kind) const { return m_Counts[static_cast<size_t>(kind)]; }
  unsigned long long GetEntities() const;
  unsigned long long GetLines() const { return m_Tags.GetLine(); }  // of the file

  // The frame that the header tells: left, bottom, right, top; all 0 for none.
  std::array<double, 4> const & GetFrame() const { return m_Frame; }

  // Lengths drawn (above 0), left out (below 0) and points (0) of a line type, in drawing units; none for a whole line.
  std::vector<double> GetPattern(std::string const & lineType) const;

 private:
  using Names = std::set<std::string, std::less<>>;

  void Advance() { m_bMore = m_bMore && m_Tags.Next(m_Tag); }
  bool AtStart(std::string_view name) const { return m_bMore && m_Tag.code == 0 && m_Tag.value == name; }
  void Tell(std::string what) { m_Problems.Add(m_Tag.line, std::move(what)); }
  bool AddName(Names & names, std::string_view name, char const * kind);
  void SkipGroups();
  std::string ReadName(char const * what);
  void ReadSection(Visitor const & visit);
  void ReadHeader();
  void ReadTables();
  void ReadTable();
  void ReadTableEntry();
  void ReadLineType();
  void ReadEntities(Visitor const & visit);
  void ReadEntity(Visitor const & visit);
  void ReadEnd();

  DxfProblems m_Problems;
  DxfTagReader m_Tags;
  DxfTag m_Tag;
  bool m_bMore = true;
  double m_dLineTypeScale = 1;
  std::array<double, 4> m_Frame = {};
  std::map<std::string, std::vector<double>, std::less<>> m_LineTypes;
  Names m_Layers;
  Names m_Sections;
  DxfEntityBuilder m_Builder;
  std::array<unsigned long long, dxfKinds> m_Counts = {};
};
