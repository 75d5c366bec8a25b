#include "velmoria/core/lockable.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class Gate final : public Lockable {
 public:
  std::string_view ReportedType() const noexcept override { return "Gate"; }
  void SetOpen(bool value) { LetUnlocked(Locked, Open, value, "Open (Let)"); }

  bool Locked = false;
  bool Open = false;
};

class LockableTest : public ::testing::Test {
 protected:
  ScopedApartment apartment_;
  Gate gate_;
};

TEST_F(LockableTest, SettingTakesItsValueWhileUnlocked) {
  gate_.SetOpen(true);
  EXPECT_TRUE(gate_.Open);
  gate_.SetOpen(false);
  EXPECT_FALSE(gate_.Open);
}

TEST_F(LockableTest, SettingKeepsItsValueOnceLocked) {
  gate_.Locked = true;
  ExpectRaised(errVelmoria_Locked, [&] { gate_.SetOpen(true); }, {.Count = 1});
  EXPECT_FALSE(gate_.Open);
}

}  // namespace
}  // namespace velmoria::test
