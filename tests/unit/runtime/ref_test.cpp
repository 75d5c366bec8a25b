#include "velmoria/runtime/ref.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "velmoria/runtime/object.h"

namespace velmoria {
namespace {

/// Says through a flag of the test whether it is still there.
class Shelf : public Object {
 public:
  Shelf(bool& isThere, std::vector<std::string> books) : isThere_(isThere), books_(std::move(books)) {
    isThere_ = true;
  }
  ~Shelf() override { isThere_ = false; }

  auto begin() const { return books_.begin(); }
  auto end() const { return books_.end(); }

 private:
  bool& isThere_;
  std::vector<std::string> books_;
};

class Box : public Object {};

static_assert(!Walkable<Box>);

class HandleWalkTest : public testing::Test {
 protected:
  Ref<Shelf> NewShelf(std::vector<std::string> books = {"a", "b", "c"}) {
    return Make<Shelf>(isThere_, std::move(books));
  }

  bool isThere_ = false;
  std::string seen_;
};

TEST_F(HandleWalkTest, VisitsTheMembersInOrder) {
  const auto shelf = NewShelf();
  for (const auto& book : shelf) seen_ += book;
  EXPECT_EQ(seen_, "abc");
}

TEST_F(HandleWalkTest, NothingIsVisitedWhereNothingIs) {
  for (const auto& book : NewShelf({})) seen_ += book;
  EXPECT_EQ(seen_, "");
  EXPECT_FALSE(isThere_);
}

TEST_F(HandleWalkTest, CollectionThatNobodyElseHoldsLivesAsLongAsTheWalk) {
  for (const auto& book : NewShelf()) {
    EXPECT_TRUE(isThere_);
    seen_ += book;
  }
  EXPECT_EQ(seen_, "abc");
  EXPECT_FALSE(isThere_);
}

TEST_F(HandleWalkTest, CollectionDroppedDuringTheWalkLivesToItsEnd) {
  auto shelf = NewShelf();
  for (const auto& book : shelf) {
    shelf.reset();
    EXPECT_TRUE(isThere_);
    seen_ += book;
  }
  EXPECT_EQ(seen_, "abc");
  EXPECT_FALSE(isThere_);
}

TEST_F(HandleWalkTest, AnotherCollectionInTheHandleDoesNotDivertTheWalk) {
  bool otherIsThere = false;
  auto shelf = NewShelf();
  for (const auto& book : shelf) {
    shelf = Make<Shelf>(otherIsThere, std::vector<std::string>{"x"});
    seen_ += book;
  }
  EXPECT_EQ(seen_, "abc");
}

TEST_F(HandleWalkTest, WalkThatIsBrokenOffKeepsNothing) {
  for (const auto& book : NewShelf()) {
    seen_ += book;
    break;
  }
  EXPECT_EQ(seen_, "a");
  EXPECT_FALSE(isThere_);
}

TEST_F(HandleWalkTest, EmptyHandleIsAnObjectNotSet) {
  const Ref<Shelf> none;
  int number = 0;
  try {
    for (const auto& book : none) seen_ += book;
  } catch (const Error& error) { number = error.Number(); }
  EXPECT_EQ(number, 91);
}

}  // namespace
}  // namespace velmoria
