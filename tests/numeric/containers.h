// What the numeric tests share: containers from lists, their elements as lists, and random numbers of all magnitudes.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <random>
#include <vector>

#include <zpbase/numeric.h>

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline double const quietNan = std::numeric_limits<double>::quiet_NaN();

inline GPVector vectorOf(std::initializer_list<double> values)
{
  return GPVector(static_cast<int>(values.size()), values.begin());
}

inline GPIntVector intsOf(std::initializer_list<int> values)
{
  return GPIntVector(static_cast<int>(values.size()), values.begin());
}

inline GPBOOLVector truthsOf(std::initializer_list<int> values)
{
  return GPBOOLVector(static_cast<int>(values.size()), values.begin());
}

template <class Container>
auto elementsOf(Container const & container)
{
  auto const * const first = container.ArrayPtr();
  return std::vector(first, first + container.GetSize());
}

// The elements of several, one behind the other.
template <class Container>
auto elementsOf(std::initializer_list<Container> containers)
{
  auto all = elementsOf(Container());
  for (Container const & container : containers) {
    for (auto element : elementsOf(container)) all.push_back(element);
  }
  return all;
}

inline std::vector<double> elementsOf(GPMatrix const & matrix)
{
  return {matrix.ArrayPtr(), matrix.ArrayPtr() + matrix.GetRows() * matrix.GetCols()};
}

// Numbers of both signs between 1e-8 and 1e8, so that every order of a sum rounds in its own way.
inline std::vector<double> randomNumbers(std::size_t count, unsigned int seed = 1)
{
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> exponent(-8.0, 8.0);
  std::vector<double> numbers(count);
  for (double & number : numbers) number = (random() % 2 ? 1.0 : -1.0) * std::pow(10.0, exponent(random));
  return numbers;
}

inline GPVector randomVector(int size, unsigned int seed = 1)
{
  return GPVector(size, randomNumbers(static_cast<std::size_t>(size), seed).data());
}

inline GPMatrix randomMatrix(int rows, int cols, unsigned int seed = 1)
{
  return GPMatrix(rows, cols, randomNumbers(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), seed).data());
}
