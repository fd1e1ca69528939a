// What the benchmarks share: a scratch folder and a store's worth of records in a fixed random order.

#pragma once

#include <stdlib.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace bench {

// A folder that goes with the object; on the file system that TMPDIR names.
class Scratch {
 public:
  Scratch()
  {
    std::string name = (std::filesystem::temp_directory_path() / "zpbench-XXXXXX").string();
    m_Path = mkdtemp(name.data());
  }
  ~Scratch() { std::filesystem::remove_all(m_Path); }
  Scratch(Scratch const &) = delete;
  Scratch & operator=(Scratch const &) = delete;

  std::string File(char const * name) const { return (m_Path / name).string(); }

 private:
  std::filesystem::path m_Path;
};

// Records 0 to count - 1 of 20 to 2,000 bytes, and the order in which they are visited.
struct Records {
  explicit Records(int count) : order(static_cast<size_t>(count)), lengths(order.size()), otherLengths(order.size())
  {
    std::mt19937 random(20261124);
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random);
    for (auto * const list : {&lengths, &otherLengths})
      for (unsigned int & length : *list) length = 20 + static_cast<unsigned int>(random() % 1981);
    bytes.resize(4096);
    for (char & byte : bytes) byte = static_cast<char>(random());
  }

  char const * Data(int id) const { return bytes.data() + id % 2048; }
  unsigned int Length(int id) const { return lengths[static_cast<size_t>(id)]; }
  unsigned int OtherLength(int id) const { return otherLengths[static_cast<size_t>(id)]; }

  std::vector<int> order;
  std::vector<unsigned int> lengths;
  std::vector<unsigned int> otherLengths;
  std::vector<char> bytes;
};

}  // namespace bench
