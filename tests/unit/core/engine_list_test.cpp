#include <cstdint>
#include <initializer_list>
#include <set>

#include <gtest/gtest.h>

#include "velmoria/core/engine_list_impl.h"

namespace velmoria {
namespace {

// Knows which engines it has, as the collections by engine do.
struct Owned {
  std::set<zEngines> Engines;
  bool Find(zEngines engine) const { return Engines.contains(engine); }
};

Variant ListOf(std::initializer_list<zEngines> engines) {
  Variant list;
  for (const auto engine : engines) AppendEngine(list, engine);
  return list;
}

TEST(EngineListTest, IsEmptyWithoutAnEngineAndElseAnArrayFromZero) {
  EXPECT_TRUE(ListOf({}).IsEmpty());
  const auto list = ListOf({engODBC, engOracle});
  EXPECT_EQ(list.LowerBound(), 0);
  EXPECT_EQ(list.UpperBound(), 1);
  EXPECT_EQ(list.Element(0), Variant(static_cast<std::int16_t>(engODBC)));
  EXPECT_EQ(list.Element(1), Variant(static_cast<std::int16_t>(engOracle)));
}

TEST(EngineListTest, OneToFiveAreDefinable) {
  for (std::int32_t engine = -1; engine <= 9; ++engine) {
    EXPECT_EQ(IsDefinableEngine(zEngines{engine}), engine >= 1 && engine <= 5) << engine;
  }
}

TEST(EngineListTest, EnginesThatACollectionLacksKeepTheirOrder) {
  const auto candidates = ListOf({engAccess, engODBC, engSybase});
  EXPECT_EQ(EnginesWithout(candidates, Owned{{engODBC}}), ListOf({engAccess, engSybase}));
  EXPECT_EQ(EnginesWithout(candidates, Owned{}), candidates);
}

TEST(EngineListTest, NothingIsLackingWhereNothingIsWantedOrAllIsThere) {
  EXPECT_TRUE(EnginesWithout({}, Owned{}).IsEmpty());
  EXPECT_TRUE(EnginesWithout(ListOf({engODBC}), Owned{{engODBC}}).IsEmpty());
}

}  // namespace
}  // namespace velmoria
