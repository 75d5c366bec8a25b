#include "velmoria/design/relationships.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class RelationshipsTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  ServerPtr sales_ = MakeDesign<ServerKind>({.Name = "Sales"});
  ClassPtr order_ = sales_->Classes()->SetupItem({.Name = "Order"});
  RelationshipsPtr relationships_ = order_->Relationships();
};

TEST_F(RelationshipsTest, AClassMakesThemOnce) {
  EXPECT_EQ(order_->Relationships(), relationships_);
  EXPECT_EQ(relationships_->Count(), 0);
  EXPECT_EQ(relationships_->Data(), order_->Data()->RelationshipsData());
}

TEST_F(RelationshipsTest, NamesOfTheParents) {
  EXPECT_EQ(relationships_->ServerName(), "Sales");
  EXPECT_EQ(relationships_->ClassName(), "Order");
  EXPECT_EQ(Make<Relationships>()->ServerName(), "");
  EXPECT_EQ(Make<Relationships>()->ClassName(), "");
}

TEST_F(RelationshipsTest, ParentsReachAListThatIsThere) {
  const auto line = MakeDesign<ClassKind>({.Name = "Line"});
  const auto lines = line->Relationships();
  const auto back = lines->SetupItem({.Name = "Order"});
  sales_->Classes()->Add(line);
  EXPECT_EQ(lines->ServerName(), "Sales");
  EXPECT_EQ(back->ServerName(), "Sales");
}

TEST_F(RelationshipsTest, AddingANameInUseFails) {
  relationships_->SetupItem({.Name = "Lines"});
  ExpectRaised(zErrors{15015}, [&] { relationships_->Add(MakeDesign<RelationshipKind>({.Name = "LINES"})); },
               {.Text = "Problem adding Relationship.  Name: 'LINES'  Before: '(Missing)'  After: '(Missing)'"});
}

TEST_F(RelationshipsTest, AddWithBothPositionsNamesThem) {
  relationships_->SetupItem({.Name = "Lines"});
  ExpectRaised(zErrors{15015}, [&] { relationships_->SetupItem({.Name = "Bills"}, {.Before = 1, .After = "Lines"}); },
               {.Text = "Problem adding Relationship.  Name: 'Bills'  Before: '1'  After: 'Lines'\r\n"
                        "Passing both Before and After arguments is not allowed.",
                .Count = 1});
}

TEST_F(RelationshipsTest, AnUnknownOneIsNotFound) {
  ExpectRaised(zErrors{15073}, [&] { relationships_->Item("Lines"); },
               {.Text = "Problem finding Relationship.  Index: 'Lines'", .Count = 1});
}

TEST_F(RelationshipsTest, RemovingWhatIsGoneFails) {
  relationships_->SetupItem({.Name = "Lines"});
  relationships_->Data()->Remove("Lines");
  ExpectRaised(zErrors{15143}, [&] { relationships_->Remove("Lines"); },
               {.Text = "Problem removing Relationship.  Index: 'Lines'"});
}

TEST_F(RelationshipsTest, RenameToTheSameNameInAnotherCaseFails) {
  relationships_->SetupItem({.Name = "Lines"});
  ExpectRaised(zErrors{15154}, [&] { relationships_->RenameItem("Lines", "LINES"); },
               {.Text = "Problem renaming Relationship.  Name: 'Lines'  NewName: 'LINES'", .Count = 1});
  EXPECT_EQ(relationships_->Item(1)->Name(), "Lines");
}

TEST_F(RelationshipsTest, DetailsCountForTheClass) {
  const auto lines = relationships_->SetupItem({.Name = "Lines"});
  EXPECT_EQ(relationships_->Details(), "Relationships Count 1 for Class 'Order'\r\n    " + lines->Details());
  EXPECT_EQ(relationships_->Data()->Details(), "Relationships Count 1\r\n    " + lines->Details());
  EXPECT_EQ(Make<Relationships>()->Details(), "Relationships Count 0");
}

}  // namespace
}  // namespace velmoria::test
