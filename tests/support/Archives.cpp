#include "tests/support/Archives.h"
#include "tests/support/Raised.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// A memory file that keeps its memory to itself.
class ShutMemFile : public CMemFile {
 public:
  using CMemFile::CMemFile;
  UINT GetBufferPtr(UINT, UINT, void **, void **) override { return 0; }
};

constexpr int smallBuffer = 128;

template <class File>
std::string storedIn(ArchiveStep const & write)
{
  File file;
  CArchive ar(&file, CArchive::store, smallBuffer);
  write(ar);
  ar.Close();
  std::string bytes(static_cast<size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

template <class File>
int causeOfLoadingFrom(std::string_view bytes, ArchiveStep const & read)
{
  std::vector<BYTE> block(bytes.begin(), bytes.end());
  File file(block.data(), static_cast<UINT>(block.size()));
  return CodeOf<CArchiveException>([&] {
    CArchive ar(&file, CArchive::load, smallBuffer);
    read(ar);
  });
}

}  // namespace

std::string Stored(ArchiveStep const & write)
{
  std::string const direct = storedIn<CMemFile>(write);
  EXPECT_TRUE(storedIn<ShutMemFile>(write) == direct) << "buffered and direct archives differ";
  return direct;
}

int CauseOfStoring(ArchiveStep const & write)
{
  return CodeOf<CArchiveException>([&] { storedIn<CMemFile>(write); });
}

int CauseOfLoading(std::string_view bytes, ArchiveStep const & read)
{
  int const direct = causeOfLoadingFrom<CMemFile>(bytes, read);
  EXPECT_EQ(causeOfLoadingFrom<ShutMemFile>(bytes, read), direct) << "buffered and direct archives differ";
  return direct;
}

void LoadDamaged(std::string const & bytes, ArchiveStep const & read)
{
  for (size_t length = 0; length < bytes.size(); ++length)
    EXPECT_EQ(CauseOfLoading(std::string_view(bytes).substr(0, length), read), CArchiveException::endOfFile) << length;
  for (size_t place = 0; place < bytes.size(); ++place)
    for (int const change : {0x01, 0x10, 0x7F, 0x80, 0xFF}) {
      std::string damaged = bytes;
      damaged[place] = static_cast<char>(damaged[place] ^ change);
      CauseOfLoading(damaged, read);
    }
}
