#include "velmoria/brokering/business_object.h"

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

struct Operation {
  const char* Called;
  void (*Do)(IBusinessObject& object);
};

void PrintTo(const Operation& operation, std::ostream* stream) { *stream << operation.Called; }

// All of the interface but ObjectType and the handshake.
constexpr Operation kOperations[] = {
    {"BusinessObjects", [](IBusinessObject& object) { object.BusinessObjects(1); }},
    {"BusinessObjectsCount", [](IBusinessObject& object) { object.BusinessObjectsCount(); }},
    {"Delete", [](IBusinessObject& object) { object.Delete(); }},
    {"Details", [](IBusinessObject& object) { object.Details(); }},
    {"Dirty", [](IBusinessObject& object) { object.Dirty(); }},
    {"EditFlagsDisplay", [](IBusinessObject& object) { object.EditFlagsDisplay(); }},
    {"EditFlags", [](IBusinessObject& object) { object.EditFlags(); }},
    {"Identifier", [](IBusinessObject& object) { object.Identifier(); }},
    {"Key", [](IBusinessObject& object) { object.Key(); }},
    {"Modifiable", [](IBusinessObject& object) { object.Modifiable(); }},
    {"ParentIdentifier", [](IBusinessObject& object) { object.ParentIdentifier(); }},
    {"PropertyCount", [](IBusinessObject& object) { object.PropertyCount(); }},
    {"PropertiesCount", [](IBusinessObject& object) { object.PropertiesCount(); }},
    {"Properties", [](IBusinessObject& object) { object.Properties(1); }},
    {"FindProperty", [](IBusinessObject& object) { object.FindProperty("Id"); }},
    {"StateFlags", [](IBusinessObject& object) { object.StateFlags(); }},
    {"StateFlagsDisplay", [](IBusinessObject& object) { object.StateFlagsDisplay(); }},
    {"Undo", [](IBusinessObject& object) { object.Undo(); }},
    {"Update", [](IBusinessObject& object) { object.Update(); }},
};

class OperationWithoutModelTest : public testing::TestWithParam<Operation> {
 protected:
  ScopedApartment apartment_;
};

TEST_P(OperationWithoutModelTest, IsAnObjectNotSetAndLeavesNoMessage) {
  const auto order = Make<BusinessObject>();
  const auto error = Thrown([&] { GetParam().Do(*order); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), 91);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

INSTANTIATE_TEST_SUITE_P(Table, OperationWithoutModelTest, testing::ValuesIn(kOperations));

class BusinessObjectTest : public testing::Test {
 protected:
  BusinessObjectTest() {
    model_->BusinessContext()->Add(Framework{}.CreateBusinessObjects({.Name = "Lines"}));
    order_->SetModel(model_);
  }

  ScopedApartment apartment_;
  BoundOrders orders_{{.Ids = {1042}}};
  IdentifierPtr parent_ = orders_.Design.Item->CreateIdentifier();
  ModelPtr model_ = orders_.Collection({.ParentIdentifier = parent_, .ObjectType = otModel})->Item(1)->GetModel();
  Ref<BusinessObject> order_ = Make<BusinessObject>();
};

TEST_F(BusinessObjectTest, KeepsTheModelThatTheHandshakeGives) {
  EXPECT_EQ(order_->GetModel(), model_);
  EXPECT_EQ(order_->ObjectType(), otBusiness);
  EXPECT_EQ(order_->ReportedType(), "BusinessObject");
}

TEST_F(BusinessObjectTest, AnswersWithTheObjectsOfItsModel) {
  const PropertyPtr parameter = Framework{}.CreateProperty({.Name = "Name", .DataType = dtString});
  EXPECT_EQ(order_->BusinessObjects("Lines"), model_->BusinessObjects(1));
  EXPECT_EQ(order_->Properties("Get"), model_->Properties(1));
  EXPECT_EQ(order_->FindProperty("Name"), model_->FindProperty(2));
  EXPECT_EQ(order_->FindProperty(Variant::Missing(), parameter), model_->FindProperty("Name"));
  EXPECT_EQ(order_->Identifier(), model_->Identifier());
  EXPECT_EQ(order_->ParentIdentifier(), parent_);
}

TEST_F(BusinessObjectTest, AnswersWithTheStateOfItsModel) {
  order_->FindProperty("Name")->SetValue("new");
  orders_.Action->SetEditFlags(efUpdate);
  EXPECT_TRUE(order_->Dirty());
  EXPECT_EQ(order_->StateFlags(), sfpersistent | sfdirty);
  EXPECT_EQ(order_->StateFlagsDisplay(), model_->StateFlagsDisplay());
  EXPECT_EQ(order_->EditFlags(), efUpdate);
  EXPECT_EQ(order_->EditFlagsDisplay(), "Update");
  EXPECT_TRUE(order_->Modifiable());
  order_->FindProperty("Name")->SetModifiable(false);
  EXPECT_FALSE(order_->Modifiable());
}

TEST_F(BusinessObjectTest, AnswersWithTheCountsAndTextsOfItsModel) {
  EXPECT_EQ(order_->BusinessObjectsCount(), 1);
  EXPECT_EQ(order_->PropertyCount(), 2);
  EXPECT_EQ(order_->PropertiesCount(), 1);
  EXPECT_EQ(order_->Details(), model_->Details());
  EXPECT_EQ(order_->Key(), "1042");
  EXPECT_EQ(order_->Key(Framework{}.CreateKeyFormat({.Separator = "|", .IncludeNames = true})), "Id|1042");
}

TEST_F(BusinessObjectTest, WritesDeletesAndTakesBackThroughItsModel) {
  order_->FindProperty("Name")->SetValue("new");
  order_->Update();
  EXPECT_EQ(orders_.Database->Updates, 1);
  order_->Delete();
  EXPECT_EQ(model_->StateFlags(), sfpersistent | sfpendingdelete);
  order_->Undo();
  EXPECT_EQ(model_->StateFlags(), sfpersistent);
}

TEST_F(BusinessObjectTest, FailureIsThatOfItsModel) {
  ExpectRaised(errItem_Property, [&] { order_->FindProperty("Colour"); }, {.Text = "Model.FindProperty", .Count = 1});
}

TEST_F(BusinessObjectTest, ModelIsItsOwnModelAndStaysSo) {
  model_->SetModel(Make<Model>());
  EXPECT_EQ(model_->GetModel(), model_);
  EXPECT_EQ(model_->ObjectType(), otModel);
}

}  // namespace
}  // namespace velmoria::test
