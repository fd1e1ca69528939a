// Classes found by their names while modules come and go.

#include <deque>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <zpbase/platform/runtime.h>

namespace {

struct Registered {
  explicit Registered(std::string text) : name(std::move(text)), registration(&record) {}

  std::string name;
  CRuntimeClass record = {name.c_str(), 0, 0xFFFF, nullptr, nullptr, nullptr, nullptr};
  AFX_CLASSINIT registration;
};

CRuntimeClass * found(std::string const & name)
{
  return CRuntimeClass::FromName(name.c_str(), name.size());
}

}  // namespace

// More of them than the table by names takes, and fewer again.
TEST(RuntimeClasses, AreFoundByNameHoweverManyThereAre)
{
  ASSERT_NE(found("GPDataArray"), nullptr);
  std::deque<std::unique_ptr<Registered>> classes;
  for (int i = 0; i < 400; ++i) {
    classes.push_back(std::make_unique<Registered>("Sample" + std::to_string(i)));
    ASSERT_EQ(found(classes.back()->name), &classes.back()->record);
    ASSERT_EQ(found("Sample" + std::to_string(i / 2)), &classes[static_cast<size_t>(i) / 2]->record);
  }
  while (!classes.empty()) {
    std::string const name = classes.front()->name;
    classes.pop_front();
    ASSERT_EQ(found(name), nullptr);
    if (!classes.empty()) {
      ASSERT_EQ(found(classes.back()->name), &classes.back()->record);
    }
  }
  EXPECT_EQ(found("GPDataArra"), nullptr);
  EXPECT_EQ(found(std::string("GPDataArray\0", 12)), nullptr);
  EXPECT_EQ(found(""), nullptr);
  EXPECT_NE(found("GPDataArray"), nullptr);
}

TEST(RuntimeClasses, OfOneNameTheLatestIsFound)
{
  Registered const first("Twice");
  {
    Registered const second("Twice");
    EXPECT_EQ(found("Twice"), &second.record);
  }
  EXPECT_EQ(found("Twice"), &first.record);
}
