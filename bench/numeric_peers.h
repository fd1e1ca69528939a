// What the numeric containers are measured beside: the plain loops, built at -O2, and the peers, built for the machine at hand.
// All work on the same arrays, row-major, and each has its file, since flags count.
#pragma once

#include <cstddef>

namespace bench {

// One way to do the work. A null function is one that the way lacks.
struct NumericWay {
  char const * name;
  void (*product)(double * out, double const * a, double const * b, std::size_t n);       // n x n matrices
  void (*matrixVector)(double * out, double const * m, double const * v, std::size_t n);  // n x n
  void (*vectorMatrix)(double * out, double const * v, double const * m, std::size_t n);  // n x n
  void (*add)(double * a, double const * b, std::size_t n);                               // a += b
  void (*multiply)(double * a, double const * b, std::size_t n);                          // element by element
  void (*divide)(double * a, double const * b, std::size_t n);
  void (*scale)(double * a, double by, std::size_t n);
  double (*sum)(double const * a, std::size_t n);
  double (*dotProduct)(double const * a, double const * b, std::size_t n);
  void (*transpose)(double * out, double const * m, std::size_t n);  // n x n
};

extern NumericWay const plainLoops;
#if defined(ZP_HAVE_EIGEN)
extern NumericWay const eigen;
#endif
#if defined(ZP_HAVE_OPENBLAS)
extern NumericWay const openBlas;  // on one thread
void useOneThread();
#endif

}  // namespace bench
