// Where chains of block headers begin in a record file whose headers don't lead to its end.
#pragma once

#include <span>
#include <vector>

#include <zpbase/store.h>

// For each place of a file how much speaks for the blocks that follow each other from there, and of the places from each on the
// one for which most does. What lies two bytes beside a chain of equal blocks is a chain as well, but most blocks are full, some
// begin like objects, and the last one ends with the file. Memory goes by what isn't zeros, for no block begins in a hole.
class ChainSearch {
 public:
  // Of a file of that length, at most zp::maxBlockPosition. Raises what the reading raises.
  ChainSearch(CFile const & file, unsigned long long length);

  // The begin of the best chain from start on, or the file's length; that also where the file has become shorter meanwhile.
  unsigned long long Find(unsigned long long start) const;

  // How much speaks for the chain from there; 0 where no block begins.
  DWORD WeightAt(unsigned long long position) const;

 private:
  // Neighbouring pages that aren't all zeros, and the page in front of them, where a header may begin.
  struct Stretch {
    unsigned long long position;
    size_t first;  // of its bytes among those of all
    size_t size;

    unsigned long long End() const { return position + size; }
    bool Has(unsigned long long place) const { return place >= position && place < End(); }
  };

  void Read(CFile const & file);
  void TakePage(std::span<BYTE const> page, unsigned long long position);
  void Append(std::span<BYTE const> bytes);
  void Weigh();
  DWORD WeighFrom(Stretch const & stretch, size_t at) const;
  DWORD WeightIn(Stretch const & stretch, unsigned long long position) const;

  // The first one that ends behind a position.
  std::vector<Stretch>::const_iterator StretchAt(unsigned long long position) const;

  unsigned long long m_nLength;
  unsigned long long m_nRead = 0;
  std::vector<Stretch> m_Stretches;  // in ascending position
  std::vector<BYTE> m_Bytes;         // of all stretches, and for each of them:
  std::vector<DWORD> m_Weights;
  std::vector<DWORD> m_Best;
};
