// Widths of texts, asked of the fonts.

#include "tools/pictures/chart_text.h"

#include <cairo/cairo.h>

void TextRuler::Release::operator()(_cairo * context) const
{
  cairo_destroy(context);
}

TextRuler::TextRuler(double size)
{
  cairo_surface_t * const surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
  m_Context.reset(cairo_create(surface));
  cairo_surface_destroy(surface);  // the context holds it
  cairo_select_font_face(m_Context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(m_Context.get(), size);
}

TextRuler::~TextRuler() = default;

double TextRuler::WidthOf(std::string const & text) const
{
  cairo_text_extents_t extents = {};
  cairo_text_extents(m_Context.get(), text.c_str(), &extents);
  return extents.x_advance;
}
