#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/support/refusal.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"

namespace velmoria::test {
namespace {

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
};

TEST_F(BusinessObjectsFailuresTest, AddWithBothPositionsIsRefused) {
  constexpr const char* both = "Passing both Before and After arguments is not allowed.";
  ExpectRefusal({errAdd_BusinessObject,
                 "BusinessObjects.IBusinessObjects_Add",
                 "Problem adding business object.  Key: '2'  Before: '1'  After: 'x'",
                 {"2", "'1'", "'x'"},
                 both},
                [&] { Transient()->Add(Member(), {.Before = 1, .After = "x"}); });
  ExpectRefusal({errAdd_BusinessObject,
                 "BusinessObjects.IBusinessObjects_Add",
                 "Problem adding business object.  Key: ''  Before: '(Date)'  After: '2'",
                 {"", "'(Date)'", "'2'"},
                 both},
                [&] { Transient(Keyless())->Add(Member(), {.Before = Date::From(1998, 6, 1), .After = 2}); });
}

TEST_F(BusinessObjectsFailuresTest, AddAndRemoveAreRefusedWhereTheyAreNotSupported) {
  const Refusal add{errNotSupported_Add, "BusinessObjects.IBusinessObjects_Add",
                    "The Add method of this collection is not supported."};
  const Refusal remove{errNotSupported_Remove, "BusinessObjects.IBusinessObjects_Remove",
                       "The Remove method of this collection is not supported."};
  for (const auto& collection : {Transient({}, false), Bound()}) {
    ExpectRefusal(add, [&] { collection->Add(Member()); });
    ExpectRefusal(remove, [&] { collection->Remove(1); });
  }
}

TEST_F(BusinessObjectsFailuresTest, ItemThatATransientCollectionLacksIsNamedAsItWasAskedFor) {
  const auto mine = Transient();
  const auto expect = [&](const Variant& index, const std::string& shown) {
    const std::string text = "Problem finding business object.  Index: " + shown;
    ExpectRefusal({errItem_BusinessObject, "BusinessObjects.IBusinessObjects_Item", text.c_str(), {shown}},
                  [&] { mine->Item(index); });
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
  ExpectRefusal({errItem_BusinessObject,
                 "BusinessObjects.IBusinessObjects_Item",
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

TEST_F(BusinessObjectsFailuresTest, KeyThatABoundCollectionLacksIsNamedAsItWasAskedFor) {
  ExpectRefusal(
      {errItem_BusinessObject, "BusinessObjects.FindByKey", "Problem finding business object.  Index: '9'", {"'9'"}},
      [&] { Bound()->Item("9"); });
}

TEST_F(BusinessObjectsFailuresTest, KeyIsRefusedUnderAFormatWithoutStringKeys) {
  const Refusal expected{errNotSupported_Key,
                         "BusinessObjects.IBusinessObjects_Item",
                         "This collection does not support a string Key.  Key: '2'",
                         {"2"}};
  const auto bound = orders_.Collection({.ObjectType = otModel, .KeyFormat = Keyless()});
  for (const auto& collection : {Transient(Keyless()), bound}) {
    ExpectRefusal(expected, [&] { collection->Item("2"); });
    ExpectRefusal(expected, [&] { collection->Item(KeyOfTwo()); });
  }
  ExpectRefusal(expected, [&] { Transient(Keyless())->Remove("2"); });
  ExpectRefusal(expected, [&] { Transient(Keyless())->Remove(KeyOfTwo()); });
}

TEST_F(BusinessObjectsFailuresTest, RemoveByAnIndexThatOnlyAListenerUnderstandsIsRefused) {
  const auto mine = Transient();
  const auto member = Member();
  mine->ItemNotFound += [&](const Variant&, IBusinessObjectPtr& Item) { Item = member; };
  ExpectRefusal({errRemove_BusinessObject,
                 "BusinessObjects.IBusinessObjects_Remove",
                 "Problem removing business object.  Index: (Date)",
                 {"(Date)"}},
                [&] { mine->Remove(Date::From(1998, 6, 1)); });
}

TEST_F(BusinessObjectsFailuresTest, NewObjectsWhoseUnsetKeyReadsZero) {
  ExpectRefusal({errNotSupported_SetupBusinessObject, "BusinessObjects.IBusinessObjects_SetupItem",
                 "The creation of a new business object is not supported in a transient collection."},
                [&] { Transient()->SetupItem(); });
  ExpectRefusal({errBusinessObject_Create,
                 "BusinessObjects.IBusinessObjects_SetupItem",
                 "Problem creating Line of Business object.  ActiveXBusinessClass: ''  Identifier: '0'",
                 {"", "0"}},
                [&] { Bound(otBusiness)->SetupItem(); });
}

TEST_F(BusinessObjectsFailuresTest, HostClassThatIsNotThere) {
  orders_.Design.Order->SetActiveXClass("Order");
  ExpectRefusal({errBusinessObject_Create,
                 "BusinessObjects.IBusinessObjects_Item",
                 "Problem creating Line of Business object.  ActiveXBusinessClass: 'Sales.Order'  Identifier: '2'",
                 {"Sales.Order", "2"}},
                [&] { Bound(otBusiness)->Item(2); });
}

TEST_F(BusinessObjectsFailuresTest, HostClassThatRefusesItsModel) {
  orders_.Design.Order->SetActiveXClass("Order");
  const ComponentOffer<RefusingOrder> offer("Sales.Order");
  ExpectRefusal({errBusinessObject_Initialize,
                 "BusinessObjects.IBusinessObjects_Item",
                 "Problem initializing Line of Business object with a Model.  Identifier: '2'",
                 {"2"}},
                [&] { Bound(otBusiness)->Item(2); });
  ExpectRefusal({errBusinessObject_Initialize,
                 "BusinessObjects.IBusinessObjects_SetupItem",
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
      {"BusinessObjects.IBusinessObjects_Update", [](BusinessObjects& each) { each.Update(); }},
      {"BusinessObjects.IBusinessObjects_Delete", [](BusinessObjects& each) { each.Delete(); }},
      {"BusinessObjects.IBusinessObjects_Undo", [](BusinessObjects& each) { each.Undo(); }},
      {"BusinessObjects.IBusinessObjects_Dirty (Get)", [](BusinessObjects& each) { each.Dirty(); }},
      {"BusinessObjects.IBusinessObjects_NewEnum (Get)", [](BusinessObjects& each) { each.NewEnum(); }}};
  const auto dispatcher = Bound(otModel, cltDispatcher);
  for (const auto& [routine, operation] : operations) {
    ExpectRefusal({errNotSupported_CollectionType,
                   routine,
                   "The CollectionType does not support this operation.  CollectionType: 'Dispatcher'",
                   {"Dispatcher"}},
                  [&] { operation(*dispatcher); });
  }
}

TEST_F(BusinessObjectsFailuresTest, SettingsOfALockedCollectionAreRefused) {
  const std::pair<const char*, void (*)(BusinessObjects&)> settings[] = {
      {"BusinessObjects.IBusinessObjects_Name (Let)", [](BusinessObjects& each) { each.SetName("x"); }},
      {"BusinessObjects.IBusinessObjects_SupportsAdd (Let)", [](BusinessObjects& each) { each.SetSupportsAdd(true); }},
      {"BusinessObjects.IBusinessObjects_SupportsRemove (Let)",
       [](BusinessObjects& each) { each.SetSupportsRemove(true); }},
      {"BusinessObjects.IBusinessObjects_KeyFormat (Set)", [](BusinessObjects& each) { each.SetKeyFormat(Keyless()); }},
      {"BusinessObjects.IBusinessObjects_Setup", [](BusinessObjects& each) { each.Setup({}); }}};
  constexpr const char* locked = "This property is locked and cannot be changed.";
  for (const auto& collection : {Transient({}, true, true), Bound()}) {
    for (const auto& [routine, set] : settings) {
      ExpectRefusal({errVelmoria_Locked, routine, locked}, [&] { set(*collection); });
    }
  }
  ExpectRefusal({errVelmoria_Locked, "BusinessObjects.IBusinessObjects_Locked (Let)", locked},
                [&] { Bound()->SetLocked(false); });
}

TEST_F(BusinessObjectsFailuresTest, CollectionTypeThatCannotBeSetAnyMore) {
  const auto used = Bound();
  used->Item(1);
  for (const auto& collection : {Transient(), used}) {
    ExpectRefusal({errVelmoria_Locked,
                   "BusinessObjects.IBusinessObjects_CollectionType (Let)",
                   "This property is locked and cannot be changed.",
                   {},
                   "CollectionType must be set before objects are retrieved from the collection"},
                  [&] { collection->SetCollectionType(cltDispatcher); });
  }
}

}  // namespace
}  // namespace velmoria::test
