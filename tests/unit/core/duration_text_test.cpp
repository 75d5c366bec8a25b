#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "velmoria/core/duration_text_impl.h"

namespace velmoria {
namespace {

TEST(DurationTextTest, MinutesAndSecondsAreWords) {
  const std::vector<std::pair<std::int64_t, std::string>> table = {
      {-61, ""},
      {-1, ""},
      {0, "0 seconds"},
      {1, "1 second"},
      {2, "2 seconds"},
      {59, "59 seconds"},
      {60, "1 minute and 0 seconds"},
      {61, "1 minute and 1 second"},
      {119, "1 minute and 59 seconds"},
      {120, "2 minutes and 0 seconds"},
      {3661, "61 minutes and 1 second"},
  };
  for (const auto& [seconds, text] : table) EXPECT_EQ(DurationText(seconds), text) << seconds;
}

}  // namespace
}  // namespace velmoria
