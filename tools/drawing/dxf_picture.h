// A DXF drawing as people see it, made from what stands in the file.
#pragma once

#include <functional>
#include <string>

#include "tools/drawing/dxf_reader.h"
#include "tools/pictures/picture.h"

// How a drawing's bytes are read from their begin, as often as it is called.
using DxfOpener = std::function<DxfTagReader::Source()>;

// The part of the plane that a drawing's entities cover.
class DxfCover {
 public:
  void Add(DxfEntity const & entity);

  // Takes the frame in as well, unless it is so large that the entities would be lost in it.
  void AddFrame(std::array<double, 4> const & frame);
  bool IsEmpty() const { return m_dLeft > m_dRight; }
  double Left() const { return m_dLeft; }
  double Top() const { return m_dTop; }
  double Width() const { return IsEmpty() ? 0 : m_dRight - m_dLeft; }
  double Height() const { return IsEmpty() ? 0 : m_dTop - m_dBottom; }

 private:
  void AddPoint(double x, double y);
  void AddArc(DxfEntity const & entity);

  double m_dLeft = 1;
  double m_dRight = 0;
  double m_dBottom = 0;
  double m_dTop = 0;
};

// Gives pass the bytes of a picture: the covered part, with its larger side of a fixed length.
void DrawDxf(DxfOpener const & open, DxfCover const & cover, PictureFormat format, Picture::Pass pass);
