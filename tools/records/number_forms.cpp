// The JSON form of sets, vectors and matrices.

#include "tools/records/number_forms.h"

#include <fmt/format.h>
#include <zpbase/numeric.h>

#include "tools/program.h"
#include "tools/records/json_values.h"

namespace {

using Object = std::unique_ptr<CObject>;

constexpr char const * valuesKey = "values";

Json const & readValues(Json const & json, int atMost)
{
  Json const & values = ArrayMember(json, valuesKey);
  if (values.size() > static_cast<size_t>(atMost)) throw Failure(fmt::format("\"values\" must have at most {} numbers", atMost));
  return values;
}

void writeSet(JsonText & json, CObject const & object)
{
  auto const & set = static_cast<GPUIntArray const &>(object);
  json.Key(valuesKey).BeginArray();
  for (int i = 0; i < set.GetSize(); ++i) json.Whole(set.GetAt(i));
  json.EndArray();
}

Object readSet(Json const & json)
{
  auto set = std::make_unique<GPUIntArray>();
  for (Json const & value : readValues(json, GPUIntArray::maxStreamed)) {
    set->Add(static_cast<UINT>(IntegerOf(value, valuesKey, 0, 0xFFFFFFFF)));
  }
  return set;
}

void writeVector(JsonText & json, CObject const & object)
{
  auto const & vector = static_cast<GPVector const &>(object);
  json.Key(valuesKey).BeginArray();
  for (int i = 0; i < vector.GetSize(); ++i) json.Real(vector[i]);
  json.EndArray();
}

Object readVector(Json const & json)
{
  Json const & values = readValues(json, zp::maxStreamedCount);
  auto vector = std::make_unique<GPVector>(static_cast<int>(values.size()));
  for (int i = 0; i < vector->GetSize(); ++i) (*vector)[i] = DoubleOf(values[static_cast<size_t>(i)], valuesKey);
  return vector;
}

template <class Vector>
void writeIntegers(JsonText & json, CObject const & object)
{
  auto const & vector = static_cast<Vector const &>(object);
  json.Key(valuesKey).BeginArray();
  for (int i = 0; i < vector.GetSize(); ++i) json.Whole(vector[i]);
  json.EndArray();
}

template <class Vector>
Object readIntegers(Json const & json)
{
  Json const & values = readValues(json, zp::maxStreamedCount);
  auto vector = std::make_unique<Vector>(static_cast<int>(values.size()));
  for (int i = 0; i < vector->GetSize(); ++i) {
    (*vector)[i] = static_cast<int>(IntegerOf(values[static_cast<size_t>(i)], valuesKey, INT32_MIN, INT32_MAX));
  }
  return vector;
}

void writeMatrix(JsonText & json, CObject const & object)
{
  auto const & matrix = static_cast<GPMatrix const &>(object);
  json.Key("rows").Whole(matrix.GetRows());
  json.Key("columns").Whole(matrix.GetCols());
  json.Key(valuesKey).BeginArray();
  for (int row = 0; row < matrix.GetRows(); ++row) {
    for (int col = 0; col < matrix.GetCols(); ++col) json.Real(matrix(row, col));
  }
  json.EndArray();
}

Object readMatrix(Json const & json)
{
  auto const rows = static_cast<int>(IntegerMember(json, "rows", 0, zp::maxStreamedCount));
  auto const cols = static_cast<int>(IntegerMember(json, "columns", 0, zp::maxStreamedCount));
  Json const & values = ArrayMember(json, valuesKey);
  if (values.size() != static_cast<size_t>(rows) * static_cast<size_t>(cols)) {
    throw Failure(fmt::format("\"values\" must have {} numbers for {} rows of {}", static_cast<long>(rows) * cols, rows, cols));
  }
  auto matrix = std::make_unique<GPMatrix>(rows, cols);
  size_t next = 0;
  for (int row = 0; row < rows; ++row) {
    for (int col = 0; col < cols; ++col) (*matrix)(row, col) = DoubleOf(values[next++], valuesKey);
  }
  return matrix;
}

constexpr ObjectForm numberForms[] = {
    {GPUIntArray::GetThisClass, writeSet, readSet},
    {GPVector::GetThisClass, writeVector, readVector},
    {GPIntVector::GetThisClass, writeIntegers<GPIntVector>, readIntegers<GPIntVector>},
    {GPBOOLVector::GetThisClass, writeIntegers<GPBOOLVector>, readIntegers<GPBOOLVector>},
    {GPMatrix::GetThisClass, writeMatrix, readMatrix},
};

}  // namespace

std::span<ObjectForm const> GetNumberForms()
{
  return numberForms;
}
