// Sorting, comparing, cloning and deleting of elements, for array and list alike.

#include "foundation/foundation_internal.h"

#include <algorithm>
#include <functional>

namespace {

using Elements = std::vector<CObject *>;

// Merges two sorted neighbours of from into the same places of to; of equal elements the left ones come first.
void mergeRuns(Elements const & from, Elements & to, size_t left, size_t middle, size_t right)
{
  size_t a = left;
  size_t b = middle;
  for (size_t out = left; out < right; ++out) {
    bool const takeLeft = b == right || (a < middle && zp::CompareElements(from[a], from[b]) <= 0);
    to[out] = takeLeft ? from[a++] : from[b++];
  }
}

}  // namespace

namespace zp {

GPObject const * AsGPObject(CObject const * element)
{
  return element != nullptr && element->IsKindOf(RUNTIME_CLASS(GPObject)) ? static_cast<GPObject const *>(element) : nullptr;
}

CObject * CloneElement(CObject const * element)
{
  GPObject const * const object = AsGPObject(element);
  return object != nullptr ? object->Clone() : nullptr;
}

int CompareElements(CObject const * first, CObject const * second)
{
  GPObject const * const a = AsGPObject(first);
  GPObject const * const b = AsGPObject(second);
  if (a != nullptr && b != nullptr) return a->Compare(b);
  return first == second ? 0 : (std::less<>()(first, second) ? -1 : 1);
}

void DeleteOnce(Elements objects)
{
  std::sort(objects.begin(), objects.end(), std::less<>());
  objects.erase(std::unique(objects.begin(), objects.end()), objects.end());
  for (CObject * const object : objects) delete object;
}

// A merge sort from runs of one upward: it stays inside its two blocks whatever the comparison answers.
void SortObjects(Elements & objects)
{
  Elements other(objects.size());
  for (size_t width = 1; width < objects.size(); width *= 2) {
    for (size_t left = 0; left < objects.size(); left += 2 * width) {
      size_t const middle = std::min(left + width, objects.size());
      mergeRuns(objects, other, left, middle, std::min(left + 2 * width, objects.size()));
    }
    objects.swap(other);
  }
}

}  // namespace zp
