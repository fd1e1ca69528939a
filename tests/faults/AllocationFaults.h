// Makes the n-th allocation fail, in the one test program that replaces operator new.
#pragma once

// While it lives allocations are counted, and the n-th raises std::bad_alloc, with forGood those behind it too; 0 only counts.
class AllocationFaults {
 public:
  AllocationFaults(long n, bool forGood);
  ~AllocationFaults();
  AllocationFaults(AllocationFaults const &) = delete;
  AllocationFaults & operator=(AllocationFaults const &) = delete;

  static long GetCount();    // allocations while the last one lived, of which none was to fail
  static long LiveBlocks();  // allocated and not released, in all
};
