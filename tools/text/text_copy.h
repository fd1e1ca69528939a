// Copies of text files in the form that the library's readers take: lines that end in CR LF.
#pragma once

#include <string>
#include <string_view>

// The LFs without a CR, and the text in which each has one.
size_t CountLoneLineFeeds(std::string_view bytes);
std::string WithLineEnds(std::string_view bytes, size_t lone);

// A file with a name of its own for as long as this lives. Raises Failure if it can't be written.
class TemporaryTextFile {
 public:
  explicit TemporaryTextFile(std::string_view content);
  ~TemporaryTextFile();
  TemporaryTextFile(TemporaryTextFile const &) = delete;
  TemporaryTextFile & operator=(TemporaryTextFile const &) = delete;

  std::string const & Name() const { return m_strName; }

 private:
  std::string m_strName;
};
