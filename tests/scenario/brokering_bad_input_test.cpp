#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_bad_input_fixture.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

using Request = void (*)(BusinessContext&);

TEST_F(BrokeringBadInputTest, UnknownServerIsRefusedByEveryRequestAndStaysSelected) {
  const Request requests[] = {
      [](auto& c) { c.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1, .ServerName = "Nowhere"}); },
      [](auto& c) { c.GetBusinessObjects({.ClassName = "Order", .ServerName = "Nowhere"}); },
      [](auto& c) { c.LoadBusinessObjects({.ClassName = "Order", .ServerName = "Nowhere"}); },
      [](auto& c) { c.CreateBusinessObject({.ClassName = "Order", .ServerName = "Nowhere"}); },
      [](auto& c) { c.Execute({.ClassName = "Order", .ServerName = "Nowhere"}); },
  };
  for (const auto request : requests) {
    ExpectRaised(errItem_Server, [&] { request(*context_); },
                 {.Text = "Problem finding Server.  Index: 'Nowhere'", .Count = 1});
    EXPECT_EQ(context_->ServerName() + context_->ClassName(), "Nowhere");
  }
}

TEST_F(BrokeringBadInputTest, UnknownServerWithoutAClassIsARequestForAnActionOfNoClass) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->GetBusinessObjects({.ServerName = "Nowhere"}); });
  ExpectRaised(errRequires_Class,
               [&] { context_->GetBusinessObjects({.ActionName = "All", .ServerName = "Nowhere"}); });
}

TEST_F(BrokeringBadInputTest, UnknownClassIsRefusedUnderTheNameAsItWasGiven) {
  for (const char* name : {"Nothing", " Order", "Order ", "'", "Ord\xc3\xa4r", "Sales.Order", "1"}) {
    const std::string shown = "Problem finding Class.  Index: '" + std::string(name) + "'";
    ExpectRaised(errItem_Class, [&] { context_->GetBusinessObject({.ClassName = name, .KeyValue1 = 1}); },
                 {.Text = shown + "\r\nCan't find Class in registered Servers.", .Count = 1});
    ExpectRaised(errItem_Class, [&] { context_->GetBusinessObjects({.ClassName = name, .ServerName = "Sales"}); },
                 {.Text = shown, .Count = 1});
    context_->SetServerName("");
  }
}

TEST_F(BrokeringBadInputTest, ClassNameOfMegabytesIsShownWhole) {
  const std::string name(1 << 20, 'x');
  ExpectRaised(errItem_Class, [&] { context_->CreateBusinessObject({.ClassName = name}); }, {.Text = name});
}

TEST_F(BrokeringBadInputTest, UnknownActionIsRefusedByEveryRequestAndTheClassStaysSelected) {
  const Request requests[] = {
      [](auto& c) { c.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1, .ActionName = "Nothing"}); },
      [](auto& c) { c.GetBusinessObjects({.ClassName = "Order", .ActionName = "Nothing"}); },
      [](auto& c) { c.CreateBusinessObject({.ClassName = "Order", .ActionName = "Nothing"}); },
      [](auto& c) { c.Execute({.ClassName = "Order", .ActionName = "Nothing"}); },
  };
  for (const auto request : requests) {
    ExpectRaised(errItem_Action, [&] { request(*context_); },
                 {.Text = "Problem finding Action.  Index: 'Nothing'", .Count = 1});
    EXPECT_EQ(context_->ClassName() + "." + context_->ActionName(), "Order.");
  }
}

TEST_F(BrokeringBadInputTest, UnknownNamesOfAnObjectAreRefusedAndItStaysReadable) {
  const auto order = Get(2);
  ExpectRaised(errItem_Property, [&] { order->FindProperty("Nothing"); }, {.Text = "Index: 'Nothing'"});
  ExpectRaised(errItem_Properties, [&] { order->Properties("Nothing"); }, {.Text = "Index: 'Nothing'"});
  ExpectRaised(errItem_BusinessObjects, [&] { order->BusinessObjects("Nothing"); }, {.Text = "Index: 'Nothing'"});
  const auto own = order->GetModel()->BusinessContext();
  ExpectRaised(errItem_Relationship, [&] { own->GetBusinessObjects({.RelationshipName = "Nothing"}); },
               {.Text = "Index: 'Nothing'"});
  EXPECT_EQ(own->Count(), 0);
  EXPECT_EQ(Value(order, "Name"), Variant("Ben"));
}

TEST_F(BrokeringBadInputTest, ObjectTypeThatIsNoneServesModels) {
  const auto odd = static_cast<zObjectTypes>(7);
  const auto orders = context_->GetBusinessObjects({.ClassName = "Order", .ObjectType = odd});
  EXPECT_EQ(orders->Item(2)->ObjectType(), otModel);
  const auto created = context_->CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = odd});
  EXPECT_EQ(created->ObjectType(), otModel);
  EXPECT_NE(context_->Details().find("ObjectTypes: '"), std::string::npos);
}

