// The text of an element of shared strings or of a cell, joined from its pieces: <t> stands in it, or in runs <r>; how it is
// read, <rPh>, isn't part of it.
#pragma once

#include <string>
#include <string_view>

#include "servers/embedded/xml_reader.h"

namespace embedded {

class RichText {
 public:
  // For the text of the next element: whether its blanks are kept where nothing in it says otherwise.
  void Begin(bool preserve = false);

  // The calls of a handler of XML for what stands in the element. Characters counts on a text that some cell can hold, and throws
  // BookFailure for a longer one.
  bool Start(std::string_view name, XmlAttributes attributes);
  void Characters(std::string_view text);

  // False where it was the element itself that ended.
  bool End();

  // With its escapes taken out. Throws BookFailure where it is too long for a cell.
  std::string_view Get();

  // Whether there was more in it than its text.
  bool HasFormats() const { return m_bFormats; }

 private:
  std::string m_strText;   // of the pieces that are over, as they stand in the file
  std::string m_strPlain;  // without escapes
  size_t m_nPiece = 0;     // where the piece that is being read begins
  unsigned int m_nDepth = 0;
  bool m_bInPiece = false;
  bool m_bPreserves[3] = {};  // of the element, of a run or a piece, of a piece in a run
  bool m_bFormats = false;
};

// What an element says of the blanks in it, or what is so around it.
bool PreservesBlanks(XmlAttributes attributes, bool around);

// A cell's text from how it stands in the file; storage holds it where it has escapes. Throws BookFailure for one too long.
std::string_view TakeEscapesOut(std::string_view text, std::string & storage);

}  // namespace embedded
