#include <gtest/gtest.h>

#include "velmoria/design/connection_text_impl.h"

namespace velmoria::test {
namespace {

TEST(ConnectionTextTest, PasswordsOfConnectStringsAreHiddenInEveryForm) {
  EXPECT_EQ(WithoutPassword("Driver=X;PWD=s"), "Driver=X;PWD=***");
  EXPECT_EQ(WithoutPassword("password = s;UID=a"), "password =***;UID=a");
  EXPECT_EQ(WithoutPassword("PWD={a;}}b};UID=a"), "PWD=***;UID=a");
  EXPECT_EQ(WithoutPassword("PWD="), "PWD=***");
  EXPECT_EQ(WithoutPassword("PWD={open"), "PWD=***");
  EXPECT_EQ(WithoutPassword("Driver={A;PWD=b};UID=a;"), "Driver={A;PWD=b};UID=a;");
  EXPECT_EQ(WithoutPassword("DSN name;x"), "DSN name;x");
  EXPECT_EQ(WithoutPassword(""), "");
}

}  // namespace
}  // namespace velmoria::test
