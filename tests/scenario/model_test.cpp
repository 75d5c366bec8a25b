#include <string>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/component_offer.h"
#include "tests/support/refusal.h"

namespace velmoria::test {
namespace {

/// Orders and their lines in a real database, where every write is seen by a connection that is not the library's.
class StoredModelTest : public BrokeringTest {
 protected:
  StoredModelTest() { shop_.RelateLines(); }
  std::string Stored(const char* column, const char* table) {
    return shop_.File.Column(std::string("select ") + column + " from " + table);
  }
};

TEST_F(StoredModelTest, RelatedCollectionIsLoadedOnFirstUseAndFoundInTheContextOnTheSecond) {
  const auto order = Order(1);
  EXPECT_EQ(order->BusinessObjectsCount(), 0);
  const auto lines = order->BusinessObjects("Lines");
  shop_.File.Run("delete from lines");
  EXPECT_EQ(order->BusinessObjects("Lines"), lines);
  EXPECT_EQ(lines->Count(), 2);
  EXPECT_EQ(order->GetModel()->BusinessContext()->Item("Lines"), lines);
}

TEST_F(StoredModelTest, ListenerOfBusinessObjectsNotFoundProvidesACollectionAndNoErrorFollows) {
  const auto order = Order(1);
  const auto supplied = Framework{}.GetBusinessObjects({.ClassName = "Item"});
  order->GetModel()->BusinessObjectsNotFound +=
      [&](const Variant&, IBusinessObjectsPtr& BusinessObjects) { BusinessObjects = supplied; };
  apartment_.Messages().Clear();
  EXPECT_EQ(order->BusinessObjects("Items"), supplied);
  EXPECT_EQ(order->BusinessObjects(7), supplied);
  EXPECT_EQ(apartment_.Messages().Count(), 0) << apartment_.Messages().Details();
  EXPECT_EQ(order->BusinessObjectsCount(), 0) << "what a listener provides is not kept";
}

TEST_F(StoredModelTest, DeleteWithoutRecursiveLeavesRelatedObjectsUnflaggedAndTheirRowsInPlace) {
  const auto order = Order(1);
  const auto line = order->BusinessObjects("Lines")->Item(1);
  order->GetModel()->Delete();
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(line->StateFlags(), sfpersistent);
  order->GetModel()->Update(true);
  EXPECT_EQ(Stored("Id", "orders"), "2|3");
  EXPECT_EQ(Stored("Product", "lines"), "Lamp|Chair|Rug");
}

TEST_F(StoredModelTest, DeleteWithRecursiveFlagsRelatedObjectsAndTheirRowsGoWithTheNextRecursiveUpdate) {
  const auto order = Order(1);
  const auto line = order->BusinessObjects("Lines")->Item(2);
  order->GetModel()->Delete(true);
  EXPECT_EQ(line->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(Stored("Id", "orders"), "1|2|3");
  order->GetModel()->Update(true);
  EXPECT_EQ(Stored("Id", "orders"), "2|3");
  EXPECT_EQ(Stored("Product", "lines"), "Rug");
}

TEST_F(StoredModelTest, ObjectTypeOfAModelIsOtModelWhereverItComesFrom) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  shop_.Design.Order->SetActiveXClass("Order");
  const auto host = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness});
  const IBusinessObjectPtr models[] = {
      Order(1), Order(1)->BusinessObjects("Lines")->Item(1),
      Framework{}.GetBusinessObjects({.ClassName = "Order"})->SetupItem(),
      Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otModel}),
      host->GetModel()};
  for (const auto& model : models) EXPECT_EQ(model->ObjectType(), otModel);
  EXPECT_EQ(host->ObjectType(), otBusiness);
}

