#include <string>

#include "tests/scenario/orders_over_sqlite.h"
#include "tests/support/expect_raised.h"
#include "tests/support/refusal.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

using SqliteWrite = OrdersOverSqlite;

TEST_F(SqliteWrite, AChangedRowIsWrittenByItsKey) {
  Design();
  const auto order = Order(7);
  order->Item("Customer")->SetValue("Søren's");
  order->Item("Placed")->SetValue(Date::From(1999, 12, 31, 23, 59, 58));
  order->Item("Note")->SetValue(Variant::Null());
  order->Update();
  EXPECT_EQ(Stored("Customer || ' ' || Placed", "Id = 7"), "Søren's 1999-12-31 23:59:58");
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(Stored("count(*)", "Customer = 'Customer 8'"), "1");
}

TEST_F(SqliteWrite, AChangedKeyIsFoundByItsOldValue) {
  Design();
  const auto order = Order(7);
  order->Item("Id")->SetValue(70);
  order->Update();
  EXPECT_EQ(Stored("Id", "Customer = 'Customer 7'"), "70");
}

TEST_F(SqliteWrite, DeletingByAnUnsavedKeyRemovesNothingAndRaisesNothing) {
  Design();
  const auto order = Order(7);
  order->Item("Id")->SetValue(70);
  order->Delete();
  order->Update();
  EXPECT_EQ(Stored("Id", "Customer = 'Customer 7'"), "7");
  EXPECT_EQ(order->StateFlags(), sfdeleted);
}

TEST_F(SqliteWrite, ADeletedRowIsGoneWithTheNextUpdate) {
  Design();
  const auto order = Order(7);
  order->Delete();
  EXPECT_EQ(Stored("count(*)", "Id = 7"), "1");
  order->Update();
  EXPECT_EQ(Stored("count(*)", "Id = 7"), "0");
  EXPECT_EQ(Stored("count(*)", "1 = 1"), "24");
  ExpectRaised(errPersistence_Deleted, [&] { order->Update(); }, {.Text = "'0'"});
}

TEST_F(SqliteWrite, ANewRowIsInsertedAndReadBack) {
  Design();
  const auto page = Read();
  const auto order = page->CreatePersistentProperties("");
  order->Item("Id")->SetValue(26);
  order->Item("Customer")->SetValue("What's new?");
  order->Update();
  EXPECT_EQ(Stored("Customer", "Id = 26"), "What's new?");
  EXPECT_EQ(Stored("Note", "Id = 26"), "NULL");
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  order->Item("Customer")->SetValue("old");
  order->Update();
  EXPECT_EQ(Stored("Customer", "Id = 26"), "old");
}

TEST_F(SqliteWrite, WhatIsAlreadyThereIsRefusedAndTheRowStaysNew) {
  Design();
  const auto order = Read()->CreatePersistentProperties("");
  order->Item("Id")->SetValue(7);
  order->Item("Customer")->SetValue("twice");
  EXPECT_TRUE(Thrown([&] { order->Update(); }));
  EXPECT_TRUE(WarnedOf("UNIQUE"));
  scope_.Messages().Clear();
  ExpectRaised(errPersistence_Insert, [&] { order->Update(); });
  EXPECT_TRUE(has(order->StateFlags(), sfNew));
  EXPECT_EQ(Stored("Customer", "Id = 7"), "Customer 7");
  order->Item("Id")->SetValue(26);
  order->Update();
  EXPECT_EQ(Stored("Customer", "Id = 26"), "twice");
}

TEST_F(SqliteWrite, ARefusedUpdateLeavesRowAndDatabaseAsTheyWere) {
  file_.Run("CREATE TRIGGER guard BEFORE UPDATE ON orders BEGIN SELECT RAISE(ABORT, 'guarded'); END");
  Design();
  const auto order = Order(7);
  order->Item("Customer")->SetValue("x");
  EXPECT_TRUE(Thrown([&] { order->Update(); }));
  EXPECT_TRUE(WarnedOf("guarded"));
  scope_.Messages().Clear();
  ExpectRaised(errPersistence_Update, [&] { order->Update(); });
  EXPECT_TRUE(order->Item("Customer")->DirtyValue());
  EXPECT_EQ(Stored("Customer", "Id = 7"), "Customer 7");
  file_.Run("DROP TRIGGER guard");
  order->Update();
  EXPECT_EQ(Stored("Customer", "Id = 7"), "x");
}

TEST_F(SqliteWrite, ARefusedDeleteLeavesTheRowPending) {
  file_.Run("CREATE TRIGGER guard BEFORE DELETE ON orders BEGIN SELECT RAISE(ABORT, 'guarded'); END");
  Design();
  const auto order = Order(7);
  order->Delete();
  ExpectRaised(errPersistence_Delete, [&] { order->Update(); }, {.Text = "Name/SQL: 'orders'"});
  EXPECT_TRUE(has(order->StateFlags(), sfpendingdelete));
  EXPECT_EQ(Stored("count(*)", "Id = 7"), "1");
}

TEST_F(SqliteWrite, ACounterWithoutAKeyThatIsToldApartSendsWhatThisServerRefuses) {
  file_.Run("CREATE TABLE counted (Id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, Name VARCHAR(10))");
  Design({.SourceText = "counted"});
  design_->Class->Properties()->Item("Id")->SetFlags(pfNone);
  const auto row = Read()->CreatePersistentProperties("");
  row->Item("Name")->SetValue("x");
  ExpectRaised(errPersistence_Insert, [&] { row->Update(); });
  EXPECT_EQ(file_.Column("SELECT count(*) FROM counted"), "0");
  design_->Class->Properties()->Item("Id")->SetFlags(pfInput);
  const auto second = Read()->CreatePersistentProperties("");
  second->Item("Name")->SetValue("y");
  second->Update();
  EXPECT_EQ(file_.Column("SELECT Name FROM counted"), "y");
}

TEST_F(SqliteWrite, ATransactionIsTakenBackWhole) {
  Design();
  const auto connection = design_->Action->Connection();
  const auto order = Order(7);
  connection->TransBegin();
  order->Item("Customer")->SetValue("gone");
  order->Update();
  EXPECT_EQ(Order(7)->Item("Customer")->Value().AsText(), "gone");
  connection->TransRollback();
  EXPECT_EQ(Stored("Customer", "Id = 7"), "Customer 7");
}

TEST_F(SqliteWrite, ACommittedTransactionStays) {
  Design();
  const auto connection = design_->Action->Connection();
  connection->TransBegin();
  const auto order = Order(7);
  order->Item("Customer")->SetValue("kept");
  order->Update();
  connection->TransCommit();
  EXPECT_EQ(Stored("Customer", "Id = 7"), "kept");
}

TEST_F(SqliteWrite, AWholePageIsWrittenAtOnce) {
  Design();
  const auto page = Read();
  for (const auto row : {0, 1}) page->GetPersistentProperties(row, "")->Item("Note")->SetValue("seen");
  page->GetPersistentProperties(2, "")->Delete();
  page->Update();
  EXPECT_EQ(Stored("Id", "Note = 'seen'"), "1|2");
  EXPECT_EQ(Stored("count(*)", "Id = 3"), "0");
}

}  // namespace

}  // namespace velmoria::test
