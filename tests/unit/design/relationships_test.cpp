#include "velmoria/design/relationships.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
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

}  // namespace
}  // namespace velmoria::test
