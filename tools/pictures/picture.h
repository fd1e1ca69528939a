// A picture that is drawn once, as SVG or as PNG. Places and sizes are in points, of which a PNG has one a pixel; x runs to the
// right, y downwards, and the ground is white. This room alone knows the drawing library.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

struct _cairo;
struct _cairo_surface;

enum class PictureFormat { Svg, Png };

using Rgb = unsigned int;  // 0xRRGGBB

enum class TextSide { Left, Middle, Right };  // the part of a text that stands at its place

class Picture {
 public:
  static constexpr double largestSide = 10000;  // of either format

  using Pass = std::function<void(std::string_view piece)>;

  // The way out of the drawing library, which no exception may take.
  struct Outlet {
    Pass pass;
    std::exception_ptr failure = nullptr;
  };

  // Sides under 1 and over largestSide are brought into these bounds. The file's bytes go to pass, at the latest with Finish.
  Picture(PictureFormat format, double width, double height, Pass pass);
  Picture(Picture const &) = delete;
  Picture & operator=(Picture const &) = delete;

  void FillRectangle(double x, double y, double width, double height, Rgb color);

  // Many rectangles of one colour, which don't overlap, take the least memory together: they are added, and then filled.
  void AddRectangle(double x, double y, double width, double height);
  void Fill(Rgb color);

  // One line of UTF-8 on the baseline y, in a font of this size.
  void DrawText(double x, double y, std::string const & text, double size, Rgb color, TextSide side = TextSide::Left);

  // How wide that text is.
  double TextWidth(std::string const & text, double size);

  // The same with capitals of this height and each character given the same room to the right.
  void DrawSpacedText(double x, double y, std::string const & text, double capitalHeight, double room, Rgb color);

  // A path is put together of lines and arcs, and drawn and forgotten by Stroke, which comes before anything else is drawn. An
  // arc starts a piece of its own; its angles are in degrees, counted against the clock from the right, as its sweep goes.
  void MoveTo(double x, double y);
  void LineTo(double x, double y);
  void AddArc(double x, double y, double radius, double startAngle, double endAngle);
  void Stroke(double width, Rgb color, std::span<double const> dashes = {});  // lengths drawn and left out in turn

  // Nothing can be drawn after it. Raises Failure where the picture couldn't be made, or what pass has raised.
  void Finish();

 private:
  void Choose(Rgb color);
  void ChooseFont(double size);
  void RequireSuccess(int status) const;

  struct Release {
    void operator()(_cairo * context) const;
    void operator()(_cairo_surface * surface) const;
  };

  PictureFormat m_Format;
  Outlet m_Outlet;  // before the surface, which writes to it to the last
  std::unique_ptr<_cairo_surface, Release> m_Surface;
  std::unique_ptr<_cairo, Release> m_Context;
};
