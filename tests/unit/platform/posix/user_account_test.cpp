#include "velmoria/platform/posix/user_account.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "tests/support/scoped_permissions.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

TEST(UserAccountTest, EffectiveUserHasTheNameAndHomeOfTheUserDataBase) {
  const auto* expected = getpwuid(geteuid());
  ASSERT_TRUE(expected);
  const auto user = EffectiveUser();
  ASSERT_TRUE(user);
  EXPECT_EQ(user->Name, expected->pw_name);
  EXPECT_EQ(user->HomeFolder, expected->pw_dir);
}

TEST(UserAccountTest, UserThatNobodyKnowsHasNone) {
  const TemporaryFolder folder;
  const ScopedUser stranger(folder.Path(), 54321);
  if (!stranger.IsOther() || getpwuid(geteuid()))
    GTEST_SKIP() << "Does not apply: only root can be a user nobody knows";
  EXPECT_FALSE(EffectiveUser());
}

}  // namespace
}  // namespace velmoria::test
