#include "velmoria/runtime/value_ends.h"

#include <gtest/gtest.h>

namespace velmoria::test {
namespace {

TEST(ValueEndsTest, ShortValuesTakeTwoBytesEachAndLongOnesFour) {
  struct Case {
    std::size_t Total;
    std::size_t Bytes;
  };
  for (const auto& [total, bytes] : {Case{0, 6}, Case{65535, 6}, Case{65536, 12}, Case{4294967295, 12}}) {
    ValueEnds ends(3, total);
    ends.Set(0, 0);
    ends.Set(1, total / 2);
    ends.Set(2, total);
    EXPECT_EQ(ends.Bytes(3), bytes) << total;
    EXPECT_EQ(ends.At(0), 0U) << total;
    EXPECT_EQ(ends.At(1), total / 2) << total;
    EXPECT_EQ(ends.At(2), total) << total;
  }
}

TEST(ValueEndsTest, ThereAreNoneBeforeRoomWasMade) {
  EXPECT_FALSE(ValueEnds());
  EXPECT_TRUE(ValueEnds(0, 0));
}

}  // namespace
}  // namespace velmoria::test
