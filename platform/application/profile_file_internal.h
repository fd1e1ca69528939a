// A profile file: sections, keys and texts in lines that people edit too.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/file/watched_text_internal.h"
#include "platform/name_pair_internal.h"

namespace zp {

// One line. An entry has its section, its key and its value, which is trimmed and still in its quotes.
struct ProfileLine {
  enum Kind { Other, Section, Entry };

  Kind kind = Other;
  std::string_view line;  // with its line end
  std::string_view section;
  std::string_view key;
  std::string_view value;
};

void WalkProfile(std::string_view text, std::function<void(ProfileLine const &)> const & visit);

class ProfileFile {
 public:
  explicit ProfileFile(std::string hostFile) : m_Text(std::move(hostFile), [this] { Index(); }) {}

  // The text under section and key, both without regard to the case of ASCII letters. Valid until the next call.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key);

  // Each replaces the whole file durably; false if that fails or if the form of the file can't hold the text.
  bool Set(std::string_view section, std::string_view key, std::string_view value);
  bool Remove(std::string_view section, std::string_view key);
  bool RemoveSection(std::string_view section);  // with those below it; false for the empty one

  // Every section, key and text in the file's order, each once. Raises CFileException for a file that can't be read.
  void List(std::function<void(std::string_view section, std::string_view key, std::string_view value)> const & visit);

 private:
  void Index();
  bool Change(std::function<std::string(std::string_view)> const & change);

  WatchedText m_Text;
  std::unordered_map<NamePair, std::string_view, HashNames, EqualNames> m_Values;  // section, key: views of the text
};

}  // namespace zp
