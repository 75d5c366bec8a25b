#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// An order and its two lines, written and deleted together: what stays when the database refuses one of them.
class HalfWrittenModelTest : public BrokeringTest {
 protected:
  HalfWrittenModelTest() {
    shop_.RelateLines();
    lines_ = order_->BusinessObjects("Lines");
    order_->BeforeUpdate += [this](bool&) { heard_ += "< "; };
    order_->AfterUpdate += [this] { heard_ += "> "; };
  }
  void ChangeAll() const {
    order_->FindProperty("Name")->SetValue("Ann");
    lines_->Item(1)->FindProperty("Product")->SetValue("Torch");
    lines_->Item(2)->FindProperty("Product")->SetValue("Stool");
  }
  /// From here on the database refuses this work on the second line.
  void Guard(const std::string& work) {
    shop_.File.Run("create trigger guard before " + work +
                   " on lines when old.LineNo = 2 begin select raise(abort, 'guarded'); end");
  }
  void Unguard() { shop_.File.Run("drop trigger guard"); }
  std::string Stored() {
    return shop_.File.Column("select Name from orders where Id = 1") + ": " +
           shop_.File.Column("select Product from lines where OrderId = 1 order by LineNo");
  }

  ModelPtr order_ = Order(1)->GetModel();
  IBusinessObjectsPtr lines_;
  std::string heard_;
};

TEST_F(HalfWrittenModelTest, LineThatFailsLeavesTheObjectAndTheLineAheadOfItWritten) {
  ChangeAll();
  Guard("update");
  ExpectRaised(errPersistence_Update, [&] { order_->Update(true); });
  EXPECT_EQ(Stored(), "Ann: Torch|Chair");
  EXPECT_EQ(heard_, "< ");
  EXPECT_FALSE(order_->Dirty());
  EXPECT_FALSE(lines_->Item(1)->Dirty());
  EXPECT_EQ(lines_->Item(2)->StateFlags(), sfpersistent | sfdirty);
}

TEST_F(HalfWrittenModelTest, NextUpdateWritesOnlyTheLineThatFailed) {
  ChangeAll();
  Guard("update");
  EXPECT_TRUE(Thrown([&] { order_->Update(true); }));
  Unguard();
  shop_.File.Run("update orders set Name = 'by another hand' where Id = 1");
  order_->Update(true);
  EXPECT_EQ(Stored(), "by another hand: Torch|Stool");
  EXPECT_EQ(heard_, "< < > ");
}

TEST_F(HalfWrittenModelTest, ObjectThatFailsKeepsItsLinesFromBeingWritten) {
  ChangeAll();
  shop_.File.Run("create trigger guard before update on orders begin select raise(abort, 'guarded'); end");
  ExpectRaised(errPersistence_Update, [&] { order_->Update(true); });
  EXPECT_EQ(Stored(), "Ada: Lamp|Chair");
  EXPECT_TRUE(lines_->Dirty());
}

TEST_F(HalfWrittenModelTest, DeletionThatFailsAmongTheLinesGoesOnThereThoughTheObjectIsGone) {
  order_->Delete(true);
  Guard("delete");
  ExpectRaised(errPersistence_Delete, [&] { order_->Update(true); });
  EXPECT_EQ(Stored(), ": Chair");
  EXPECT_EQ(order_->StateFlags(), sfdeleted);
  EXPECT_EQ(lines_->Item(2)->StateFlags(), sfpersistent | sfpendingdelete);
  Unguard();
  order_->Update(true);
  EXPECT_EQ(Stored(), ": ");
}

TEST_F(HalfWrittenModelTest, UndoTakesBackTheObjectsOwnDeletionOnly) {
  order_->Delete(true);
  order_->Undo();
  order_->Update(true);
  EXPECT_EQ(Stored(), "Ada: ");
}

}  // namespace
}  // namespace velmoria::test
