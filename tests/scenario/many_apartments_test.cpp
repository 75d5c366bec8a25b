#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/scenario/shop.h"
#include "tests/support/expect_raised.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

constexpr int kApartments = 16;
constexpr int kOrders = 120;

/// A working day of one thread: its own design, database and connections, and the settings and log of all.
class Day {
 public:
  explicit Day(int number) : number_(number) {
    shop_.RelateLines();
    shop_.AddOrders(kOrders);
    shop_.OrderAction("All")->SetObjectBuffer(25);
  }

  void Work() {
    Read();
    Write();
    Relate();
    Fail();
    Create();
    Transact();
    framework_.Profile()->SetupItem(
        {.Name = "Day " + std::to_string(number_), .Value = number_, .DataType = dtInteger});
  }

 private:
  IBusinessObjectsPtr All(bool asyncFlag = false) {
    return framework_.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .AsyncFlag = asyncFlag});
  }
  IBusinessObjectPtr Order(std::int32_t id) {
    return framework_.GetBusinessObject({.ClassName = "Order", .KeyValue1 = id});
  }
  std::string Stored(const std::string& query) { return shop_.File.Column(query); }

  void Read() {
    for (const bool async : {false, true}) {
      std::int64_t sum = 0;
      for (const auto& order : All(async)) sum += order->FindProperty("Id")->Value().AsLong();
      EXPECT_EQ(sum, kOrders * (kOrders + 1) / 2);
    }
  }

  void Write() {
    const auto orders = All();
    orders->SetCollectionType(cltInitialized);
    for (const auto& order : orders) order->FindProperty("Total")->SetValue(number_ + 0.5);
    orders->Update();
    Order(kOrders)->FindProperty("Name")->Value();
    EXPECT_EQ(Stored("select count(*) from orders where Total = " + std::to_string(number_) + ".5"),
              std::to_string(orders->Count()));
  }

  void Relate() {
    const auto lines = Order(1)->BusinessObjects("Lines");
    EXPECT_EQ(lines->Count(), 2);
    EXPECT_EQ(lines->Item(1)->FindProperty("Product")->Value().AsText(), "Lamp");
  }

  void Fail() {
    ExpectRaised(errItem_Class, [&] { framework_.CreateIdentifier("Nobody"); });
    ExpectRaised(errBusinessObject_Get, [&] { Order(-1); });
  }

  void Create() {
    const auto order = framework_.CreateBusinessObject({.ClassName = "Order", .ActionName = "All"});
    order->FindProperty("Id")->SetValue(1000);
    order->FindProperty("Name")->SetValue("New");
    order->Update();
    EXPECT_EQ(Stored("select Name from orders where Id = 1000"), "New");
    order->Delete();
    order->Update();
    EXPECT_EQ(Stored("select count(*) from orders"), std::to_string(kOrders));
  }

  void Transact() {
    const auto connection = shop_.OrderAction("All")->Connection();
    connection->TransBegin();
    const auto order = Order(2);
    order->FindProperty("Name")->SetValue("Lost");
    order->Update();
    connection->TransRollback();
    EXPECT_EQ(Stored("select Name from orders where Id = 2"), "Ben");
  }

  int number_;
  Framework framework_;
  Shop shop_;
};

TEST(ManyApartmentsTest, SixteenThreadsReadWriteAndFailAtOnceEachInItsOwnApartment) {
  std::vector<std::thread> threads;
  for (int number = 0; number < kApartments; ++number)
    threads.emplace_back([number] {
      const auto error = Thrown([&] { Day(number).Work(); });
      EXPECT_FALSE(error) << error->what();
    });
  for (auto& thread : threads) thread.join();
}

}  // namespace

}  // namespace velmoria::test