TEST_F(BrokeringBadInputTest, CollectionTypeThatIsNoneStillGivesItsObjects) {
  const auto orders =
      context_->GetBusinessObjects({.ClassName = "Order", .CollectionType = static_cast<zCollectionTypes>(9)});
  EXPECT_EQ(IdOf(*orders->Item(3)), 3);
  EXPECT_EQ(orders->Count(), 3);
}

TEST_F(BrokeringBadInputTest, NoKeyValueIsTheWholeTable) {
  ExpectRaised(errMismatch_Count, [&] { context_->GetBusinessObject({.ClassName = "Order"}); },
               {.Text = "Expected: 1  Found: 3", .Count = 1});
}

TEST_F(BrokeringBadInputTest, EmptyKeyValueChoosesTheSingleActionAndNoRow) {
  ExpectRaised(errMismatch_Count, [&] { Get(Variant()); }, {.Text = "Expected: 1  Found: 3"});
  EXPECT_TRUE(context_->KeyValue1().IsEmpty());
}

TEST_F(BrokeringBadInputTest, NullKeyValueFindsNoRow) {
  ExpectRaised(errBusinessObject_Get, [&] { Get(Variant::Null()); });
}

TEST_F(BrokeringBadInputTest, KeyValuesThatConvertFindTheirRow) {
  const Variant keys[] = {"2", " 2 ", 2.0, 2.5F, std::int16_t{2}, Byte{2}, Decimal::Parse("2.4"), Currency{20000}};
  for (const Variant& key : keys) {
    SCOPED_TRACE(key.TypeName());
    EXPECT_EQ(Value(Get(key), "Name"), Variant("Ben"));
  }
}

TEST_F(BrokeringBadInputTest, KeyValuesOfNoRowAreThatRowMissing) {
  const Variant keys[] = {0, -1, true, 2147483647, "-7", Date{2.0 + 35000}};
  for (const Variant& key : keys) {
    SCOPED_TRACE(key.TypeName() + " " + key.AsText());
    ExpectRaised(errBusinessObject_Get, [&] { Get(key); });
  }
}

TEST_F(BrokeringBadInputTest, KeyValuesThatDoNotConvertAreRefusedByTheProperty) {
  const std::pair<Variant, const char*> keys[] = {
      {"two", "String"},
      {"", "String"},
      {"2; drop table orders", "String"},
      {3e10, "Double"},
      {"99999999999999999999", "String"},
      {Variant(std::vector<Byte>{2}), "Byte()"},
      {Variant::ArrayOfValues({2, 3}), "Variant()"},
      {Variant(IdentifierPtr{}), "Nothing"},
      {Variant(context_), "BusinessContext"},
  };
  for (const auto& [key, type] : keys) {
    SCOPED_TRACE(type);
    ExpectRaised(errProperty_DataType, [&, use = key] { Get(use); },
                 {.Text = "Property: 'Id' DataType: 'Long Integer'  ValueDataType: '" + std::string(type) + "'"});
    EXPECT_EQ(context_->KeyValue1(), key) << "what was asked for is still held";
    ExpectRaised(errProperty_DataType, [&] { context_->GetBusinessObject(); });
    ExpectUnharmed();
  }
}

TEST_F(BrokeringBadInputTest, KeyValuesWithoutATextAreShownByTheirType) {
  context_->SetKeyValue1(Variant::ArrayOfValues({2}));
  context_->SetKeyValue2(Variant::Null());
  context_->SetKeyValue3(Variant(context_));
  context_->SetKeyValue4(Variant::Missing());
  EXPECT_NE(context_->Details().find("KeyValue1: '(Variant())'  KeyValue2: ''  KeyValue3: '(BusinessContext)'  "
                                     "KeyValue4: '(Error)'"),
            std::string::npos)
      << context_->Details();
}

TEST_F(BrokeringBadInputTest, TooManyKeyValuesAreIgnoredWhateverTheyAre) {
  EXPECT_EQ(Value(Get(2, Variant::ArrayOfValues({"x"})), "Name"), Variant("Ben"));
  EXPECT_EQ(Value(Get(2, Variant(context_)), "Name"), Variant("Ben"));
}

TEST_F(BrokeringBadInputTest, TooFewKeyValuesFindNoRow) {
  ExpectRaised(errBusinessObject_Get, [&] { context_->GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1}); });
}

TEST_F(BrokeringBadInputTest, SecondKeyValueWithoutTheFirstIsNotLookedAt) {
  ExpectRaised(errMismatch_Count,
               [&] { context_->GetBusinessObject({.ClassName = "Line", .KeyValue2 = 2, .KeyValue3 = 3}); },
               {.Text = "Found: 3"});
  EXPECT_TRUE(context_->KeyValue2().IsEmpty());
}

