#include "velmoria/design/links.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class LinksTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  RelationshipPtr lines_ = MakeDesign<RelationshipKind>({.Name = "Lines"});
  LinksPtr links_ = lines_->Links();
};

TEST_F(LinksTest, StandOnTheDefinitionsOfTheRelationship) {
  EXPECT_EQ(links_->Count(), 0);
  EXPECT_EQ(links_->Data(), lines_->Data()->LinksData());
}

TEST_F(LinksTest, ParentsReachAListThatIsThere) {
  const auto link = links_->SetupItem({.Name = "Id"});
  MakeDesign<ClassKind>({.Name = "Order"})->Relationships()->Add(lines_);
  const auto later = links_->SetupItem({.Name = "Number"});
  EXPECT_EQ(link->ClassName(), "Order");
  EXPECT_EQ(later->ClassName(), "Order");
  EXPECT_EQ(later->RelationshipName(), "Lines");
}

}  // namespace
}  // namespace velmoria::test
