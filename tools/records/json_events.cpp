// Building values from a parser's events.

#include "tools/records/json_events.h"

#include <algorithm>
#include <streambuf>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <zpbase/platform/archive.h>

#include "tools/program.h"

namespace {

using TakeElement = std::function<void(Json const & rest, Json const & element)>;

constexpr char const * notesMember = "decoded";  // for people alone, of any size

constexpr std::string_view members[] = {"format", "version", "header", "records", "id",        "object",   "hex",
                                        "class",  "data_id", "value",  "values",  "rows",      "columns",  "x",
                                        "y",      "array",   "items",  "area",    notesMember, "second_id"};

// Passes a stream on until too much of it belongs to one record. Values nested deep stand behind many blanks, so a blank counts
// for less, but no indent fills a piece.
class Meter : public std::streambuf {
 public:
  Meter(std::streambuf & source, TextPlace begin) : m_Source(source), m_Piece(pieceBytes), m_Begin(begin) {}

  // What is wrong at the byte of that number, from 1, which is in the piece, the last one before it, or the first behind the end.
  std::string TellProblemAt(size_t position) const
  {
    auto const bytes = static_cast<size_t>(egptr() - eback());
    bool const isBefore = position <= m_nBefore;
    TextPlace place = m_Begin;
    if (isBefore) --place.column;
    place.Pass({eback(), isBefore ? 0 : std::min(position - m_nBefore - 1, bytes)});
    return fmt::format("line {}, column {}: {}", place.line, place.column,
                       position > m_nBefore + bytes ? "the JSON ends too early" : "is no JSON from here on");
  }

  // Whatever is read from here on belongs to the next record.
  void BeginNext() { m_nTaken = Weigh(gptr(), egptr()); }

 protected:
  int_type underflow() override
  {
    if (m_nTaken > mostJsonBytes)
      throw Failure(fmt::format("has more than the {} bytes of a record told in JSON", mostJsonBytes));
    m_Begin.Pass({eback(), egptr()});
    m_nBefore += static_cast<size_t>(egptr() - eback());
    std::streamsize const count = m_Source.sgetn(m_Piece.data(), static_cast<std::streamsize>(m_Piece.size()));
    setg(m_Piece.data(), m_Piece.data(), m_Piece.data() + count);
    m_nTaken += Weigh(gptr(), egptr());
    return count > 0 ? traits_type::to_int_type(m_Piece[0]) : traits_type::eof();
  }

 private:
  static constexpr size_t pieceBytes = 0x4000;
  static constexpr size_t blanksOfByte = 8;
  static constexpr size_t mostBlankPieces = 64;

  static size_t Weigh(char const * first, char const * last)
  {
    auto const count = static_cast<size_t>(last - first);
    size_t const blanks = static_cast<size_t>(std::count(first, last, ' ') + std::count(first, last, '\n'));
    return blanks == pieceBytes ? mostJsonBytes / mostBlankPieces : count - blanks + blanks / blanksOfByte;
  }

  std::streambuf & m_Source;
  std::vector<char> m_Piece;
  TextPlace m_Begin;     // of the piece
  size_t m_nBefore = 0;  // bytes
  size_t m_nTaken = 0;
};

class Builder : public Json::json_sax_t {
 public:
  Builder(Meter & meter, std::string const & member, TakeElement take)
      : m_Meter(meter), m_strMember(member), m_pfnTake(std::move(take))
  {
  }

  Json & GetResult() { return m_Root; }
  std::string const & GetProblem() const { return m_strProblem; }

  bool null() override { return PutWhole(nullptr); }
  bool boolean(bool value) override { return PutWhole(value); }
  bool number_integer(number_integer_t value) override { return PutWhole(value); }
  bool number_unsigned(number_unsigned_t value) override { return PutWhole(value); }
  bool number_float(number_float_t value, string_t const &) override { return PutWhole(value); }
  bool string(string_t & value) override { return PutWhole(std::move(value)); }
  bool binary(binary_t &) override { return false; }
  bool start_object(std::size_t) override { return Begin(Json::object()); }
  bool start_array(std::size_t) override { return Begin(Json::array()); }
  bool end_object() override { return EndHolder(); }
  bool end_array() override { return EndHolder(); }
  bool key(string_t & name) override
  {
    if (m_nNotes > 0) return true;
    if (std::ranges::find(members, name) == std::end(members)) {
      throw Failure(fmt::format("\"{}\": no record has such a member", name));
    }
    if (m_Holders.back()->contains(name)) throw Failure(fmt::format("\"{}\": stands twice in one object", name));
    m_strKey = std::move(name);
    return true;
  }
  bool parse_error(std::size_t position, std::string const &, nlohmann::detail::exception const &) override
  {
    m_strProblem = m_Meter.TellProblemAt(position);
    return false;
  }

 private:
  bool PutWhole(Json value) { return m_nNotes > 0 || End(Put(IsNotes() ? nullptr : std::move(value))); }

  Json & Put(Json value)
  {
    if (m_Holders.empty()) return m_Root = std::move(value);
    Json & holder = *m_Holders.back();
    if (holder.is_array()) return holder.emplace_back(std::move(value));
    return holder[m_strKey] = std::move(value);
  }

  bool IsNotes() const { return !m_Holders.empty() && m_Holders.back()->is_object() && m_strKey == notesMember; }

  // An object of a record is an object in JSON, and so is its list of items.
  bool Begin(Json empty)
  {
    constexpr size_t mostLevels = 2 * static_cast<size_t>(CArchive::maxDepth) + 8;
    if (m_nNotes == 0 && IsNotes()) Put(nullptr);
    if (m_nNotes > 0 || IsNotes()) {
      ++m_nNotes;
      return true;
    }
    if (m_Holders.size() == mostLevels) throw Failure("values are nested too deep");
    Json & holder = Put(std::move(empty));
    if (holder.is_array() && m_Holders.size() == 1 && m_pfnTake && m_strKey == m_strMember) m_pList = &holder;
    m_Holders.push_back(&holder);
    return true;
  }

  bool EndHolder()
  {
    if (m_nNotes > 0) {
      --m_nNotes;
      return true;
    }
    Json & holder = *m_Holders.back();
    m_Holders.pop_back();
    if (&holder == m_pList) m_pList = nullptr;
    return End(holder);
  }

  bool End(Json const & value)
  {
    if (m_pList == nullptr || m_Holders.size() != 2) return true;
    m_pfnTake(m_Root, value);
    m_pList->clear();
    m_Meter.BeginNext();
    return true;
  }

  Meter & m_Meter;
  std::string const & m_strMember;
  TakeElement m_pfnTake;
  Json m_Root;
  std::vector<Json *> m_Holders;
  Json * m_pList = nullptr;  // while its elements are read
  size_t m_nNotes = 0;       // levels open of what only people read
  std::string m_strKey;
  std::string m_strProblem;
};

}  // namespace

void TextPlace::Pass(std::string_view bytes)
{
  size_t const end = bytes.rfind('\n');
  line += static_cast<size_t>(std::ranges::count(bytes, '\n'));
  column = end == std::string_view::npos ? column + bytes.size() : bytes.size() - end;
}

Json ReadJson(std::istream & input, std::string const & member, TakeElement take, TextPlace begin)
{
  Meter meter(*input.rdbuf(), begin);
  std::istream metered(&meter);
  Builder builder(meter, member, std::move(take));
  if (!Json::sax_parse(metered, &builder)) throw Failure(builder.GetProblem());
  return std::move(builder.GetResult());
}

Json ReadJson(std::istream & input)
{
  return ReadJson(input, "", nullptr);
}
