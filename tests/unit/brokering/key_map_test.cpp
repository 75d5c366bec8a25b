#include <gtest/gtest.h>

#include "velmoria/brokering/key_map_impl.h"

namespace velmoria::test {
namespace {

TEST(KeyMapTest, GivesTheRowOfAKeyWithoutRegardToCase) {
  KeyMap map;
  EXPECT_TRUE(map.IsEmpty());
  map.Add("Äpfel-1", 7);
  map.Add("", 8);
  EXPECT_EQ(map.RowOf("äPFEL-1"), 7);
  EXPECT_EQ(map.RowOf(""), 8);
  EXPECT_EQ(map.RowOf("Äpfel"), -1);
  EXPECT_FALSE(map.IsEmpty());
}

TEST(KeyMapTest, TheFirstRowSeenUnderAKeyStays) {
  KeyMap map;
  map.Add("a", 1);
  map.Add("A", 2);
  map.Add("b", 3);
  EXPECT_EQ(map.RowOf("a"), 1);
  EXPECT_EQ(map.RowOf("B"), 3);
}

TEST(KeyMapTest, ARowSeenAgainAddsTheKeyThatItHasNow) {
  KeyMap map;
  map.Add("a", 1);
  map.Add("b", 2);
  map.Add("c", 1);
  map.Add("b", 1);
  EXPECT_EQ(map.RowOf("a"), 1);
  EXPECT_EQ(map.RowOf("b"), 2);
  EXPECT_EQ(map.RowOf("c"), 1);
}

TEST(KeyMapTest, KeysThatCameAfterALookAreFound) {
  KeyMap map;
  map.Add("b", 5);
  EXPECT_EQ(map.RowOf("b"), 5);
  map.Add("a", 2);
  map.Add("B", 9);
  map.Add("c", 10);
  EXPECT_EQ(map.RowOf("a"), 2);
  EXPECT_EQ(map.RowOf("b"), 5);
  EXPECT_EQ(map.RowOf("c"), 10);
}

TEST(KeyMapTest, FindsEachOfVeryManyKeys) {
  KeyMap map;
  for (int row = 0; row < 20000; ++row) map.Add("key " + std::to_string(row * 7), row);
  for (int row = 0; row < 20000; ++row) ASSERT_EQ(map.RowOf("KEY " + std::to_string(row * 7)), row);
  EXPECT_EQ(map.RowOf("key 1"), -1);
}

}  // namespace
}  // namespace velmoria::test
