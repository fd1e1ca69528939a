// What was read back of a drawing, for people and machines, and its pictures.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/drawing/dxf_picture.h"
#include "tools/drawing/dxf_reader.h"
#include "tools/output_file.h"

// The bytes of a file, "-" for standard input, which can be opened once. Raises Failure where it can't be opened or read.
DxfOpener OpenerOf(std::string const & file);

// Reads a drawing and keeps what a report or a picture needs of it.
class DxfInspection {
 public:
  explicit DxfInspection(std::string const & file);

  bool IsSound() const { return m_Reader.GetProblems().GetCount() == 0; }
  DxfCover const & GetCover() const { return m_Cover; }
  std::string Counts() const;  // "3 lines, 1 text"
  nlohmann::json CountsAsJson() const;
  void PrintProblems(std::string const & name) const;
  nlohmann::json ProblemsAsJson() const;
  unsigned long long GetProblemCount() const { return m_Reader.GetProblems().GetCount(); }
  unsigned long long GetLines() const { return m_Reader.GetLines(); }

 private:
  DxfReader m_Reader;
  DxfCover m_Cover;
};

// The pictures that are asked for: each is written whole before one takes its place.
struct PictureNames {
  std::string svg;
  std::string png;
};
class DxfPictures {
 public:
  // Draws the file.
  DxfPictures(std::string const & file, DxfCover const & cover, PictureNames const & names);
  void Replace();

 private:
  void Draw(std::string const & file, DxfCover const & cover, PictureFormat format, std::string const & name);

  std::vector<std::unique_ptr<OutputFile>> m_Outputs;
};
