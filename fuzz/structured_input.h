// Archives, stores and metafiles put together from the bytes of an input, which choose what comes next: tags, counts and headers
// fit, so that the readers behind them are reached, and some of them lie. An input that begins with the mark asks for this.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

constexpr std::string_view structureMark = "{zp}";

// The bytes of an input, taken off its front; zeros behind its end.
class FuzzInput {
 public:
  explicit FuzzInput(std::string_view bytes) : m_Bytes(bytes)
  {
    m_bStructured = bytes.starts_with(structureMark);
    if (m_bStructured) m_Bytes.remove_prefix(structureMark.size());
  }

  bool IsStructured() const { return m_bStructured; }
  bool IsEmpty() const { return m_Bytes.empty(); }
  unsigned int Byte() { return static_cast<unsigned char>(Take(1)[0]); }
  unsigned int Word() { return Byte() | Byte() << 8; }
  std::string Take(size_t count)
  {
    std::string taken(m_Bytes.substr(0, count));
    m_Bytes.remove_prefix(taken.size());
    taken.resize(count);
    return taken;
  }

 private:
  std::string_view m_Bytes;
  bool m_bStructured;
};

inline std::string littleEndian(unsigned int value, size_t width)
{
  std::string bytes;
  for (size_t i = 0; i < width; ++i) bytes += static_cast<char>(value >> 8 * i);
  return bytes;
}

// The content of one archive: objects whose classes, fields, counts and references come from the input.
class ArchiveBytes {
 public:
  explicit ArchiveBytes(FuzzInput & input) : m_Input(input) {}

  std::string const & Get() const { return m_strBytes; }
  void Raw(std::string_view bytes) { m_strBytes += bytes; }

  void Object(int depth = 0)
  {
    constexpr unsigned int null = 0xFF;
    constexpr unsigned int reference = 0xFE;
    unsigned int const choice = depth < 12 && !m_Input.IsEmpty() ? m_Input.Byte() : null;
    if (choice == null) return Raw(littleEndian(0, 2));
    if (choice == reference) return Raw(littleEndian(m_Input.Byte() % (m_nCounter + 2), 2));
    size_t const kind = choice % std::size(classes);
    Tag(kind, choice == null - 2);
    Fields(classes[kind].fields, depth);
  }

  // The class's tag; at its first use with its name.
  void Tag(size_t kind, bool isNewAgain = false)
  {
    unsigned int & index = m_Indexes[kind];
    if (index != 0 && !isNewAgain) {
      Raw(littleEndian(0x8000 | index, 2));
    } else {
      index = ++m_nCounter;
      std::string_view const name = classes[kind].name;
      Raw("\xFF\xFF" + std::string("\1\0", 2) + littleEndian(static_cast<unsigned int>(name.size()), 2));
      Raw(name);
    }
    ++m_nCounter;
  }

  // A digit is a number of so many bytes; * objects behind their count, o an object, t a text, v bytes behind their count, c
  // numbers of 2 bytes and d of 8 behind their count, m a matrix, i a data id.
  void Fields(std::string_view fields, int depth)
  {
    for (char const field : fields) {
      if (field >= '0' && field <= '9') Raw(m_Input.Take(static_cast<size_t>(field - '0')));
      if (field == 'i') Raw(littleEndian(m_Input.Byte(), 2));
      if (field == 'o') Object(depth + 1);
      if (field == '*') Objects(depth);
      if (field == 't') Counted(1, 1);
      if (field == 'v') Counted(2, 1);
      if (field == 'c') Counted(2, 2);
      if (field == 'd') Counted(2, 8);
      if (field == 'm') Matrix();
    }
  }

 private:
  struct Class {
    std::string_view name;
    std::string_view fields;
  };
  static constexpr Class classes[] = {{"GPObArray", "*"},     {"GPObList", "*"},     {"GPDataArray", "*"}, {"GPDataList", "*"},
                                      {"GPObject", ""},       {"GPData", "i"},       {"GPd", "i8"},        {"GPf", "i4"},
                                      {"GPdw", "i4"},         {"GPw", "i2"},         {"GPs", "it"},        {"GPxy", "i88"},
                                      {"GPa", "io"},          {"GPv", "iv"},         {"GPbip", "iv2"},     {"GPVector", "d"},
                                      {"GPIntVector", "c"},   {"GPBOOLVector", "c"}, {"GPMatrix", "m"},    {"GPUIntArray", "c"},
                                      {"GPActiveRec", "422"}, {"GPEmptyRec", "42"}};

  // Now and then a count says more than there is.
  unsigned int Count(unsigned int & told)
  {
    unsigned int const choice = m_Input.Byte();
    unsigned int const count = choice % 32;
    told = choice >= 0xF8 ? count + 1 + choice % 8 * 0x1555 : count;
    return count;
  }

  void Objects(int depth)
  {
    unsigned int told = 0;
    unsigned int const count = Count(told);
    Raw(littleEndian(told, 2));
    for (unsigned int i = 0; i < count && !m_Input.IsEmpty(); ++i) Object(depth + 1);
  }

  void Counted(size_t countWidth, size_t width)
  {
    unsigned int told = 0;
    unsigned int const count = Count(told);
    Raw(littleEndian(told, countWidth));
    Raw(m_Input.Take(count * width));
  }

  void Matrix()
  {
    unsigned int const sizes = m_Input.Byte();
    Raw(littleEndian(sizes % 8, 2) + littleEndian(sizes / 8 % 8, 2));
    Raw(m_Input.Take(size_t{8} * (sizes % 8) * (sizes / 8 % 8)));
  }

  FuzzInput & m_Input;
  std::string m_strBytes;
  unsigned int m_nCounter = 0;
  unsigned int m_Indexes[std::size(classes)] = {};

