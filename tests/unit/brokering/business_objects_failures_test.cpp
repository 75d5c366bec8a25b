#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"

namespace velmoria::test {
namespace {

/// One refusal as the host meets it, and as Messages holds it.
struct Refusal {
  zErrors Number;
  const char* Routine;
  const char* Text;
  std::vector<std::string> Replaces{};
  const char* ExtraText = "";
};

class BusinessObjectsFailuresTest : public BoundBusinessObjectsTest {
 protected:
  static BusinessObjectsPtr Transient(const KeyFormatPtr& format = {}, bool supports = true, bool locked = false) {
    auto collection = Make<BusinessObjects>();
    collection->SetupTransient("Mine", format, supports, locked, {}, supports);
    return collection;
  }
  BusinessObjectsPtr Bound(zObjectTypes objectType = otModel, zCollectionTypes collectionType = cltOptimized) const {
    return orders_.Collection({.ObjectType = objectType, .CollectionType = collectionType});
  }
  IBusinessObjectPtr Member() const { return Bound()->Item(2); }
  IdentifierPtr KeyOfTwo() const {
    const IdentifierPtr identifier = orders_.Design.Order->CreateIdentifier();
    identifier->Properties()->Item(1)->SetValue(2);
    return identifier;
  }

  template <class Routine>
  void Expect(const Refusal& expected, Routine&& routine) {
    SCOPED_TRACE(expected.Text);
    const auto number = static_cast<std::int32_t>(expected.Number);
    const auto raised = Thrown(std::forward<Routine>(routine));
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->Number(), ErrorBase + number);
    const MessagePtr held = apartment_.Messages().Item(std::to_string(number));
    ASSERT_TRUE(held);
    EXPECT_EQ(held->Description(), expected.Text);
    EXPECT_EQ(held->ExtraText(), expected.ExtraText);
    EXPECT_EQ(held->TypeName(), "BusinessObjects");
    EXPECT_EQ(held->RoutineName(), expected.Routine);
    EXPECT_NE(raised->Description().find(expected.Text), std::string::npos);
    EXPECT_NE(raised->Description().find(expected.ExtraText), std::string::npos);
    ExpectReplaces(*held, expected.Replaces);
    apartment_.Messages().Clear();
  }

