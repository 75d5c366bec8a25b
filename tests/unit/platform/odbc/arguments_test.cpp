#include "velmoria/platform/odbc/arguments.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

constexpr std::size_t kGreatest = std::numeric_limits<odbc::Number>::max();

TEST(ArgumentsTest, LengthIsTheNumberOfItsBytes) {
  EXPECT_EQ(odbc::CheckedNumber(0), 0);
  EXPECT_EQ(odbc::CheckedNumber(kGreatest), std::numeric_limits<odbc::Number>::max());
  EXPECT_EQ(odbc::LengthOfStatement("SELECT '\xC3\x84'"), 11);
}

TEST(ArgumentsTest, LengthThatNoCallCanTellRaises6) {
  const auto overflow = static_cast<std::int32_t>(RuntimeFailure::Overflow);
  ExpectRdoFailure(overflow, "", [] { odbc::CheckedNumber(kGreatest + 1); });
  ExpectRdoFailure(overflow, "", [] { odbc::CheckedNumber(std::numeric_limits<std::size_t>::max()); });
}

TEST(ArgumentsTest, StatementWithACharacterZeroRaises5) {
  const std::string text("SELECT 1\0 WHERE 0", 17);
  ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::InvalidArgument), "holds a character 0",
                   [&] { odbc::LengthOfStatement(text); });
}

}  // namespace
}  // namespace velmoria::test
