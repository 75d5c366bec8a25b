#include <cstdint>
#include <functional>
#include <numeric>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

/// Orders 7 and 8 have a photo and a story, which are not read with their page.
class LongValues : public OrdersOverSqlite {
 protected:
  LongValues() {
    file_.Run(
        "ALTER TABLE orders ADD COLUMN Photo BLOB; ALTER TABLE orders ADD COLUMN Story TEXT;"
        "UPDATE orders SET Photo = x'00FF41', Story = 'seven' WHERE Id = 7;"
        "UPDATE orders SET Photo = x'42', Story = 'eight' WHERE Id = 8");
    Design();
  }

  void DesignStatement(const std::string& text) {
    design_.reset();
    Apartment().Servers->Remove("Sales");
    Apartment().Databases->Remove("Shop");
    Design({.SourceType = stSQL, .SourceText = text});
  }
  std::string Told() {
    const auto message = scope_.Messages().Item("15129");
    return message ? message->ExtraText() : "";
  }
  void Forget() { scope_.Messages().Clear(); }
  std::string Hex(std::int32_t id) { return Stored("hex(Photo)", "Id = " + std::to_string(id)); }
};

TEST_F(LongValues, AreReadByAStatementOfTheirOwnWhenFirstAskedForAndThenKept) {
  const auto photo = Read()->GetPersistentProperties(6, "")->Item("Photo");
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(photo->Value(), Bytes(std::string_view("\0\xFF"
                                                   "A",
                                                   3)));
  EXPECT_EQ(Told(), "SELECT * FROM orders WHERE Id = 7");
  Forget();
  photo->Value();
  EXPECT_EQ(Told(), "");
}

TEST_F(LongValues, AreReadWhenFirstSetSoThatTheOldOneIsKept) {
  const auto photo = Order(8)->Item("Photo");
  Forget();
  photo->SetValue(Bytes("new"));
  EXPECT_EQ(Told(), "SELECT * FROM orders WHERE Id = 8");
  EXPECT_EQ(photo->OldValue(), Bytes("B"));
}

TEST_F(LongValues, OfOtherColumnsAreNotReadAlong) {
  const auto order = Order(7);
  order->Item("Story")->Value();
  Forget();
  order->Item("Photo")->Value();
  EXPECT_EQ(Told(), "SELECT * FROM orders WHERE Id = 7");
}

TEST_F(LongValues, OfATextAreItsBytes) { EXPECT_EQ(Order(7)->Item("Story")->Value(), Bytes("seven")); }

TEST_F(LongValues, ReadForTheFirstTimeClearTheMessages) {
  const auto order = Order(7);
  for (const auto& act : {std::function<void()>([&] { order->Item("Photo")->Value(); }),
                          std::function<void()>([&] { order->Item("Story")->SetValue(Bytes("x")); })}) {
    scope_.Messages().SetupItem({.Number = errItem_Class, .SeverityFlags = svfError});
    act();
    EXPECT_FALSE(scope_.Messages().Item("15065"));
  }
}

TEST_F(LongValues, AreWrittenAsLiteralsByATable) {
  const auto order = Order(8);
  order->Item("Photo")->SetValue(Bytes("new"));
  order->Update();
  EXPECT_EQ(Told(), "UPDATE orders SET Photo = 'new' WHERE Id = 8");
  EXPECT_EQ(Hex(8), "6E6577");
}

TEST_F(LongValues, WrittenAsLiteralsHaveACharacterForEachByte) {
  const auto order = Order(8);
  order->Item("Photo")->SetValue(Bytes("\xE9\x80"));
  order->Update();
  EXPECT_EQ(Told(), "UPDATE orders SET Photo = 'é€' WHERE Id = 8");
  EXPECT_EQ(Hex(8), "C3A9E282AC");
}

TEST_F(LongValues, WithAnApostropheBreakTheStatementThatWritesThemAndStayUnwritten) {
  const auto order = Order(8);
  order->Item("Story")->SetValue(Bytes("it's"));
  ExpectRefusal(
      {errPersistence_Update, "SQLAgent.UpdatePersistentProperties", "Problem Updating persistent Properties."},
      [&] { order->Update(); });
  EXPECT_TRUE(order->Item("Story")->DirtyValue());
  EXPECT_EQ(Stored("Story", "Id = 8"), "eight");
}

TEST_F(LongValues, SetToNullAreWrittenAsNullAndNotReadOver) {
  const auto order = Order(7);
  order->Item("Photo")->SetValue(Variant::Null());
  EXPECT_TRUE(order->Item("Photo")->Value().IsNull());
  order->Update();
  EXPECT_EQ(Stored("Photo", "Id = 7"), "NULL");
  EXPECT_TRUE(order->Item("Photo")->Value().IsNull());
}

