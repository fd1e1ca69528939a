// The same four kinds of items through two serialisation libraries, as polymorphic pointers in a vector.

#pragma once

#include <istream>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#ifdef ZP_HAVE_CEREAL
#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#endif
#ifdef ZP_HAVE_BOOST
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/export.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/unique_ptr.hpp>
#include <boost/serialization/vector.hpp>
#endif

namespace bench {

struct PeerItem {
  virtual ~PeerItem() = default;
  uint16_t id = 0;
  template <class Archive>
  void serialize(Archive & ar, unsigned int)
  {
    ar & id;
  }
};

template <class Value>
struct PeerValue : PeerItem {
  Value value{};
  template <class Archive>
  void serialize(Archive & ar, unsigned int)
  {
    ar & id & value;
  }
};

using PeerReal = PeerValue<double>;
using PeerSingle = PeerValue<float>;
using PeerWord = PeerValue<int16_t>;
using PeerText = PeerValue<std::string>;
using PeerItems = std::vector<std::unique_ptr<PeerItem>>;

template <class Kind, class Value>
std::unique_ptr<PeerItem> makePeer(int id, Value value)
{
  auto item = std::make_unique<Kind>();
  item->id = static_cast<uint16_t>(id);
  item->value = std::move(value);
  return item;
}

inline PeerItems makePeerItems(int count)
{
  PeerItems items;
  for (int i = 0; i < count; ++i) {
    switch (i % 4) {
      case 0:
        items.push_back(makePeer<PeerReal>(i, double(i)));
        break;
      case 1:
        items.push_back(makePeer<PeerSingle>(i, static_cast<float>(i)));
        break;
      case 2:
        items.push_back(makePeer<PeerWord>(i, static_cast<int16_t>(i)));
        break;
      default:
        items.push_back(makePeer<PeerText>(i, "item " + std::to_string(i)));
        break;
    }
  }
  return items;
}

// Appends to a text that stays, as a user would have it who counts copies.
class TextSink : public std::streambuf {
 public:
  explicit TextSink(std::string & out) : m_Out(out) {}

 protected:
  std::streamsize xsputn(char const * from, std::streamsize count) override
  {
    m_Out.append(from, static_cast<size_t>(count));
    return count;
  }
  int_type overflow(int_type c) override
  {
    m_Out.push_back(traits_type::to_char_type(c));
    return c;
  }

 private:
  std::string & m_Out;
};

// Reads a text where it lies.
class TextSource : public std::streambuf {
 public:
  explicit TextSource(std::string const & text)
  {
    char * const from = const_cast<char *>(text.data());
    setg(from, from, from + text.size());
  }
};

#ifdef ZP_HAVE_CEREAL
struct Cereal {
  static std::string Store(PeerItems const & items)
  {
    std::string bytes;
    TextSink sink(bytes);
    std::ostream stream(&sink);
    cereal::BinaryOutputArchive ar(stream);
    ar(items);
    return bytes;
  }
  static PeerItems Load(std::string const & bytes)
  {
    TextSource source(bytes);
    std::istream stream(&source);
    PeerItems items;
    cereal::BinaryInputArchive ar(stream);
    ar(items);
    return items;
  }
};
#endif
#ifdef ZP_HAVE_BOOST
struct Boost {
  static std::string Store(PeerItems const & items)
  {
    std::string bytes;
    TextSink sink(bytes);
    boost::archive::binary_oarchive ar(sink);
    ar << items;
    return bytes;
  }
  static PeerItems Load(std::string const & bytes)
  {
    TextSource source(bytes);
    PeerItems items;
    boost::archive::binary_iarchive ar(source);
    ar >> items;
    return items;
  }

  template <class Kind>
  static bool Register()
  {
    boost::serialization::void_cast_register<Kind, PeerItem>();
    return true;
  }
};

inline bool const bBoostKnowsKinds =
    Boost::Register<PeerReal>() && Boost::Register<PeerSingle>() && Boost::Register<PeerWord>() && Boost::Register<PeerText>();
#endif

}  // namespace bench

#ifdef ZP_HAVE_CEREAL
CEREAL_REGISTER_TYPE(bench::PeerReal)
CEREAL_REGISTER_TYPE(bench::PeerSingle)
CEREAL_REGISTER_TYPE(bench::PeerWord)
CEREAL_REGISTER_TYPE(bench::PeerText)
CEREAL_REGISTER_POLYMORPHIC_RELATION(bench::PeerItem, bench::PeerReal)
CEREAL_REGISTER_POLYMORPHIC_RELATION(bench::PeerItem, bench::PeerSingle)
CEREAL_REGISTER_POLYMORPHIC_RELATION(bench::PeerItem, bench::PeerWord)
CEREAL_REGISTER_POLYMORPHIC_RELATION(bench::PeerItem, bench::PeerText)
#endif
#ifdef ZP_HAVE_BOOST
BOOST_CLASS_EXPORT(bench::PeerReal)
BOOST_CLASS_EXPORT(bench::PeerSingle)
BOOST_CLASS_EXPORT(bench::PeerWord)
BOOST_CLASS_EXPORT(bench::PeerText)
#endif
