// A record's bytes: what object they hold, and how they are shown as hex.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/platform/runtime.h>

// The object as one of the class that its run-time class tells.
template <class Class>
Class const & As(CObject const & object)
{
  return static_cast<Class const &>(object);
}

struct Payload {
  enum State {
    Raw,      // not begun like an object
    Object,   // decoded whole
    Unknown,  // an object that names a class which isn't registered here
    Damaged   // begun like an object, and no sound one
  };

  State state = Raw;
  std::string className;  // as the bytes name it; empty for raw ones
  std::unique_ptr<CObject> object;
  std::string problem;  // of a damaged one, with the offset in the payload
};

// The class that an archive's first object names, or an empty text for bytes that don't begin like one.
std::string_view NamedClass(std::span<BYTE const> bytes);

Payload DecodePayload(std::span<BYTE const> bytes);

// The bytes of an archive with that object alone, as a store keeps it.
std::vector<BYTE> EncodeObject(CObject const & object);

std::string ToHex(std::span<BYTE const> bytes);
bool FromHex(std::string_view hex, std::vector<BYTE> & bytes);  // false for what isn't pairs of hex digits

// Lines of 16 bytes: offset, hex and characters.
std::string HexDump(std::span<BYTE const> bytes, std::string_view indent);