TEST_F(BrokeringBadInputTest, KeyOfTwoRowsIsAnErrorAndNoFirstRowAnswer) {
  ExpectRaised(errMismatch_Count,
               [&] { context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ActionName = "Detail"}); },
               {.Text = "Object Count mismatch.  Expected: 1  Found: 2"});
}

TEST_F(BrokeringBadInputTest, IdentifierOfNothingIsRefused) {
  ExpectRaised(errItem_Class, [&] { context_->GetBusinessObject({.Identifier = Make<Identifier>()}); },
               {.Text = "Index: ''"});
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->SetIdentifier(Make<Identifier>()); });
  const auto pinned =
      NewContext({.ServerName = "Sales", .ServerLocked = true, .ClassName = "Order", .ClassLocked = true});
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { pinned->GetBusinessObject({.Identifier = Make<Identifier>()}); });
  EXPECT_EQ(pinned->GetBusinessObject({.KeyValue1 = 2})->Key(), "2");
}

TEST_F(BrokeringBadInputTest, IdentifierWithoutValuesIsTheWholeTable) {
  ExpectRaised(errMismatch_Count,
               [&] { context_->GetBusinessObject({.Identifier = shop_.Design.Order->CreateIdentifier()}); },
               {.Text = "Expected: 1  Found: 3"});
}

TEST_F(BrokeringBadInputTest, IdentifierOfAClassThatIsGoneIsRefused) {
  const auto identifier =
      Framework{}.GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 2})->Identifier();
  shop_.Design.Sales->Classes()->Remove("Line");
  ExpectRaised(errItem_Class, [&] { context_->GetBusinessObject({.Identifier = identifier}); },
               {.Text = "Index: 'Line'"});
}

TEST_F(BrokeringBadInputTest, IdentifierGoesBeforeTheNamesOfAnotherClass) {
  const auto line = context_->GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 2});
  const auto again = context_->GetBusinessObject({.ClassName = "Order", .Identifier = line->Identifier()});
  EXPECT_EQ(Value(again, "Product"), Variant("Chair"));
}

TEST_F(BrokeringBadInputTest, IdentifierOfAClassThatThePinnedServerDoesNotHaveIsRefused) {
  const auto pinned = NewContext({.ServerName = "Stock", .ServerLocked = true});
  const IdentifierPtr identifier = Get(2)->Identifier();
  ExpectRaised(errItem_Class, [&] { pinned->GetBusinessObject({.Identifier = identifier}); },
               {.Text = "Index: 'Order'"});
  EXPECT_EQ(pinned->GetBusinessObjects({.ClassName = "Item"})->Count(), 0);
}

TEST_F(BrokeringBadInputTest, ParametersOfAnotherTableAreRefusedByTheDatabase) {
  const PropertiesPtr parameters = shop_.Design.Line->CreateIdentifier()->Properties()->Copy();
  parameters->Item("LineNo")->SetValue(1);
  ExpectRaised(errRDO_Table, [&] { context_->GetBusinessObjects({.ClassName = "Order", .Parameters = parameters}); },
               {.Text = "orders"});
}

TEST_F(BrokeringBadInputTest, ParametersOfNothingAreTheWholeTable) {
  const auto orders =
      context_->GetBusinessObjects({.ClassName = "Order", .Parameters = Framework{}.CreateProperties()});
  EXPECT_EQ(Ids(*orders), "1,2,3");
}

TEST_F(BrokeringBadInputTest, SetupThatFailsPinsNothing) {
  const BusinessContextFields fields[] = {
      {.ServerName = "Nowhere", .ServerLocked = true, .ClassName = "Order", .Locked = true},
      {.ClassName = "Nothing", .ClassLocked = true, .Locked = true},
      {.SupportsLoad = false, .ClassName = "Order", .ActionName = "Nothing", .ActionLocked = true},
      {.ClassName = "Order", .RelationshipName = "Nothing", .RelationshipLocked = true}};
  for (const auto& each : fields) {
    EXPECT_TRUE(Thrown([&] { context_->Setup(each); }));
    EXPECT_FALSE(context_->Locked() || context_->ServerLocked() || context_->ClassLocked());
    EXPECT_FALSE(context_->ActionLocked() || context_->RelationshipLocked());
    EXPECT_TRUE(context_->SupportsLoad());
    apartment_.Messages().Clear();
    context_->SetServerName("");
  }
}

TEST_F(BrokeringBadInputTest, RelationshipToItselfLeadsToTheSameRowInAnotherObject) {
  shop_.Design.Order->Relationships()->SetupItem(
      {.Name = "Self", .RelatedServerName = "Sales", .RelatedClassName = "Order", .RelatedActionName = "Get"});
  IBusinessObjectPtr order = Get(2);
  for (int step = 0; step < 5; ++step) {
    const auto same = order->BusinessObjects("Self");
    EXPECT_EQ(Ids(*same), "2");
    EXPECT_NE(same->Item(1), order);
    order = same->Item(1);
  }
  order->GetModel()->Update(true);
  order->Undo();
}

}  // namespace
}  // namespace velmoria::test