TEST_F(LongValues, OfARowInsertedByThisPageAreWhatWasSetAndNullElse) {
  const auto order = Read()->CreatePersistentProperties("");
  order->Item("Id")->SetValue(26);
  order->Item("Customer")->SetValue("What?");
  order->Item("Photo")->SetValue(Bytes("C?"));
  order->Update();
  Forget();
  EXPECT_EQ(order->Item("Photo")->Value(), Bytes("C?"));
  EXPECT_TRUE(order->Item("Story")->Value().IsNull());
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(Stored("Customer || Photo", "Id = 26"), "What?C?");
}

TEST_F(LongValues, AreSoughtByTheUnsavedKeyOfTheirRow) {
  const auto order = Order(7);
  order->Item("Id")->SetValue(8);
  EXPECT_EQ(order->Item("Photo")->Value(), Bytes("B"));
  order->Item("Id")->SetValue(99);
  EXPECT_TRUE(order->Item("Story")->Value().IsEmpty()) << "no row has that key";
}

TEST_F(LongValues, AreBoundByTheMarkersOfAStatementByteForByte) {
  std::vector<Byte> bytes(70000);
  std::iota(bytes.begin(), bytes.end(), Byte{0});
  DesignStatement("UPDATE orders SET Photo = ? WHERE Id = ?");
  design_->Source->Parameters()->SetupItem({.Name = "Photo", .DataType = dtByteArray});
  design_->Source->Parameters()->SetupItem({.Name = "Id", .DataType = dtLongInteger});
  const auto parameters = design_->Action->CreateParameters();
  parameters->Item("Photo")->SetValue(bytes);
  parameters->Item("Id")->SetValue(8);
  design_->Agent(parameters)->Execute();
  EXPECT_NE(Told().find("Name: 'Param1'  Type: -4  Direction: 0  Value: (Byte Array)"), std::string::npos) << Told();
  DesignStatement("SELECT * FROM orders WHERE Id = 8");
  EXPECT_EQ(Read()->GetPersistentProperties(0, "")->Item("Photo")->Value(), Variant(bytes));
}

TEST_F(LongValues, OfAStatementAreThoseOfItsFirstRowInEveryRow) {
  DesignStatement("SELECT * FROM orders WHERE Id in (7, 8) ORDER BY Id");
  EXPECT_EQ(Read()->GetPersistentProperties(1, "")->Item("Story")->Value(), Bytes("seven"));
}

TEST_F(LongValues, OfFilteredRowsAreReadWhenAskedForToo) {
  DesignStatement("SELECT * FROM orders WHERE Id in (7, 8) ORDER BY Id");
  const auto filters = Make<Properties>();
  filters->SetupItem({.Name = "Customer", .Value = "Customer 8", .DataType = dtString});
  const auto page = Read(filters);
  ASSERT_EQ(page->Count(), 1);
  const auto order = page->GetPersistentProperties(0, "");
  EXPECT_EQ(order->Item("Id")->Value(), Variant(8));
  EXPECT_EQ(order->Item("Story")->Value(), Bytes("seven")) << "again that of the first row";
}

TEST_F(LongValues, OfAStatementWithMarkersAreNotFoundSinceTheyGoOutUnbound) {
  DesignStatement("SELECT * FROM orders WHERE Id = ?");
  design_->Source->Parameters()->SetupItem({.Name = "Id", .DataType = dtLongInteger});
  const auto parameters = design_->Action->CreateParameters();
  parameters->Item("Id")->SetValue(7);
  const auto order = Read(parameters)->GetPersistentProperties(0, "");
  Forget();
  EXPECT_TRUE(order->Item("Story")->Value().IsEmpty());
  EXPECT_TRUE(Told().ends_with("Name: 'Param1'  Type: 0  Direction: 0  Value: Null")) << Told();
}

TEST_F(LongValues, ThatAreTheKeyCannotBeSoughtByItAndReadEmpty) {
  file_.Run(
      "CREATE TABLE notes (Id TEXT NOT NULL PRIMARY KEY, Name VARCHAR(10));"
      "INSERT INTO notes VALUES ('a', 'first'), ('b', 'second')");
  design_->Source->SetSourceText("notes");
  design_->Class->Properties()->Item("Id")->SetDataType(dtString);
  const auto note = Read()->GetPersistentProperties(1, "");
  EXPECT_EQ(note->Item("Name")->Value(), Variant("second"));
  EXPECT_TRUE(note->Item("Id")->EmptyValue());
  EXPECT_EQ(Told(), "SELECT * FROM notes WHERE Id = ''");
}

TEST_F(LongValues, OfManyRowsAreReadRowByRow) {
  file_.Run("UPDATE orders SET Story = 'story ' || Id");
  const auto page = Read();
  for (std::int32_t row = 24; row >= 0; --row) {
    EXPECT_EQ(page->GetPersistentProperties(row, "")->Item("Story")->Value(),
              Bytes("story " + std::to_string(row + 1)));
  }
}

}  // namespace

}  // namespace velmoria::test
