// JSON written as text, value by value, without a tree of it in memory.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

// Appends JSON to a text. The caller keeps the grammar: a key in front of each value of an object.
class JsonText {
 public:
  using Pass = std::function<void(std::string_view)>;

  static constexpr int noLines = -1;

  explicit JsonText(std::string & text, bool withNotes = true) : m_Text(text), m_bNotes(withNotes), m_nStep(noLines) {}

  // With notes, and each level moved in by step blanks. A text that has grown long is passed on and emptied, since lines of a
  // deep object take many times its bytes; the caller passes on what it holds in the end.
  JsonText(std::string & text, int step, Pass pass) : m_Text(text), m_bNotes(true), m_nStep(step), m_Pass(std::move(pass)) {}

  bool HasNotes() const { return m_bNotes; }  // whether members are wanted that only people read

  JsonText & BeginObject() { return Begin('{'); }
  void EndObject() { End('}'); }
  JsonText & BeginArray() { return Begin('['); }
  void EndArray() { End(']'); }
  JsonText & Key(std::string_view name);  // of letters and digits
  void Null();
  void Whole(long long number);
  void Text(std::string_view utf8);

  // With the fewest digits that give the number back; one that isn't finite as the text that tells it.
  void Real(float number);
  void Real(double number);

  // A text of pairs of hex digits.
  void Hex(std::string_view bytes);

 private:
  JsonText & Begin(char bracket);
  void End(char bracket);
  void PassOn();
  char * Room(size_t count);
  void Put(std::string_view value);
  template <class Number>
  void PutReal(Number number);

  enum class Place { Opened, Key, Value };  // behind an opening bracket, a key or a value

  std::string & m_Text;
  bool m_bNotes;
  int m_nStep;  // or noLines: all of it stands on one line without a blank
  Pass m_Pass;
  size_t m_nLevel = 0;
  Place m_Place = Place::Key;
};