 public:
  // Where the entries of a store stand among the classes.
  static constexpr size_t arrayClass = 0;
  static constexpr size_t listClass = 1;
  static constexpr size_t liveClass = std::size(classes) - 2;
  static constexpr size_t freeClass = std::size(classes) - 1;
};

struct StoreFiles {
  std::string index;
  std::string records;
};

// A store of up to 40 blocks, each of them live, free, unknown to the index, or an entry without a block; then places of both
// files that are written over, and cuts.
class StoreBytes {
 public:
  explicit StoreBytes(FuzzInput & input) : m_Input(input) {}

  StoreFiles Make()
  {
    ArchiveBytes index(m_Input);
    index.Object(11);
    for (unsigned int count = m_Input.Byte() % 40; count > 0; --count) Block();
    Table(index, ArchiveBytes::arrayClass, ArchiveBytes::liveClass, m_Live);
    Table(index, ArchiveBytes::listClass, ArchiveBytes::freeClass, m_Free);
    m_Files.index = index.Get();
    while (!m_Input.IsEmpty()) Damage(m_Input.Byte());
    return m_Files;
  }

 private:
  void Block()
  {
    unsigned int const choice = m_Input.Byte();
    unsigned int const id = choice & 0x40 ? m_Input.Word() & 0x7FFF : ++m_nID;
    std::string payload = m_Input.Take(1 + m_Input.Byte() % 64);
    if (choice & 0x20) {
      ArchiveBytes object(m_Input);
      object.Object(9);
      payload = object.Get();
    }
    auto const length = static_cast<unsigned int>(payload.size());
    payload.resize(payload.size() + (choice >> 2 & 7), '\xB6');
    auto const capacity = static_cast<unsigned int>(payload.size());
    unsigned int const kind = choice & 3;
    std::string const place = littleEndian(choice & 0x80 ? m_Input.Word() : static_cast<unsigned int>(m_Files.records.size()), 4);
    if (kind == 1)
      m_Free.emplace_back(place + littleEndian(capacity, 2));
    else if (kind != 2)
      m_Live.emplace_back(place + littleEndian(id, 2) + littleEndian(length, 2));
    if (kind == 3) return;
    m_Files.records +=
        littleEndian(kind == 1 ? id | 0x8000 : id, 2) + littleEndian(length, 2) + littleEndian(capacity, 2) + payload;
  }

  static void Table(ArchiveBytes & index, size_t container, size_t entry, std::span<std::string const> entries)
  {
    index.Tag(container);
    index.Raw(littleEndian(static_cast<unsigned int>(entries.size()), 2));
    for (std::string const & fields : entries) {
      index.Tag(entry);
      index.Raw(fields);
    }
  }

  void Damage(unsigned int choice)
  {
    std::string & file = choice & 1 ? m_Files.index : m_Files.records;
    size_t const place = m_Input.Word() % (file.size() + 1);
    if (choice >= 0xF0) return file.resize(place);
    std::string const bytes = m_Input.Take(choice >> 1 & 3);
    file.replace(place, bytes.size(), bytes);
  }

  FuzzInput & m_Input;
  StoreFiles m_Files;
  std::vector<std::string> m_Live;
  std::vector<std::string> m_Free;
  unsigned int m_nID = 0;
};

// The two files of an input: built, or its bytes as they stand, where the first two tell the length of the index file.
inline StoreFiles storeFilesOf(std::string_view bytes)
{
  FuzzInput input(bytes);
  if (input.IsStructured()) return StoreBytes(input).Make();
  size_t const length = input.Word();
  bytes.remove_prefix(std::min<size_t>(bytes.size(), 2));
  return {std::string(bytes.substr(0, length)), std::string(bytes.substr(std::min(length, bytes.size())))};
}

// A metafile of records whose functions are known and whose sizes fit their parameters; a few have too many, too few or wild
// ones.
inline std::string metafileOf(FuzzInput & input)
{
  struct Record {
    unsigned int function;
    unsigned int words;
  };
  static constexpr Record records[] = {{0x0102, 1}, {0x0103, 1}, {0x012D, 1}, {0x01F0, 1}, {0x0201, 2}, {0x0209, 2}, {0x020B, 2},
                                       {0x020C, 2}, {0x020D, 2}, {0x020E, 2}, {0x0213, 2}, {0x0214, 2}, {0x02FA, 5}, {0x02FB, 17},
                                       {0x02FC, 4}, {0x0324, 9}, {0x0325, 9}, {0x0418, 4}, {0x041B, 4}, {0x041F, 4}, {0x0521, 6},
                                       {0x061C, 6}, {0x0817, 8}, {0x081A, 8}, {0x0830, 8}, {0x0A32, 8}, {0x0626, 4}};
  std::string bytes;
  if (input.Byte() & 1) bytes = "\xD7\xCD\xC6\x9A" + input.Take(18);
  bytes += littleEndian(1, 2) + littleEndian(9, 2) + littleEndian(0x300, 2) + input.Take(4) + littleEndian(16, 2) + input.Take(6);
  while (!input.IsEmpty()) {
    unsigned int const choice = input.Byte();
    Record const & record = records[choice % std::size(records)];
    unsigned int const words = choice >= 0xF0 ? input.Byte() % 16 : record.words;
    bytes += littleEndian(words + 3, 4) + littleEndian(record.function, 2);
    for (unsigned int i = 0; i < words; ++i) {
      unsigned int const value = input.Byte();
      bytes += value == 0x80 ? input.Take(2) : littleEndian(static_cast<unsigned int>(static_cast<signed char>(value)), 2);
    }
  }
  return bytes + littleEndian(3, 4) + littleEndian(0, 2);
}
