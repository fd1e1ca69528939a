// Runs a fuzz target once over every file of the given folders or files: seeds as a test, without libFuzzer.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size);

namespace {

int replay(std::filesystem::path const & file)
{
  std::ifstream in(file, std::ios::binary);
  std::vector<char> const bytes{std::istreambuf_iterator<char>(in), {}};
  return LLVMFuzzerTestOneInput(reinterpret_cast<uint8_t const *>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char ** argv)
{
  int replayed = 0;
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      replay(argv[i]);
      ++replayed;
      continue;
    }
    for (auto const & entry : std::filesystem::directory_iterator(argv[i])) {
      replay(entry.path());
      ++replayed;
    }
  }
  std::printf("%d inputs replayed\n", replayed);
  return replayed > 0 ? 0 : 1;
}
