// GPa: an item that owns an array of objects. Its stream:
//
//   offset  width  content
//   0       2      data id, unsigned
//   2              the array as an object pointer in the archive's form
//
// GPa(5), without an array: 05 00, 00 00.

#include <zpbase/data.h>

#include <zpbase/platform/archive.h>

IMPLEMENT_SERIAL(GPa, GPData, 1)

GPa::GPa(unsigned int id, GPObArray * array) : GPData(id), m_pArray(array) {}

GPa::GPa(GPa const & other) : GPData(other)
{
  Init(other);
}

GPa & GPa::operator=(GPa const & other)
{
  if (this == &other) return *this;
  GPData const id(other);
  Init(other);
  GPData::operator=(id);
  return *this;
}

GPa::~GPa() = default;

// The copy is complete before the array held goes, which may own other.
void GPa::Init(GPa const & other)
{
  std::unique_ptr<GPObArray> copy;
  if (other.m_pArray != nullptr) {
    copy = std::make_unique<GPObArray>();
    *copy = *other.m_pArray;
  }
  m_pArray = std::move(copy);
}

GPObject * GPa::Clone() const
{
  return new GPa(*this);
}

void GPa::Serialize(CArchive & ar)
{
  GPData::Serialize(ar);
  if (ar.IsStoring())
    ar.WriteObject(m_pArray.get());
  else
    m_pArray.reset(static_cast<GPObArray *>(ar.ReadOwnedObject(RUNTIME_CLASS(GPObArray))));
}