TEST_F(StoredModelTest, CancelledBeforeUpdateWritesNothingAndRaisesNoAfterUpdate) {
  const auto order = Order(1);
  const auto line = order->BusinessObjects("Lines")->Item(1);
  int after = 0;
  order->GetModel()->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  order->GetModel()->AfterUpdate += [&] { ++after; };
  order->FindProperty("Name")->SetValue("Adele");
  line->FindProperty("Product")->SetValue("Torch");
  order->GetModel()->Update(true);
  EXPECT_EQ(Stored("Name", "orders"), "Ada|Ben|Cyd");
  EXPECT_EQ(Stored("Product", "lines"), "Lamp|Chair|Rug");
  EXPECT_EQ(after, 0);
  EXPECT_TRUE(order->Dirty());
}

TEST_F(StoredModelTest, EventsOfUpdateStandAroundTheObjectsOwnRowAndThoseOfItsRelatedOnes) {
  const auto order = Order(1);
  const auto line = order->BusinessObjects("Lines")->Item(1);
  std::string seen;
  order->GetModel()->BeforeUpdate += [&](bool&) { seen += Stored("Name", "orders where Id = 1") + ";"; };
  line->GetModel()->BeforeUpdate += [&](bool&) { seen += Stored("Name", "orders where Id = 1") + ";"; };
  order->GetModel()->AfterUpdate += [&] { seen += Stored("Product", "lines where OrderId = 1"); };
  order->FindProperty("Name")->SetValue("Adele");
  line->FindProperty("Product")->SetValue("Torch");
  order->GetModel()->Update(true);
  EXPECT_EQ(seen, "Ada;Adele;Torch|Chair");
}

TEST_F(StoredModelTest, CancelledDeleteFlagsNeitherTheObjectNorItsRelatedOnes) {
  const auto order = Order(1);
  const auto line = order->BusinessObjects("Lines")->Item(1);
  order->GetModel()->BeforePendingDelete += [](bool& Cancel) { Cancel = true; };
  order->GetModel()->Delete(true);
  order->GetModel()->Update(true);
  EXPECT_EQ(line->StateFlags(), sfpersistent);
  EXPECT_EQ(Stored("Id", "orders"), "1|2|3");
}

TEST_F(StoredModelTest, DetailsTellTheRowAndWhatHangsOnIt) {
  const auto order = Order(1);
  order->BusinessObjects("Lines");
  order->Properties("Detail");
  EXPECT_EQ(order->Details(),
            "Model for Server: 'Sales'  Class: 'Order'\r\n    Identifier Key: '1'\r\n    Property Count 5\r\n"
            "    Business Objects Count 1");
}

TEST_F(StoredModelTest, MissingCollectionIsToldWithItsIndexAndTheDetailsOfTheObject) {
  const auto order = Order(1);
  const auto missing = [](const std::string& index) {
    return Refusal{errItem_BusinessObjects,
                   "Model.BusinessObjects",
                   "Problem finding business objects in BusinessContext.  Index: " + index,
                   {index}};
  };
  const auto state = ExpectRefusal(missing("'Parts'"), [&] { order->BusinessObjects("Parts"); });
  EXPECT_EQ(state, order->Details());
  ExpectRefusal(missing("3"), [&] { order->BusinessObjects(3); });
  ExpectRefusal(missing("(Identifier)"), [&] { order->BusinessObjects(order->Identifier()); });
}

TEST_F(StoredModelTest, MissingPropertiesAreToldWithTheirIndexAndTheDetailsOfTheObject) {
  const auto order = Order(1);
  const auto missing = [](const std::string& index) {
    return Refusal{errItem_Properties,
                   "Model.Properties",
                   "Problem finding Properties in PropertyContext. Index: " + index,
                   {index}};
  };
  const auto state = ExpectRefusal(missing("'Note'"), [&] { order->Properties("Note"); });
  EXPECT_EQ(state, order->Details());
  ExpectRefusal(missing("2"), [&] { order->Properties(2); });
  ExpectRefusal(missing("(Null)"), [&] { order->Properties(Variant::Null()); });
}

