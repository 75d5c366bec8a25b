#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "velmoria/core/insert_at_impl.h"

namespace velmoria::test {
namespace {

class InsertAtTest : public testing::Test {
 protected:
  InsertAtTest() {
    list_.Add(1, "a");
    list_.Add(2, "b");
  }
  std::string Keys() const {
    std::string keys;
    for (std::size_t at = 1; at <= list_.Count(); ++at) keys += list_.KeyAt(at);
    return keys;
  }
  void ExpectFailedInsert(RuntimeFailure failure, const char* key, const Position& position) {
    const auto error = Thrown([&] { InsertAt(list_, 3, key, position); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), static_cast<std::int32_t>(failure));
    EXPECT_EQ(Keys(), "ab");
  }

  KeyedList<int> list_;
};

TEST_F(InsertAtTest, PlacesAMemberWhereThePositionSays) {
  struct Row {
    Position Where;
    const char* Keys;
  };
  const Row rows[] = {{{}, "abc"},
                      {{.Before = {}, .After = {}}, "abc"},
                      {{.Before = 1}, "cab"},
                      {{.Before = "B"}, "acb"},
                      {{.After = 1}, "acb"},
                      {{.After = "b"}, "abc"},
                      {{.Before = {}, .After = "a"}, "acb"}};
  for (const auto& row : rows) {
    auto list = list_;
    InsertAt(list_, 3, "c", row.Where);
    EXPECT_EQ(Keys(), row.Keys);
    list_ = list;
  }
}

TEST_F(InsertAtTest, BeforeWinsWhereBothAreGiven) {
  InsertAt(list_, 3, "c", {.Before = 1, .After = 2});
  EXPECT_EQ(Keys(), "cab");
}

TEST_F(InsertAtTest, PlaceThatIsNotThereFails) {
  ExpectFailedInsert(RuntimeFailure::SubscriptOutOfRange, "c", {.Before = 3});
  ExpectFailedInsert(RuntimeFailure::SubscriptOutOfRange, "c", {.After = 0});
  ExpectFailedInsert(RuntimeFailure::InvalidArgument, "c", {.Before = "c"});
  ExpectFailedInsert(RuntimeFailure::TypeMismatch, "c", {.After = Variant::Null()});
}

TEST_F(InsertAtTest, KeyInUseFails) { ExpectFailedInsert(RuntimeFailure::KeyInUse, "A", {.Before = 1}); }

}  // namespace
}  // namespace velmoria::test
