// Between a record's bytes and the object in them.

#include "tools/records/payload.h"

#include <algorithm>

#include <fmt/format.h>
#include <zpbase/platform/archive.h>
#include <zpbase/platform/ascii.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/store.h>

#include "tools/program.h"
#include "tools/records/message_catcher.h"

namespace {

constexpr size_t classNameStart = 6;  // behind the tag, the schema and the name's length, a word each

size_t wordAt(std::span<BYTE const> bytes, size_t offset)
{
  return zp::ReadLittle<WORD>(&bytes[offset]);
}

bool isNameCharacter(char c)
{
  return zp::IsLetter(c) || zp::IsDigit(c) || c == '_' || c == ':';
}

// Reads the one object of the archive. The result is the count of bytes it took.
size_t readObject(std::span<BYTE const> bytes, std::unique_ptr<CObject> & object)
{
  CMemFile file(const_cast<BYTE *>(bytes.data()), static_cast<UINT>(bytes.size()));
  CArchive ar(&file, CArchive::load);
  object.reset(ar.ReadObject(nullptr));
  ar.Flush();
  return static_cast<size_t>(file.GetPosition());
}

}  // namespace

std::string_view NamedClass(std::span<BYTE const> bytes)
{
  if (bytes.size() <= classNameStart || wordAt(bytes, 0) != 0xFFFF || wordAt(bytes, 2) == 0) return {};
  size_t const length = wordAt(bytes, 4);
  if (length == 0 || length > bytes.size() - classNameStart) return {};
  std::string_view const name(reinterpret_cast<char const *>(bytes.data()) + classNameStart, length);
  return std::all_of(name.begin(), name.end(), isNameCharacter) ? name : std::string_view();
}

// A class tells of content it can't take in a message box as well as by an exception: both are damage, as are bytes left over.
Payload DecodePayload(std::span<BYTE const> bytes)
{
  Payload payload;
  payload.className = NamedClass(bytes);
  if (payload.className.empty()) return payload;
  if (CRuntimeClass::FromName(payload.className.data(), payload.className.size()) == nullptr) {
    payload.state = Payload::Unknown;
    return payload;
  }
  payload.state = Payload::Damaged;
  MessageCatcher const catcher;
  try {
    size_t const taken = readObject(bytes, payload.object);
    if (!catcher.GetMessage().empty()) {
      payload.problem = catcher.GetMessage();
    } else if (taken == bytes.size()) {
      payload.state = Payload::Object;
    } else {
      payload.problem = fmt::format("{} bytes follow the object, from byte {}", bytes.size() - taken, taken);
    }
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    payload.problem = Describe(*caught);
  }
  return payload;
}

std::vector<BYTE> EncodeObject(CObject const & object)
{
  GPMemFile file;
  {
    CArchive ar(&file, CArchive::store);
    ar.WriteObject(&object);
    ar.Close();
  }
  BYTE const * const start = file.GetMemPtr();
  return {start, start + file.GetLength()};
}

std::string ToHex(std::span<BYTE const> bytes)
{
  std::string hex;
  zp::AppendHex(hex, {reinterpret_cast<char const *>(bytes.data()), bytes.size()});
  return hex;
}

bool FromHex(std::string_view hex, std::vector<BYTE> & bytes)
{
  std::string read;
  bool const isHex = zp::AppendFromHex(read, hex);
  bytes.assign(read.begin(), read.end());
  return isHex;
}

std::string HexDump(std::span<BYTE const> bytes, std::string_view indent)
{
  constexpr size_t lineBytes = 16;
  std::string text;
  for (size_t start = 0; start < bytes.size(); start += lineBytes) {
    std::string hex;
    std::string characters;
    for (BYTE const byte : bytes.subspan(start, std::min(lineBytes, bytes.size() - start))) {
      hex += fmt::format("{:02x} ", byte);
      characters += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
    }
    text += fmt::format("{}{:06x}  {:<48} {}\n", indent, start, hex, characters);
  }
  return text;
}
