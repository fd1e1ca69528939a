// JSON written as text, value by value, without a tree of it in memory.
#pragma once

#include <functional>
#include <string>
#include <string_view>

// Appends the shortest JSON to a text. The caller keeps the grammar: a key in front of each value of an object.
class JsonText {
 public:
  explicit JsonText(std::string & text, bool withNotes = true) : m_Text(text), m_bNotes(withNotes) {}

  bool HasNotes() const { return m_bNotes; }  // whether members are wanted that only people read

  void BeginObject() { Begin('{'); }
  void EndObject() { End('}'); }
  void BeginArray() { Begin('['); }
  void EndArray() { End(']'); }
  JsonText & Key(std::string_view name);  // of letters and digits
  void Null() { Value("null"); }
  void Whole(long long number);
  void Text(std::string_view utf8);

  // With the fewest digits that give the number back; one that isn't finite as the text that tells it.
  void Real(float number);
  void Real(double number);

  // A value that is JSON already.
  void Value(std::string_view json);

 private:
  void Begin(char bracket);
  void End(char bracket);
  void Separate();
  void Quote(std::string_view utf8);
  template <class Number>
  void PutReal(Number number);

  std::string & m_Text;
  bool m_bNotes;
  bool m_bComma = false;
};

// Takes the shortest JSON in pieces and passes it on with line ends and step blanks for each level.
class JsonIndenter {
 public:
  JsonIndenter(size_t step, std::function<void(std::string_view)> pass) : m_nStep(step), m_pfnPass(std::move(pass)) {}

  void Write(std::string_view json);
  void Finish();  // passes the rest, with a line end

 private:
  void NewLine();
  size_t CopyText(std::string_view json, size_t at);

  size_t m_nStep;
  std::function<void(std::string_view)> m_pfnPass;
  std::string m_Out;
  size_t m_nLevel = 0;
  bool m_bInText = false;
  bool m_bEscaped = false;
  bool m_bOpened = false;  // behind a bracket that may turn out to hold nothing
};