  static void ExpectReplaces(const Message& held, std::vector<std::string> expected) {
    expected.resize(4);
    EXPECT_EQ((std::vector<std::string>{held.Replace1(), held.Replace2(), held.Replace3(), held.Replace4()}), expected);
  }
};

TEST_F(BusinessObjectsFailuresTest, AddWithBothPositions) {
  constexpr const char* both = "Passing both Before and After arguments is not allowed.";
  Expect({errAdd_BusinessObject,
          "IBusinessObjects_Add",
          "Problem adding business object.  Key: '2'  Before: '1'  After: 'x'",
          {"2", "'1'", "'x'"},
          both},
         [&] { Transient()->Add(Member(), {.Before = 1, .After = "x"}); });
  Expect({errAdd_BusinessObject,
          "IBusinessObjects_Add",
          "Problem adding business object.  Key: ''  Before: '(Date)'  After: '2'",
          {"", "'(Date)'", "'2'"},
          both},
         [&] { Transient(Keyless())->Add(Member(), {.Before = Date::From(1998, 6, 1), .After = 2}); });
}

TEST_F(BusinessObjectsFailuresTest, AddAndRemoveNotSupported) {
  const Refusal add{errNotSupported_Add, "IBusinessObjects_Add", "The Add method of this collection is not supported."};
  const Refusal remove{errNotSupported_Remove, "IBusinessObjects_Remove",
                       "The Remove method of this collection is not supported."};
  for (const auto& collection : {Transient({}, false), Bound()}) {
    Expect(add, [&] { collection->Add(Member()); });
    Expect(remove, [&] { collection->Remove(1); });
  }
}

TEST_F(BusinessObjectsFailuresTest, ItemThatATransientCollectionLacks) {
  const auto mine = Transient();
  const auto expect = [&](const Variant& index, const std::string& shown) {
    const std::string text = "Problem finding business object.  Index: " + shown;
    Expect({errItem_BusinessObject, "IBusinessObjects_Item", text.c_str(), {shown}}, [&] { mine->Item(index); });
  };
  expect(3, "3");
  expect(-1, "-1");
  expect("x", "'x'");
  expect("O'Brien", "'O'Brien'");
  expect(true, "(Boolean)");
  expect(Currency{10000}, "(Currency)");
  expect(Variant::Null(), "(Null)");
}

TEST_F(BusinessObjectsFailuresTest, IdentifierThatATransientCollectionLacksIsShownByItsType) {
  Expect({errItem_BusinessObject,
          "IBusinessObjects_Item",
          "Problem finding business object.  Index: (Identifier)",
          {"(Identifier)"}},
         [&] { Transient()->Item(KeyOfTwo()); });
}

TEST_F(BusinessObjectsFailuresTest, KeyIsRefusedAsSuchThoughAMemberIsGoneFromTheDatabase) {
  const auto mine = Transient();
  const auto gone = Member();
  mine->Add(gone);
  gone->Delete();
  gone->Update();
  ExpectRaised(errItem_BusinessObject, [&] { mine->Item("9"); }, {.Text = "Index: '9'", .Count = 1});
  EXPECT_EQ(mine->Item("2"), gone);
}

TEST_F(BusinessObjectsFailuresTest, KeyThatABoundCollectionLacks) {
  Expect({errItem_BusinessObject, "FindByKey", "Problem finding business object.  Index: '9'", {"'9'"}},
         [&] { Bound()->Item("9"); });
}

TEST_F(BusinessObjectsFailuresTest, KeyUnderAFormatWithoutStringKeys) {
  const Refusal expected{
      errNotSupported_Key, "IBusinessObjects_Item", "This collection does not support a string Key.  Key: '2'", {"2"}};
  const auto bound = orders_.Collection({.ObjectType = otModel, .KeyFormat = Keyless()});
  for (const auto& collection : {Transient(Keyless()), bound}) {
    Expect(expected, [&] { collection->Item("2"); });
    Expect(expected, [&] { collection->Item(KeyOfTwo()); });
  }
  Expect(expected, [&] { Transient(Keyless())->Remove("2"); });
  Expect(expected, [&] { Transient(Keyless())->Remove(KeyOfTwo()); });
}

TEST_F(BusinessObjectsFailuresTest, RemoveByAnIndexThatOnlyAListenerUnderstands) {
  const auto mine = Transient();
  const auto member = Member();
  mine->ItemNotFound += [&](const Variant&, IBusinessObjectPtr& Item) { Item = member; };
  Expect({errRemove_BusinessObject,
          "IBusinessObjects_Remove",
          "Problem removing business object.  Index: (Date)",
          {"(Date)"}},
         [&] { mine->Remove(Date::From(1998, 6, 1)); });
}

TEST_F(BusinessObjectsFailuresTest, NewObjectsWhoseUnsetKeyReadsZero) {
  Expect({errNotSupported_SetupBusinessObject, "IBusinessObjects_SetupItem",
          "The creation of a new business object is not supported in a transient collection."},
         [&] { Transient()->SetupItem(); });
  Expect({errBusinessObject_Create,
          "IBusinessObjects_SetupItem",
          "Problem creating Line of Business object.  ActiveXBusinessClass: ''  Identifier: '0'",
          {"", "0"}},
         [&] { Bound(otBusiness)->SetupItem(); });
}

TEST_F(BusinessObjectsFailuresTest, HostClassThatIsNotThere) {
  orders_.Design.Order->SetActiveXClass("Order");
  Expect({errBusinessObject_Create,
          "IBusinessObjects_Item",
          "Problem creating Line of Business object.  ActiveXBusinessClass: 'Sales.Order'  Identifier: '2'",
          {"Sales.Order", "2"}},
         [&] { Bound(otBusiness)->Item(2); });
}

TEST_F(BusinessObjectsFailuresTest, HostClassThatRefusesItsModel) {
  orders_.Design.Order->SetActiveXClass("Order");
  const ComponentOffer<RefusingOrder> offer("Sales.Order");
  Expect({errBusinessObject_Initialize,
          "IBusinessObjects_Item",
          "Problem initializing Line of Business object with a Model.  Identifier: '2'",
          {"2"}},
         [&] { Bound(otBusiness)->Item(2); });
  Expect({errBusinessObject_Initialize,
          "IBusinessObjects_SetupItem",
          "Problem initializing Line of Business object with a Model.  Identifier: '0'",
          {"0"}},
         [&] { Bound(otBusiness)->SetupItem(); });
}

TEST_F(BusinessObjectsFailuresTest, InitializedCollectionThatCannotBeBuiltIsRefusedAsAWhole) {
  orders_.Design.Order->SetActiveXClass("Order");
  ExpectRaised(errBusinessObject_Create, [&] { Bound(otBusiness, cltInitialized); }, {.Text = "Identifier: '1'"});
}

TEST_F(BusinessObjectsFailuresTest, WalkThatAHostClassEndsKeepsWhatItBuiltAndTheNextOneGoesOn) {
  orders_.Design.Order->SetActiveXClass("Order");
  const ComponentOffer<HostOrder> offer("Sales.Order");
  HostOrder::Made = 0;
  HostOrder::FailsFrom = 3;
  const auto orders = Bound(otBusiness);
  ExpectRaised(errBusinessObject_Create, [&] { orders->NewEnum(); }, {.Text = "Identifier: '3'"});
  HostOrder::FailsFrom = 0;
  const auto second = orders->Item(2);
  EXPECT_EQ(HostOrder::Made, 2);
  EXPECT_EQ(orders->NewEnum().at(1), second);
  EXPECT_EQ(HostOrder::Made, 3);
}

TEST_F(BusinessObjectsFailuresTest, NewObjectThatCannotBeMadeLeavesARowThatIsNeverWritten) {
  const auto orders = Bound(otBusiness);
  ExpectRaised(errBusinessObject_Create, [&] { orders->SetupItem(); });
  EXPECT_EQ(orders->Count(), 4);
  orders->Update();
  orders->Delete();
  orders->Update();
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(BusinessObjectsFailuresTest, WhatADispatcherDoesNotSupport) {
  const std::pair<const char*, void (*)(BusinessObjects&)> operations[] = {
      {"IBusinessObjects_Update", [](BusinessObjects& each) { each.Update(); }},
      {"IBusinessObjects_Delete", [](BusinessObjects& each) { each.Delete(); }},
      {"IBusinessObjects_Undo", [](BusinessObjects& each) { each.Undo(); }},
      {"IBusinessObjects_Dirty (Get)", [](BusinessObjects& each) { each.Dirty(); }},
      {"IBusinessObjects_NewEnum (Get)", [](BusinessObjects& each) { each.NewEnum(); }}};
  const auto dispatcher = Bound(otModel, cltDispatcher);
  for (const auto& [routine, operation] : operations) {
    Expect({errNotSupported_CollectionType,
            routine,
            "The CollectionType does not support this operation.  CollectionType: 'Dispatcher'",
            {"Dispatcher"}},
           [&] { operation(*dispatcher); });
  }
}

TEST_F(BusinessObjectsFailuresTest, SettingsOfALockedCollection) {
  const std::pair<const char*, void (*)(BusinessObjects&)> settings[] = {
      {"IBusinessObjects_Name (Let)", [](BusinessObjects& each) { each.SetName("x"); }},
      {"IBusinessObjects_SupportsAdd (Let)", [](BusinessObjects& each) { each.SetSupportsAdd(true); }},
      {"IBusinessObjects_SupportsRemove (Let)", [](BusinessObjects& each) { each.SetSupportsRemove(true); }},
      {"IBusinessObjects_KeyFormat (Set)", [](BusinessObjects& each) { each.SetKeyFormat(Keyless()); }},
      {"IBusinessObjects_Setup", [](BusinessObjects& each) { each.Setup({}); }}};
  constexpr const char* locked = "This property is locked and cannot be changed.";
  for (const auto& collection : {Transient({}, true, true), Bound()}) {
    for (const auto& [routine, set] : settings) {
      Expect({errVelmoria_Locked, routine, locked}, [&] { set(*collection); });
    }
  }
  Expect({errVelmoria_Locked, "IBusinessObjects_Locked (Let)", locked}, [&] { Bound()->SetLocked(false); });
}

TEST_F(BusinessObjectsFailuresTest, CollectionTypeThatCannotBeSetAnyMore) {
  const auto used = Bound();
  used->Item(1);
  for (const auto& collection : {Transient(), used}) {
    Expect({errVelmoria_Locked,
            "IBusinessObjects_CollectionType (Let)",
            "This property is locked and cannot be changed.",
            {},
            "CollectionType must be set before objects are retrieved from the collection"},
           [&] { collection->SetCollectionType(cltDispatcher); });
  }
}

}  // namespace
}  // namespace velmoria::test
