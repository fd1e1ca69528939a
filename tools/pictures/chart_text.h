// How wide the texts of a picture are.
#pragma once

#include <memory>
#include <string>

struct _cairo;

class TextRuler {
 public:
  // For texts that Picture draws in this size.
  explicit TextRuler(double size);
  ~TextRuler();
  TextRuler(TextRuler const &) = delete;
  TextRuler & operator=(TextRuler const &) = delete;

  // In points, of one line of UTF-8.
  double WidthOf(std::string const & text) const;

 private:
  struct Release {
    void operator()(_cairo * context) const;
  };

  std::unique_ptr<_cairo, Release> m_Context;
};
