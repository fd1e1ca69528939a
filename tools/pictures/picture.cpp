// Pictures on Cairo's surfaces in memory.

#include "tools/pictures/picture.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include <cairo/cairo-svg.h>
#include <cairo/cairo.h>

#include "tools/program.h"

#ifdef __has_feature
#if __has_feature(address_sanitizer)
#define ZP_LOOKS_FOR_LEAKS
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(ZP_LOOKS_FOR_LEAKS)
// The font library keeps its tables until the process ends.
extern "C" char const * __lsan_default_suppressions();
extern "C" char const * __lsan_default_suppressions()
{
  return "leak:libfontconfig";
}
#endif

namespace {

constexpr double capitalShare = 0.73;  // height of capitals in a font of size 1

double sideOf(double length)
{
  return std::isfinite(length) ? std::clamp(std::ceil(length), 1.0, Picture::largestSide) : 1.0;
}

cairo_status_t passOn(void * outlet, unsigned char const * data, unsigned int length)
{
  auto & [pass, failure] = *static_cast<Picture::Outlet *>(outlet);
  try {
    pass({reinterpret_cast<char const *>(data), length});
    return CAIRO_STATUS_SUCCESS;
  } catch (...) {
    failure = std::current_exception();
    return CAIRO_STATUS_WRITE_ERROR;
  }
}

cairo_surface_t * newSurface(PictureFormat format, double width, double height, Picture::Outlet & outlet)
{
  if (format == PictureFormat::Png)
    return cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width), static_cast<int>(height));
  cairo_surface_t * const surface = cairo_svg_surface_create_for_stream(passOn, &outlet, width, height);
  cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PX);
  return surface;
}

double radians(double degrees)
{
  return degrees * std::numbers::pi / 180;
}

// Whether a text is well-formed enough for Cairo: each leading byte with the bytes that it announces.
bool isUtf8(std::string const & text)
{
  int following = 0;
  for (char const c : text) {
    auto const byte = static_cast<unsigned char>(c);
    bool const continues = (byte & 0xC0) == 0x80;
    if (continues != (following > 0)) return false;
    if (continues)
      --following;
    else if (byte >= 0xF5 || byte == 0xC0 || byte == 0xC1)
      return false;
    else
      following = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
  }
  return following == 0;
}

// What the library can't take, such as a file's name in another code, is shown with question marks.
std::string shownText(std::string text)
{
  bool const known = isUtf8(text);
  for (char & c : text) {
    if (static_cast<unsigned char>(c) < 0x20) c = ' ';
    if (!known && static_cast<unsigned char>(c) >= 0x80) c = '?';
  }
  return text;
}

// The width in points of each byte's character is asked of the font, so that it fills its room.
double advanceOf(cairo_t * context)
{
  cairo_text_extents_t extents;
  cairo_text_extents(context, "M", &extents);
  return extents.x_advance;
}

}  // namespace

void Picture::Release::operator()(_cairo * context) const
{
  cairo_destroy(context);
}

void Picture::Release::operator()(_cairo_surface * surface) const
{
  cairo_surface_destroy(surface);
}

Picture::Picture(PictureFormat format, double width, double height, Pass pass)
    : m_Format(format),
      m_Outlet{std::move(pass)},
      m_Surface(newSurface(format, sideOf(width), sideOf(height), m_Outlet)),
      m_Context(cairo_create(m_Surface.get()))
{
  cairo_set_source_rgb(m_Context.get(), 1, 1, 1);
  cairo_paint(m_Context.get());
  cairo_set_line_cap(m_Context.get(), CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(m_Context.get(), CAIRO_LINE_JOIN_ROUND);
}

void Picture::Choose(Rgb color)
{
  cairo_set_source_rgb(m_Context.get(), (color >> 16 & 0xFF) / 255.0, (color >> 8 & 0xFF) / 255.0, (color & 0xFF) / 255.0);
}

void Picture::FillRectangle(double x, double y, double width, double height, Rgb color)
{
  AddRectangle(x, y, width, height);
  Fill(color);
}

void Picture::AddRectangle(double x, double y, double width, double height)
{
  cairo_rectangle(m_Context.get(), x, y, width, height);
}

void Picture::Fill(Rgb color)
{
  Choose(color);
  cairo_fill(m_Context.get());
}

void Picture::ChooseFont(double size)
{
  cairo_select_font_face(m_Context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(m_Context.get(), size);
}

double Picture::TextWidth(std::string const & text, double size)
{
  ChooseFont(size);
  cairo_text_extents_t extents = {};
  cairo_text_extents(m_Context.get(), shownText(text).c_str(), &extents);
  return extents.x_advance;
}

void Picture::DrawText(double x, double y, std::string const & text, double size, Rgb color, TextSide side)
{
  double const width = side == TextSide::Left ? 0 : TextWidth(text, size);
  Choose(color);
  ChooseFont(size);
  cairo_move_to(m_Context.get(), side == TextSide::Middle ? x - width / 2 : x - width, y);
  cairo_show_text(m_Context.get(), shownText(text).c_str());
  cairo_new_path(m_Context.get());
}

void Picture::DrawSpacedText(double x, double y, std::string const & text, double capitalHeight, double room, Rgb color)
{
  constexpr double smallest = 1e-3;  // below it a font has no matrix that can be turned round
  if (!(capitalHeight > smallest && room > smallest)) return;
  Choose(color);
  cairo_t * const context = m_Context.get();
  double const size = capitalHeight / capitalShare;
  cairo_select_font_face(context, "monospace", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(context, 100);
  double const width = 100 * room / std::max(advanceOf(context), 1.0);
  cairo_matrix_t const matrix = {width, 0, 0, size, 0, 0};
  cairo_set_font_matrix(context, &matrix);
  cairo_move_to(context, x, y);
  cairo_show_text(context, shownText(text).c_str());
  cairo_new_path(context);
}

void Picture::MoveTo(double x, double y)
{
  cairo_move_to(m_Context.get(), x, y);
}

void Picture::LineTo(double x, double y)
{
  cairo_line_to(m_Context.get(), x, y);
}

void Picture::AddArc(double x, double y, double radius, double startAngle, double endAngle)
{
  cairo_new_sub_path(m_Context.get());
  cairo_arc_negative(m_Context.get(), x, y, radius, -radians(startAngle), -radians(endAngle));
}

void Picture::Stroke(double width, Rgb color, std::span<double const> dashes)
{
  Choose(color);
  cairo_set_dash(m_Context.get(), dashes.data(), static_cast<int>(dashes.size()), 0);
  cairo_set_line_width(m_Context.get(), width);
  cairo_stroke(m_Context.get());
}

void Picture::RequireSuccess(int status) const
{
  if (m_Outlet.failure) std::rethrow_exception(m_Outlet.failure);
  if (status == CAIRO_STATUS_SUCCESS) return;
  throw Failure(std::string("the picture can't be drawn: ") + cairo_status_to_string(static_cast<cairo_status_t>(status)));
}

void Picture::Finish()
{
  RequireSuccess(cairo_status(m_Context.get()));
  if (m_Format == PictureFormat::Png) RequireSuccess(cairo_surface_write_to_png_stream(m_Surface.get(), passOn, &m_Outlet));
  cairo_surface_finish(m_Surface.get());
  RequireSuccess(cairo_surface_status(m_Surface.get()));
}
