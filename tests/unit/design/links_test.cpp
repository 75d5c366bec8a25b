#include "velmoria/design/links.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
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

TEST_F(LinksTest, AddingANameInUseFails) {
  links_->SetupItem({.Name = "Id"});
  ExpectRaised(zErrors{15012}, [&] { links_->SetupItem({.Name = "ID"}); },
               {.Text = "Problem adding Link.  Name: 'ID'  Before: '(Missing)'  After: '(Missing)'"});
}

TEST_F(LinksTest, AddWithBothPositionsNamesThem) {
  links_->SetupItem({.Name = "Id"});
  ExpectRaised(zErrors{15012}, [&] { links_->Add(Make<Link>(), {.Before = 1, .After = 1}); },
               {.Text = "Problem adding Link.  Name: ''  Before: '1'  After: '1'\r\n"
                        "Passing both Before and After arguments is not allowed.",
                .Count = 1});
}

TEST_F(LinksTest, AnUnknownOneIsNotFound) {
  ExpectRaised(zErrors{15070}, [&] { links_->Item("Id"); }, {.Text = "Problem finding Link.  Index: 'Id'", .Count = 1});
}

TEST_F(LinksTest, RemovingWhatIsGoneFails) {
  links_->SetupItem({.Name = "Id"});
  links_->Data()->Remove("Id");
  ExpectRaised(zErrors{15140}, [&] { links_->Remove("Id"); }, {.Text = "Problem removing Link.  Index: 'Id'"});
}

TEST_F(LinksTest, RenameToTheSameNameInAnotherCaseFails) {
  links_->SetupItem({.Name = "Id"});
  ExpectRaised(zErrors{15152}, [&] { links_->RenameItem("Id", "ID"); },
               {.Text = "Problem renaming Link.  Name: 'Id'  NewName: 'ID'", .Count = 1});
  EXPECT_EQ(links_->Item(1)->Name(), "Id");
}

TEST_F(LinksTest, DetailsCountForTheRelationship) {
  links_->SetupItem({.Name = "Id"});
  EXPECT_EQ(links_->Details(), "Links Count 1 for Relationship 'Lines'\r\n    Link: 'Id'");
  EXPECT_EQ(links_->Data()->Details(), "Links Count 1\r\n    Link: 'Id'");
  EXPECT_EQ(Make<Links>()->Details(), "Links Count 0");
}

}  // namespace
}  // namespace velmoria::test
