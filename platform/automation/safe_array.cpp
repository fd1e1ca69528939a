// SAFEARRAY: blocks of variants with any number of dimensions.

#include <zpbase/platform/variants.h>

#include <algorithm>
#include <cstdlib>
#include <span>

namespace {

constexpr size_t maxElements = PTRDIFF_MAX / sizeof(VARIANT);
constexpr UINT maxDimensions = 65535;

std::span<SAFEARRAYBOUND const> boundsOf(SAFEARRAY const * block)
{
  return {block->rgsabound, block->cDims};
}

size_t countOf(SAFEARRAY const * block)
{
  size_t count = 1;
  for (SAFEARRAYBOUND const & bound : boundsOf(block)) count *= bound.cElements;
  return count;
}

std::span<VARIANT> elementsOf(SAFEARRAY const * block)
{
  return {static_cast<VARIANT *>(block->pvData), countOf(block)};
}

// How many elements the bounds make; 0 for too many, and where an index would leave its type.
size_t countOf(std::span<SAFEARRAYBOUND const> bounds)
{
  size_t count = 1;
  for (SAFEARRAYBOUND const & bound : bounds) {
    if (bound.cElements == 0 || count > maxElements / bound.cElements) return 0;
    if (int64_t{bound.lLbound} + bound.cElements - 1 > INT32_MAX) return 0;
    count *= bound.cElements;
  }
  return count;
}

// The bound of a dimension that counts from 1, or null.
SAFEARRAYBOUND const * boundOf(SAFEARRAY const * block, UINT dimension)
{
  if (block == nullptr || dimension == 0 || dimension > block->cDims) return nullptr;
  return &boundsOf(block)[block->cDims - dimension];
}

void freeBlock(SAFEARRAY * block)
{
  std::free(block->pvData);
  std::free(block);
}

}  // namespace

SAFEARRAY * SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND const * bounds)
{
  if (type != VT_VARIANT || dimensions == 0 || dimensions > maxDimensions || bounds == nullptr) return nullptr;
  size_t const count = countOf({bounds, dimensions});
  if (count == 0) return nullptr;
  size_t const headSize = sizeof(SAFEARRAY) + (dimensions - 1) * sizeof(SAFEARRAYBOUND);
  auto * const block = static_cast<SAFEARRAY *>(std::calloc(1, headSize));
  if (block == nullptr) return nullptr;
  block->pvData = std::calloc(count, sizeof(VARIANT));  // all VT_EMPTY
  if (block->pvData == nullptr) {
    std::free(block);
    return nullptr;
  }
  block->cDims = static_cast<WORD>(dimensions);
  block->fFeatures = FADF_VARIANT;
  block->cbElements = sizeof(VARIANT);
  std::reverse_copy(bounds, bounds + dimensions, block->rgsabound);
  return block;
}

HRESULT SafeArrayDestroy(SAFEARRAY * block)
{
  if (block == nullptr) return S_OK;
  if (block->cLocks != 0) return DISP_E_ARRAYISLOCKED;
  for (VARIANT & element : elementsOf(block)) VariantClear(&element);
  freeBlock(block);
  return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY * block, SAFEARRAY ** copy)
{
  if (copy == nullptr) return E_INVALIDARG;
  *copy = nullptr;
  if (block == nullptr) return S_OK;
  std::span<SAFEARRAYBOUND const> const bounds = boundsOf(block);
  SAFEARRAY * const made = SafeArrayCreate(VT_VARIANT, block->cDims, bounds.data());
  if (made == nullptr) return E_OUTOFMEMORY;
  std::copy(bounds.begin(), bounds.end(), made->rgsabound);
  std::span<VARIANT> const from = elementsOf(block);
  for (size_t i = 0; i < from.size(); ++i) {
    HRESULT const code = VariantCopy(&elementsOf(made)[i], &from[i]);
    if (SUCCEEDED(code)) continue;
    SafeArrayDestroy(made);
    return code;
  }
  *copy = made;
  return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY const * block)
{
  return block != nullptr ? block->cDims : 0;
}

HRESULT SafeArrayGetLBound(SAFEARRAY const * block, UINT dimension, LONG * bound)
{
  if (block == nullptr || bound == nullptr) return E_INVALIDARG;
  SAFEARRAYBOUND const * const found = boundOf(block, dimension);
  if (found == nullptr) return DISP_E_BADINDEX;
  *bound = found->lLbound;
  return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY const * block, UINT dimension, LONG * bound)
{
  if (HRESULT const code = SafeArrayGetLBound(block, dimension, bound); FAILED(code)) return code;
  *bound = static_cast<LONG>(static_cast<DWORD>(*bound) + boundOf(block, dimension)->cElements - 1);
  return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY * block, void ** data)
{
  if (block == nullptr || data == nullptr) return E_INVALIDARG;
  ++block->cLocks;
  *data = block->pvData;
  return S_OK;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY * block)
{
  if (block == nullptr || block->cLocks == 0) return E_INVALIDARG;
  --block->cLocks;
  return S_OK;
}

HRESULT SafeArrayPtrOfIndex(SAFEARRAY const * block, LONG const * indices, void ** element)
{
  if (block == nullptr || indices == nullptr || element == nullptr) return E_INVALIDARG;
  size_t place = 0;
  size_t step = 1;
  for (UINT i = 0; i < block->cDims; ++i) {
    SAFEARRAYBOUND const & bound = *boundOf(block, i + 1);
    int64_t const index = int64_t{indices[i]} - bound.lLbound;
    if (index < 0 || index >= bound.cElements) return DISP_E_BADINDEX;
    place += static_cast<size_t>(index) * step;
    step *= bound.cElements;
  }
  *element = &elementsOf(block)[place];
  return S_OK;
}