TEST_F(StoredModelTest, MissingPropertyIsToldWithItsIndexAndParameterAndTheDetailsOfTheObject) {
  const auto order = Order(1);
  const auto missing = [](const std::string& index, const std::string& parameter = "(Nothing)") {
    return Refusal{
        errItem_Property,
        "Model.FindProperty",
        "Problem finding Property.  Index: " + index + "  SourceName: ''  SourceKey: ''  Parameter: " + parameter,
        {index, "", "", parameter}};
  };
  const auto state = ExpectRefusal(missing("'Colour'"), [&] { order->FindProperty("Colour"); });
  EXPECT_EQ(state, order->Details());
  ExpectRefusal(missing("4"), [&] { order->FindProperty(4); });
  const PropertyPtr like = Framework{}.CreateProperty({.Name = "Colour", .DataType = dtString});
  ExpectRefusal(missing("'Error'", like->Details()), [&] { order->FindProperty(Variant::Missing(), like); });
}

/// The shop with a class of the host for orders.
template <class T>
class StoredHostObjectTest : public StoredModelTest {
 protected:
  StoredHostObjectTest() {
    shop_.Design.Order->SetActiveXClass("Order");
    shop_.OrderAction("Get")->SetObjectType(otBusiness);
  }
  ComponentOffer<T> offer_{"Sales.Order"};
};

/// One that takes its Model and drops it.
class ForgetfulOrder final : public BusinessObject {
 public:
  void SetModel(ModelPtr) override {}
};

using RefusedHandshakeTest = StoredHostObjectTest<RefusingOrder>;
using ForgottenHandshakeTest = StoredHostObjectTest<ForgetfulOrder>;
using KeptHandshakeTest = StoredHostObjectTest<HostOrder>;

TEST_F(RefusedHandshakeTest, EveryRoutineThatMakesAnObjectTellsTheRefusalWithItsKey) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order"});
  const auto refused = [](const char* place, const std::string& key) {
    return Refusal{errBusinessObject_Initialize,
                   place,
                   "Problem initializing Line of Business object with a Model.  Identifier: '" + key + "'",
                   {key}};
  };
  ExpectRefusal(refused("BusinessObjects.IBusinessObjects_Item", "2"), [&] { orders->Item(2); });
  ExpectRefusal(refused("BusinessObjects.IBusinessObjects_SetupItem", "0"), [&] { orders->SetupItem(); });
  ExpectRefusal(refused("BusinessContext.CreateBusinessObject", "0"),
                [] { Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get"}); });
}

TEST_F(RefusedHandshakeTest, WhatTheHostSaidStandsBesideTheRefusalAsAWarning) {
  EXPECT_TRUE(Thrown([&] { Order(2); }));
  EXPECT_TRUE(WarnedOf("no thanks")) << apartment_.Messages().Details();
}

TEST_F(ForgottenHandshakeTest, ObjectThatDidNotKeepItsModelHasNoWayToItsRow) {
  const auto order = Order(1);
  EXPECT_EQ(order->GetModel(), nullptr);
  EXPECT_TRUE(Thrown([&] { order->FindProperty("Name"); }));
  EXPECT_TRUE(Thrown([&] { order->Update(); }));
}

TEST_F(KeptHandshakeTest, HostObjectReadsWritesAndNavigatesThroughItsModel) {
  const auto order = Order(1);
  ASSERT_EQ(order->ObjectType(), otBusiness);
  EXPECT_EQ(order->BusinessObjects("Lines")->Count(), 2);
  EXPECT_EQ(order->BusinessObjectsCount(), 1);
  order->FindProperty("Name")->SetValue("Adele");
  order->Update();
  EXPECT_EQ(Stored("Name", "orders"), "Adele|Ben|Cyd");
}

TEST_F(StoredModelTest, CollectionThatIsNoHostsOwnRefusesTheHandshakeOfOne) {
  const auto bound = Framework{}.GetBusinessObjects({.ClassName = "Order"});
  const auto free = Framework{}.CreateBusinessObjects({.Name = "Own"});
  for (const auto& collection : {bound, free}) {
    const auto state = ExpectRefusal({errVelmoria_Locked, "BusinessObjects.IBusinessObjects_Setup",
                                      "This property is locked and cannot be changed."},
                                     [&] { collection->Setup({}); });
    EXPECT_EQ(state, collection->Details());
  }
}

}  // namespace
}  // namespace velmoria::test
