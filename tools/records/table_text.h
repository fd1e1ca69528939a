// The bytes of a table on their way into UTF-8, and its delimiter: what spreadsheet programs and editors write.
#pragma once

#include <string>
#include <string_view>

// A mark tells UTF-8 and UTF-16; without one the first character beyond ASCII tells whether a table is in UTF-8 or in
// Windows-1252.
class TableText {
 public:
  // name is the file's, for failures.
  explicit TableText(std::string const & name) : m_Name(name) {}

  // What the file's next bytes give in UTF-8, for the time until the next call; no bytes are its end. UTF-8 itself isn't looked
  // at. Raises Failure for UTF-16 that has no mark or ends within a character.
  std::string_view Take(std::string_view bytes);

 private:
  enum class Form { Begin, Ascii, Utf8, Windows, WideLittle, WideBig };

  size_t TakeMark(std::string_view bytes);
  size_t TakeAscii(std::string_view bytes, bool isEnd);
  size_t TakeWide(std::string_view bytes, bool isEnd);

  std::string const & m_Name;
  Form m_Form = Form::Begin;
  std::string m_Left;  // of the file's bytes, those that the next ones complete
  std::string m_Utf8;
};

// Of comma, semicolon and tab the one that stands most often outside of quotes in a table's first line; the
// comma only where it stands more often than the others, or where none stands.
char DelimiterOf(std::string_view head);

// The number with a point where it has its one comma; any other text as it is.
std::string WithDecimalPoint(std::string text);
