#include <functional>
#include <string>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// Orders and their lines in a real database, where every write is seen by a connection that is not the library's.
class StoredModelTest : public BrokeringTest {
 protected:
  StoredModelTest() {
    shop_.Design.Line->Actions()->Item("Get")->Sources()->Item()->Parameters()->SetupItem(
        {.Name = "OrderId", .DataType = dtLongInteger, .SourceColumn = "OrderId", .Flags = pfInput});
    const RelationshipPtr lines = shop_.Design.Order->Relationships()->SetupItem(
        {.Name = "Lines", .RelatedServerName = "Sales", .RelatedClassName = "Line", .RelatedActionName = "Get"});
    const LinkPtr link = lines->Links()->SetupItem({.Name = "OrderId"});
    link->Property()->SetName("Id");
    link->Parameter()->SetName("OrderId");
  }
  std::string Stored(const char* column, const char* table) {
    return shop_.File.Column(std::string("select ") + column + " from " + table);
  }
  /// Number, class, routine, values of the placeholders and extra text of the failure, as it stands in the messages.
  std::string Told(zErrors number, const std::function<void()>& call) {
    apartment_.Messages().Clear();
    const auto error = Thrown(call);
    const auto wanted = static_cast<std::int32_t>(number);
    const MessagePtr message = apartment_.Messages().Item(std::to_string(wanted));
    if (!error || error->CatalogueNumber() != wanted || !message) return "(something else)";
    state_ = message->StateDetails();
    EXPECT_NE(error->Description().find(message->Description()), std::string::npos);
    return message->TypeName() + "." + message->RoutineName() + ": " + message->Description() + " <" +
           message->Replace1() + "|" + message->Replace2() + "|" + message->Replace3() + "|" + message->Replace4() +
           "> [" + message->ExtraText() + "]";
  }

  std::string state_;
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
  const std::string text = "Model.BusinessObjects: Problem finding business objects in BusinessContext.  Index: ";
  EXPECT_EQ(Told(errItem_BusinessObjects, [&] { order->BusinessObjects("Parts"); }), text + "'Parts' <'Parts'|||> []");
  EXPECT_EQ(state_, order->Details());
  EXPECT_EQ(Told(errItem_BusinessObjects, [&] { order->BusinessObjects(3); }), text + "3 <3|||> []");
  EXPECT_EQ(Told(errItem_BusinessObjects, [&] { order->BusinessObjects(order->Identifier()); }),
            text + "(Identifier) <(Identifier)|||> []");
}

TEST_F(StoredModelTest, MissingPropertiesAreToldWithTheirIndexAndTheDetailsOfTheObject) {
  const auto order = Order(1);
  const std::string text = "Model.Properties: Problem finding Properties in PropertyContext. Index: ";
  EXPECT_EQ(Told(errItem_Properties, [&] { order->Properties("Note"); }), text + "'Note' <'Note'|||> []");
  EXPECT_EQ(state_, order->Details());
  EXPECT_EQ(Told(errItem_Properties, [&] { order->Properties(2); }), text + "2 <2|||> []");
  EXPECT_EQ(Told(errItem_Properties, [&] { order->Properties(Variant::Null()); }), text + "(Null) <(Null)|||> []");
}

TEST_F(StoredModelTest, MissingPropertyIsToldWithItsIndexAndParameterAndTheDetailsOfTheObject) {
  const auto order = Order(1);
  const PropertyPtr like = Framework{}.CreateProperty({.Name = "Colour", .DataType = dtString});
  const std::string text = "Model.FindProperty: Problem finding Property.  Index: ";
  EXPECT_EQ(Told(errItem_Property, [&] { order->FindProperty("Colour"); }),
            text + "'Colour'  SourceName: ''  SourceKey: ''  Parameter: (Nothing) <'Colour'|||(Nothing)> []");
  EXPECT_EQ(state_, order->Details());
  EXPECT_EQ(Told(errItem_Property, [&] { order->FindProperty(4); }),
            text + "4  SourceName: ''  SourceKey: ''  Parameter: (Nothing) <4|||(Nothing)> []");
  EXPECT_EQ(Told(errItem_Property, [&] { order->FindProperty(Variant::Missing(), like); }),
            text + "'Error'  SourceName: ''  SourceKey: ''  Parameter: " + like->Details() + " <'Error'|||" +
                like->Details() + "> []");
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
  const std::string text = ": Problem initializing Line of Business object with a Model.  Identifier: ";
  EXPECT_EQ(Told(errBusinessObject_Initialize, [&] { orders->Item(2); }),
            "BusinessObjects.IBusinessObjects_Item" + text + "'2' <2|||> []");
  EXPECT_EQ(Told(errBusinessObject_Initialize, [&] { orders->SetupItem(); }),
            "BusinessObjects.IBusinessObjects_SetupItem" + text + "'0' <0|||> []");
  EXPECT_EQ(Told(errBusinessObject_Initialize,
                 [] { Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get"}); }),
            "BusinessContext.CreateBusinessObject" + text + "'0' <0|||> []");
  EXPECT_EQ(apartment_.Messages().Item("5")->SeverityFlags(), svfWarning) << "what the host said stands beside it";
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
    EXPECT_EQ(Told(errVelmoria_Locked, [&] { collection->Setup({}); }),
              "BusinessObjects.IBusinessObjects_Setup: This property is locked and cannot be changed. <|||> []");
    EXPECT_EQ(state_, collection->Details());
  }
}

}  // namespace
}  // namespace velmoria::test
