// An object in JSON told member by member, so that no tree of all of it is in memory: laid out as DumpJson does with an indent
// of 2.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

class JsonPieces {
 public:
  using Pass = std::function<void(std::string_view)>;

  // pass is given the text in pieces.
  explicit JsonPieces(Pass pass) : m_pfnPass(std::move(pass)) {}

  void Member(std::string_view key, nlohmann::ordered_json const & value);

  // A member that is an array; its elements follow one at a time.
  void BeginList(std::string_view key);
  void Element(nlohmann::ordered_json const & value);
  void EndList();

  // The closing bracket, without a line end.
  void End();

 private:
  void Key(std::string_view key);
  void Value(nlohmann::ordered_json const & value, std::string_view indent);

  Pass m_pfnPass;
  std::string m_strText;
  bool m_bEmpty = true;
  bool m_bListEmpty = true;
};
