// Every operation with every allocation and every host call failing, once and for good. A run takes an even sample of the places
// where an operation can fail, up to 24 of each; ZP_FAULTS=all takes every one.

#include <gtest/gtest.h>

#include <algorithm>

#include <zpbase/platform/exceptions.h>

#include "tests/faults/AllocationFaults.h"
#include "tests/faults/FaultPlaces.h"
#include "tests/faults/Operations.h"

namespace {

constexpr int sampled = 24;

struct Outcome {
  bool hasRaised = false;
  State state;
};

// Lets the trial act under the faults that arm makes; whether any came is told by hasFailed.
template <class Arm>
Outcome actUnder(Trial const & trial, Arm arm)
{
  Outcome outcome;
  try {
    [[maybe_unused]] auto const faults = arm();
    trial.act();
  } catch (CException * problem) {
    zp::ExceptionGuard const guard(problem);
    outcome.hasRaised = true;
  } catch (std::bad_alloc const &) {
    outcome.hasRaised = true;
  }
  outcome.state = trial.state();
  return outcome;
}

struct NoFaults {};

class Faults : public testing::TestWithParam<Operation> {
 protected:
  void SetUp() override
  {
    for (int i = 0; i < 2; ++i) m_After = actUnder(GetParam().prepare(), [] { return NoFaults(); }).state;  // caches fill
    m_Before = GetParam().prepare().state();
    ASSERT_EQ(m_Before.size(), m_After.size());
  }

  // lasts tells that the fault was still there when the operation cleaned up.
  void ExpectSound(Outcome const & outcome, bool isMemory, bool lasts, std::string const & where)
  {
    ++g_nTries;
    Operation const & operation = GetParam();
    for (auto const & [part, value] : outcome.state) {
      auto const holds = [&part = part](std::vector<std::string> const & parts) {
        return std::ranges::find(parts, part) != parts.end();
      };
      if (part == indexPart && (lasts || !isMemory)) continue;
      if (part == chainPart && lasts && !isMemory) continue;
      if (holds(isMemory ? operation.mayMove : operation.mayBeTorn)) continue;
      if (!isMemory && lasts && holds(operation.mayBeTornForGood)) continue;
      std::string const & before = m_Before[part];
      bool const isSound = value == before || (value == m_After[part] && (!outcome.hasRaised || operation.mayStandBetween));
      EXPECT_TRUE(isSound) << operation.name << ", " << where << ": " << part << " is '" << value << "', was '" << before << "'"
                           << (outcome.hasRaised ? ", raised" : "");
    }
  }

  // What is alive beside the live blocks of before.
  static long LeakedSince(long live) { return GetParam().leavesCache ? 0 : AllocationFaults::LiveBlocks() - live; }

  static void TearDownTestSuite() { std::printf("%ld tries\n", g_nTries); }

  State m_Before;
  State m_After;
  static inline long g_nTries = 0;
};

TEST_P(Faults, OfMemoryLeaveNothingHalfDone)
{
  Trial const counted = GetParam().prepare();
  {
    AllocationFaults const faults(0, false);
    counted.act();
  }
  for (int const n : PlacesOf(static_cast<int>(AllocationFaults::GetCount()), sampled))
    for (bool const forGood : {false, true}) {
      long const live = AllocationFaults::LiveBlocks();
      {
        Outcome const outcome = actUnder(GetParam().prepare(), [&] { return AllocationFaults(n, forGood); });
        ExpectSound(outcome, true, forGood, "allocation " + std::to_string(n) + (forGood ? " for good" : ""));
      }
      EXPECT_EQ(LeakedSince(live), 0) << GetParam().name << " leaks at allocation " << n << (forGood ? " for good" : "");
    }
}

TEST_P(Faults, OfTheHostLeaveNothingLost)
{
  int count;
  {
    Trial const counted = GetParam().prepare();
    HostFaults const none(0, HostFault());
    counted.act();
    count = none.GetCount();
  }
  for (HostFault const & fault : hostFaults) {
    for (int const n : PlacesOf(count, sampled)) {
      auto const where = Told(n, fault);
      long const live = AllocationFaults::LiveBlocks();
      ExpectSound(actUnder(GetParam().prepare(), [&] { return HostFaults(n, fault); }), false, fault.forGood, where);
      EXPECT_EQ(LeakedSince(live), 0) << GetParam().name << " leaks at " << where;
    }
  }
}

std::string nameOf(testing::TestParamInfo<Operation> const & info)
{
  std::string name = info.param.name;
  std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
  return name;
}

INSTANTIATE_TEST_SUITE_P(Store, Faults, testing::ValuesIn(StoreOperations()), nameOf);
INSTANTIATE_TEST_SUITE_P(Files, Faults, testing::ValuesIn(FileOperations()), nameOf);
INSTANTIATE_TEST_SUITE_P(Containers, Faults, testing::ValuesIn(ContainerOperations()), nameOf);
INSTANTIATE_TEST_SUITE_P(Settings, Faults, testing::ValuesIn(SettingsOperations()), nameOf);

}  // namespace
