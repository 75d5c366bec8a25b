#include "velmoria/runtime/value_ends.h"

#include <vector>

#include <gtest/gtest.h>

namespace velmoria::test {
namespace {

TEST(ValueEndsTest, ShortValuesTakeTwoBytesEachAndLongOnesFour) {
  struct Case {
    std::size_t Total;
    std::size_t Bytes;
  };
  for (const auto& [total, bytes] : {Case{0, 6}, Case{65535, 6}, Case{65536, 12}, Case{4294967295, 12}}) {
    std::vector<std::byte> memory(ValueEnds::Bytes(3, total));
    const ValueEnds ends(memory.data(), total);
    ends.Set(0, 0);
    ends.Set(1, total / 2);
    ends.Set(2, total);
    EXPECT_EQ(memory.size(), bytes) << total;
    EXPECT_EQ(ends.At(0), 0U) << total;
    EXPECT_EQ(ends.At(1), total / 2) << total;
    EXPECT_EQ(ends.At(2), total) << total;
  }
}

}  // namespace
}  // namespace velmoria::test
