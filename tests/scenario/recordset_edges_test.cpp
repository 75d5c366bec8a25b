#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tests/scenario/orders_over_sqlite.h"
#include "tests/support/refusal.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

Variant Bytes(std::string_view text) {
  return std::span<const Byte>(reinterpret_cast<const Byte*>(text.data()), text.size());
}

/// The rows of a page at their limits; "Photo", a long column without values, is what an old row reads Empty.
class RecordsetEdges : public OrdersOverSqlite {
 protected:
  RecordsetEdges() {
    file_.Run("ALTER TABLE orders ADD COLUMN Photo BLOB");
    Design();
  }

  /// From here on the database refuses every update.
  void Guard() { file_.Run("CREATE TRIGGER guard BEFORE UPDATE ON orders BEGIN SELECT RAISE(ABORT, 'guarded'); END"); }
  static Variant Dirty(const PropertiesPtr& row) { return row->Recordset()->Dirty(row->Row()); }
  static void DeleteAtOnce(const PropertiesPtr& row) {
    row->Recordset()->DatabaseAgent()->DeletePersistentProperties(row, 0);
  }
};

TEST_F(RecordsetEdges, AnEmptyResultHasNoRowsAndRefusesItsFirst) {
  file_.Run("DELETE FROM orders");
  const auto page = Read();
  EXPECT_EQ(page->Count(), 0);
  ExpectRefusal({errPersistence_Row,
                 "Recordset.BuildProperties",
                 "Problem building persistent Properties.  Row: 0  Count: 0",
                 {"0", "0"}},
                [&] { page->GetPersistentProperties(0, ""); });
}

TEST_F(RecordsetEdges, ARowOutsideItsPageIsRefused) {
  const auto page = Read(design_->Key(7));
  ExpectRefusal({errPersistence_Row,
                 "Recordset.BuildProperties",
                 "Problem building persistent Properties.  Row: 1  Count: 1",
                 {"1", "1"}},
                [&] { page->GetPersistentProperties(1, ""); });
  ExpectRefusal({errPersistence_Row,
                 "Recordset.BuildProperties",
                 "Problem building persistent Properties.  Row: -1  Count: 1",
                 {"-1", "1"}},
                [&] { page->GetPersistentProperties(-1, ""); });
}

TEST_F(RecordsetEdges, AChangeFromEmptyOnAnOldRowIsNoChangeAndIsNotWritten) {
  const auto order = Order(7);
  order->Item("Photo")->SetValue(Bytes("new"));
  EXPECT_FALSE(order->Item("Photo")->DirtyValue());
  EXPECT_TRUE(Dirty(order).IsEmpty());
  order->Update();
  EXPECT_EQ(Stored("Photo", "Id = 7"), "NULL");
}

TEST_F(RecordsetEdges, AChangeFromEmptyOnANewRowIsOneAndIsWritten) {
  const auto order = Read()->CreatePersistentProperties("");
  order->Item("Photo")->SetValue(Bytes("new"));
  EXPECT_TRUE(order->Item("Photo")->DirtyValue());
  order->Item("Id")->SetValue(26);
  order->Update();
  EXPECT_EQ(Stored("Photo", "Id = 26"), "new");
}

TEST_F(RecordsetEdges, TheSecondChangeFromEmptyOnAnOldRowCountsAndKeepsTheFirstAsOld) {
  const auto order = Order(7);
  order->Item("Photo")->SetValue(Bytes("first"));
  order->Item("Photo")->SetValue(Bytes("second"));
  EXPECT_EQ(order->Item("Photo")->OldValue(), Bytes("first"));
  EXPECT_TRUE(order->Item("Photo")->DirtyValue());
  order->Update();
  EXPECT_EQ(Stored("Photo", "Id = 7"), "second");
}

TEST_F(RecordsetEdges, ChangingAColumnTwiceKeepsTheFirstOldValue) {
  const auto customer = Order(7)->Item("Customer");
  customer->SetValue("Eve");
  customer->SetValue("Fay");
  EXPECT_EQ(customer->OldValue(), Variant("Customer 7"));
}

TEST_F(RecordsetEdges, AColumnSetBackIsNotDirtyButItsRowKeepsTheEntry) {
  const auto order = Order(7);
  order->Item("Customer")->SetValue("Eve");
  order->Item("Customer")->SetValue("Customer 7");
  EXPECT_FALSE(order->Item("Customer")->DirtyValue());
  EXPECT_TRUE(Dirty(order).IsEmpty());
  EXPECT_EQ(order->Item("Customer")->OldValue(), Variant("Customer 7"));
  Guard();
  order->Update();
  EXPECT_TRUE(Dirty(order).IsEmpty());
  order->Recordset()->Update();
  EXPECT_EQ(Dirty(order), Variant(false));
}

TEST_F(RecordsetEdges, UndoOfARowWithoutChangesCancelsItsDeletionAndNothingElse) {
  const auto order = Order(7);
  order->Delete();
  order->Undo();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(order->Item("Customer")->Value(), Variant("Customer 7"));
  order->Update();
  EXPECT_EQ(Stored("count(*)", "Id = 7"), "1");
}

TEST_F(RecordsetEdges, AnActionThatMayOnlyDeleteIsRefusedAndOneThatMayDoAllDeletes) {
  const auto order = Order(7);
  design_->Action->SetEditFlags(efDelete);
  ExpectRefusal({errNotSupported_Update,
                 "DatabaseAgent.DeletePersistentProperties",
                 "This Action does not support the updating of persistent Properties.  Action: 'Get'  EditFlags: "
                 "'Delete'",
                 {"Get", "Delete"}},
                [&] { DeleteAtOnce(order); });
  EXPECT_EQ(Stored("count(*)", "Id = 7"), "1");
  design_->Action->SetEditFlags(efAll);
  DeleteAtOnce(order);
  EXPECT_EQ(Stored("count(*)", "Id = 7"), "0");
  EXPECT_EQ(order->StateFlags(), sfdeleted);
}

TEST_F(RecordsetEdges, AnActionThatMayEditNothingDeletesAllTheSame) {
  const auto order = Order(7);
  design_->Action->SetEditFlags(efNone);
  DeleteAtOnce(order);
  EXPECT_EQ(Stored("count(*)", "Id = 7"), "0");
}

TEST_F(RecordsetEdges, ANewRowFollowsTheOnlyPageThatHoldsTheWholeResult) {
  for (const std::int32_t buffer : {0, 25, 26}) {
    design_->Action->SetObjectBuffer(buffer);
    EXPECT_EQ(Read()->CreatePersistentProperties("")->Row(), 25) << buffer;
  }
}

TEST_F(RecordsetEdges, ANewRowDoesNotFollowAPageWithMoreToCome) {
  design_->Action->SetObjectBuffer(24);
  const auto page = Read();
  ExpectRefusal({errBusinessObjects_Buffer,
                 "Recordset.CreatePersistentProperties",
                 "Must move ObjectBuffer to the end of the collection (by retrieving last Item in collection) before "
                 "creating new business objects.  ObjectBuffer: 24.",
                 {"24"}},
                [&] { page->CreatePersistentProperties(""); });
  EXPECT_EQ(page->Count(), 24);
}

TEST_F(RecordsetEdges, ARowPendingDeletionIsStillPersistent) {
  const auto order = Order(7);
  order->Delete();
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(order->Recordset()->StateFlags(-1), sfpersistent | sfpendingdelete);
}

}  // namespace

}  // namespace velmoria::test
