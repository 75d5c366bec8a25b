#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/refusal.h"

namespace velmoria::test {
namespace {

/// What writing and composing objects over a database is refused with, to the last field of the message.
class PersistenceRefusalsTest : public BrokeringTest {
 protected:
  /// From here on the database refuses this kind of work on the orders.
  void Guard(const std::string& work) {
    shop_.File.Run("create trigger guard before " + work + " on orders begin select raise(abort, 'guarded'); end");
  }
  PropertiesPtr Row() const { return Order(2)->Properties(1); }
  PropertiesPtr ChangedRow() const {
    const auto row = Row();
    row->Item("Name")->SetValue("Eve");
    return row;
  }
  PropertiesPtr DeletedRow() const {
    const auto row = Row();
    row->Delete();
    row->Update();
    apartment_.Messages().Clear();
    return row;
  }
  static PropertiesPtr NewRow() {
    const auto order = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"})->SetupItem();
    order->FindProperty("Id")->SetValue(40);
    return order->Properties(1);
  }
  PropertyContextPtr Context() const { return Order(1)->GetModel()->PropertyContext(); }
};

// Properties

TEST_F(PersistenceRefusalsTest, UpdateAndDeleteOfACollectionWithoutAPlaceInADatabaseAreRefused) {
  const auto free = Framework{}.CreateProperties();
  ExpectRefusal({errProperties_Update, "Properties.Update",
                 "A non-persistent Property collection does not support an Update operation."},
                [&] { free->Update(); });
  ExpectRefusal({errProperties_Delete, "Properties.Delete",
                 "A non-persistent Property collection does not support a Delete operation."},
                [&] { free->Delete(); });
}

TEST_F(PersistenceRefusalsTest, StateFlagsOfACollectionWithoutAPlaceInADatabaseCannotBeSet) {
  const std::string why = "Changing StateFlags is only permitted with Action-bound Properties collections.";
  ExpectRefusal({errProperties_Transient,
                 "Properties.StateFlags (Let)",
                 "This operation is not supported with transient Properties collections.  Operation: '" + why + "'",
                 {why}},
                [] { Framework{}.CreateProperties()->SetStateFlags(sfpersistent); });
}

TEST_F(PersistenceRefusalsTest, InsertAndUpdateThatTheActionDoesNotAllowAreRefused) {
  const auto added = NewRow();
  shop_.OrderAction("All")->SetEditFlags(efUpdate | efDelete);
  ExpectRefusal({errNotSupported_Insert,
                 "DatabaseAgent.UpdatePersistentProperties",
                 "This Action does not support creating or inserting new business objects.  Action: 'All'  EditFlags: "
                 "'Delete; Update'",
                 {"All", "Delete; Update"}},
                [&] { added->Update(); });
  const auto changed = ChangedRow();
  shop_.OrderAction("Get")->SetEditFlags(efInsert);
  ExpectRefusal({errNotSupported_Update,
                 "DatabaseAgent.UpdatePersistentProperties",
                 "This Action does not support the updating of persistent Properties.  Action: 'Get'  EditFlags: "
                 "'Insert'",
                 {"Get", "Insert"}},
                [&] { changed->Update(); });
}

TEST_F(PersistenceRefusalsTest, DeleteUnderTheBareFlagOfDeletingIsRefusedInTheWordsForUpdating) {
  shop_.OrderAction("Get")->SetEditFlags(efDelete);
  const auto row = Row();
  row->Delete();
  ExpectRefusal({errNotSupported_Update,
                 "DatabaseAgent.DeletePersistentProperties",
                 "This Action does not support the updating of persistent Properties.  Action: 'Get'  EditFlags: "
                 "'Delete'",
                 {"Get", "Delete"}},
                [&] { row->Update(); });
}

TEST_F(PersistenceRefusalsTest, WhateverIsAskedOfADeletedRowButItsDeletionIsRefused) {
  const auto row = DeletedRow();
  const auto expected = [](const char* place) {
    return Refusal{
        errPersistence_Deleted, place, "These persistent Properties have been deleted.  Identifier: '0'", {"0"}};
  };
  ExpectRefusal(expected("Properties.Update"), [&] { row->Update(); });
  ExpectRefusal(expected("Recordset.Undo"), [&] { row->Undo(); });
  ExpectRefusal(expected("Recordset.Values"), [&] { row->Item("Name")->Value(); });
  ExpectRefusal(expected("Recordset.OldValues"), [&] { row->Item("Name")->OldValue(); });
  row->Delete();
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(PersistenceRefusalsTest, WritesThatTheDatabaseRefusesAreReportedUnderANumberForEachKind) {
  Guard("insert");
  ExpectRefusal(
      {errPersistence_Insert, "SQLAgent.InsertPersistentProperties", "Problem Inserting new persistent Properties."},
      [] { NewRow()->Update(); });
  shop_.File.Run("drop trigger guard");
  Guard("update");
  ExpectRefusal(
      {errPersistence_Update, "SQLAgent.UpdatePersistentProperties", "Problem Updating persistent Properties."},
      [&] { ChangedRow()->Update(); });
  shop_.File.Run("drop trigger guard");
  Guard("delete");
  const auto row = Row();
  row->Delete();
  ExpectRefusal({errPersistence_Delete,
                 "SQLAgent.DeletePersistentProperties",
                 "Problem Deleting persistent Properties.  Name/SQL: 'orders'",
                 {"orders"}},
                [&] { row->Update(); });
}

TEST_F(PersistenceRefusalsTest, PropertiesOfWhichThereIsNoRowAreReported) {
  ExpectRefusal({errPersistence_Get, "BusinessContext.GetProperties",
                 "Problem getting persistent Properties from database Source."},
                [&] { Order(3)->GetModel()->PropertyContext()->GetProperties("Detail"); });
}

TEST_F(PersistenceRefusalsTest, ParameterWithoutTheValueThatItRequiresIsRefused) {
  shop_.OrderAction("Named")->Sources()->Item()->Parameters()->Item("Name")->SetFlags(pfInput | pfRequired);
  ExpectRefusal({errProperties_Required,
                 "SQLAgent.CreatePreparedStatement",
                 "These following Properties require Values before they can be used as parameters.  Properties: 'Name'",
                 {"Name"}},
                [] { Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "Named"}); });
}

// PropertyContext

TEST_F(PersistenceRefusalsTest, SettingsOfALockedContextAreRefused) {
  const auto context = Context();
  context->SetLocked(true);
  const auto expected = [](const std::string& routine) {
    return Refusal{errVelmoria_Locked, "PropertyContext." + routine, "This property is locked and cannot be changed."};
  };
  ExpectRefusal(expected("SupportsAdd (Let)"), [&] { context->SetSupportsAdd(false); });
  ExpectRefusal(expected("SupportsRemove (Let)"), [&] { context->SetSupportsRemove(false); });
  ExpectRefusal(expected("SupportsLoad (Let)"), [&] { context->SetSupportsLoad(false); });
  ExpectRefusal(expected("Setup"), [&] { context->Setup(false, true, true); });
}

TEST_F(PersistenceRefusalsTest, ContextRefusesWhatItDoesNotSupport) {
  const auto context = Context();
  context->SetSupportsAdd(false);
  context->SetSupportsRemove(false);
  context->SetSupportsLoad(false);
  ExpectRefusal({errNotSupported_Add, "PropertyContext.Add", "The Add method of this collection is not supported."},
                [&] { context->Add(Row()); });
  ExpectRefusal(
      {errNotSupported_Remove, "PropertyContext.Remove", "The Remove method of this collection is not supported."},
      [&] { context->Remove(1); });
  const char* const loading = "This PropertyContext does not support the loading of Properties.";
  ExpectRefusal({errProperties_Load, "PropertyContext.LoadProperties", loading},
                [&] { context->LoadProperties({.ActionName = "Detail"}); });
  ExpectRefusal({errProperties_Load, "PropertyContext.LoadNewProperties", loading},
                [&] { context->LoadNewProperties({.ActionName = "Detail"}); });
}

TEST_F(PersistenceRefusalsTest, BothPositionsAreRefusedByAddAndByLoad) {
  const auto context = Context();
  const Refusal added{errAdd_Properties,
                      "PropertyContext.Add",
                      "Problem adding Properties in PropertyContext. Name: 'Get'  Before: '1'  After: 'x'",
                      {"Get", "'1'", "'x'"},
                      "Passing both Before and After arguments is not allowed."};
  ExpectRefusal(added, [&] { context->Add(Row(), {.Before = 1, .After = "x"}); });
  Refusal loaded = added;
  loaded.Place = "PropertyContext.LoadProperties";
  loaded.Text = "Problem adding Properties in PropertyContext. Name: 'Detail'  Before: '1'  After: 'x'";
  loaded.Replaces[0] = "Detail";
  ExpectRefusal(loaded, [&] { context->LoadProperties({.ActionName = "Detail"}, {.Before = 1, .After = "x"}); });
}

TEST_F(PersistenceRefusalsTest, CollectionThatAContextLacksOrWillNotLetGoIsReported) {
  const auto context = Context();
  ExpectRefusal({errItem_Properties,
                 "PropertyContext.Item",
                 "Problem finding Properties in PropertyContext. Index: 'Detail'",
                 {"'Detail'"}},
                [&] { context->Item("Detail"); });
  context->BeforeRemove += [](Properties&, bool&) { Fail(RuntimeFailure::DeviceError); };
  ExpectRefusal({errRemove_Properties,
                 "PropertyContext.Remove",
                 "Problem removing Properties from PropertyContext. Index: 1",
                 {"1"}},
                [&] { context->Remove(1); });
}

TEST_F(PersistenceRefusalsTest, PropertyThatNoCollectionOfAContextHasIsReported) {
  const auto expected = [](const std::string& index) {
    return Refusal{errItem_Property,
                   "PropertyContext.FindProperty",
                   "Problem finding Property.  Index: " + index +
                       "  SourceName: 'colour'  SourceKey: 'orders.colour'  Parameter: (Nothing)",
                   {index, "colour", "orders.colour", "(Nothing)"}};
  };
  const auto find = [&](const Variant& index) {
    return [this, index] {
      Context()->FindProperty({.Index = index, .SourceName = "colour", .SourceKey = "orders.colour"});
    };
  };
  ExpectRefusal(expected("'Colour'"), find("Colour"));
  ExpectRefusal(expected("4"), find(4));
}

TEST_F(PersistenceRefusalsTest, LoadingAndGettingOfATransientContextAreRefused) {
  const auto context = Framework{}.CreatePropertyContext();
  context->SetSupportsLoad(true);
  const auto expected = [](const std::string& routine) {
    return Refusal{errPropertyContext_Transient, "PropertyContext." + routine,
                   "Get and Load operations are not supported with transient PropertyContext objects."};
  };
  ExpectRefusal(expected("GetProperties"), [&] { context->GetProperties("Detail"); });
  ExpectRefusal(expected("GetNewProperties"), [&] { context->GetNewProperties("Detail"); });
  ExpectRefusal(expected("LoadProperties"), [&] { context->LoadProperties({.ActionName = "Detail"}); });
  ExpectRefusal(expected("LoadNewProperties"), [&] { context->LoadNewProperties({.ActionName = "Detail"}); });
  ExpectRefusal(expected("ActionName (Get)"), [&] { context->ActionName(); });
  ExpectRefusal(expected("ActionName (Let)"), [&] { context->SetActionName("Get"); });
  ExpectRefusal(expected("Parameters (Get)"), [&] { context->Parameters(); });
  ExpectRefusal(expected("Parameters (Set)"), [&] { context->SetParameters({}); });
}

}  // namespace
}  // namespace velmoria::test
