#include "make_database.h"

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string_view>

#include <sqlite3.h>

namespace {

constexpr int Customers = 500;
constexpr int Orders = 20000;

constexpr std::array GivenNames = {"Anna", "Björn", "Chloé", "Dmitri", "Élodie", "Fatima", "Günther", "Håkon",
                                   "Inés", "José",  "Katja", "Łukasz", "Maeve",  "Noor",   "Ömer",    "Zoë"};
constexpr std::array FamilyNames = {"O'Brien", "Müller",  "Sørensen", "García",  "Dvořák", "D'Angelo",
                                    "Smith",   "Novák",   "Jansen",   "Åkesson", "Παππάς", "Иванов",
                                    "Lefèvre", "O'Neill", "Kowalski", "Yılmaz"};
constexpr std::array Cities = {"Cork", "München", "Kraków", "Málaga", "Αθήνα", "Tromsø", "L'Aquila", "Brno"};
constexpr std::array Products = {"Desk lamp, brass", "Chair \"Oslo\"", "Café table", "Bookshelf 5'",
                                 "Rug, wool",        "Mirror, oval",   "Wardrobe",   "Coat rack"};
constexpr std::array Notes = {"", "deliver after 6 o'clock", "Geschenk – bitte einpacken", "ring twice", "fragile"};
constexpr std::array States = {"open", "packed", "shipped", "paid"};

constexpr std::string_view Schema = R"sql(
create table customers (Id integer primary key, Name varchar(60) not null, City varchar(40), Email varchar(60));
create table orders (Id integer primary key, CustomerId integer not null, OrderDate timestamp not null,
  Status varchar(12) not null, Total double not null, Paid bit not null, Note varchar(80));
create table lines (OrderId integer not null, LineNo smallint not null, Product varchar(40) not null,
  Quantity smallint not null, Price double not null, primary key (OrderId, LineNo));
create index orders_of_customer on orders (CustomerId);
)sql";

/// A small generator of our own: the numbers of the standard distributions differ between libraries.
class Dice {
 public:
  explicit Dice(unsigned seed) : state_(seed) {}
  int Below(int limit) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<int>((state_ >> 33U) % static_cast<unsigned>(limit));
  }
  template <std::size_t N>
  const char* Pick(const std::array<const char*, N>& from) {
    return from[static_cast<std::size_t>(Below(static_cast<int>(N)))];
  }

 private:
  unsigned long long state_;
};

void Check(int result, sqlite3* database) {
  if (result != SQLITE_OK && result != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(database));
}

/// One prepared INSERT, its values bound from left to right.
class Insert {
 public:
  Insert(sqlite3* database, const char* text) : database_(database) {
    Check(sqlite3_prepare_v2(database, text, -1, &statement_, nullptr), database);
  }
  ~Insert() { sqlite3_finalize(statement_); }
  Insert(const Insert&) = delete;
  Insert& operator=(const Insert&) = delete;

  Insert& operator<<(int value) { return Bound(sqlite3_bind_int(statement_, ++column_, value)); }
  Insert& operator<<(double value) { return Bound(sqlite3_bind_double(statement_, ++column_, value)); }
  Insert& operator<<(const std::string& value) {
    return Bound(sqlite3_bind_text(statement_, ++column_, value.c_str(), -1, SQLITE_TRANSIENT));
  }
  Insert& Null() { return Bound(sqlite3_bind_null(statement_, ++column_)); }
  void Run() {
    Check(sqlite3_step(statement_), database_);
    sqlite3_reset(statement_);
    column_ = 0;
  }

 private:
  Insert& Bound(int result) {
    Check(result, database_);
    return *this;
  }

  sqlite3* database_;
  sqlite3_stmt* statement_ = nullptr;
  int column_ = 0;
};

std::string OrderDate(Dice& dice) {
  char text[80];
  std::snprintf(text, sizeof text, "20%02d-%02d-%02d %02d:%02d:00", 24 + dice.Below(3), 1 + dice.Below(12),
                1 + dice.Below(28), 8 + dice.Below(10), dice.Below(60));
  return text;
}

void AddCustomers(sqlite3* database, Dice& dice) {
  Insert insert(database, "insert into customers values (?, ?, ?, ?)");
  for (int id = 1; id <= Customers; ++id) {
    insert << id << std::string(dice.Pick(GivenNames)) + " " + dice.Pick(FamilyNames) << std::string(dice.Pick(Cities));
    if (dice.Below(4) == 0) {
      insert.Null().Run();
    } else {
      (insert << "customer" + std::to_string(id) + "@example.com").Run();
    }
  }
}

/// The lines of one order; gives back what they cost.
double AddLines(Insert& insert, Dice& dice, int order) {
  const int count = 2 + dice.Below(4);
  double total = 0;
  for (int line = 1; line <= count; ++line) {
    const int quantity = 1 + dice.Below(5);
    const double price = (500 + dice.Below(25000)) / 100.0;
    total += quantity * price;
    (insert << order << line << std::string(dice.Pick(Products)) << quantity << price).Run();
  }
  return total;
}

void AddOrders(sqlite3* database, Dice& dice) {
  Insert insert(database, "insert into orders values (?, ?, ?, ?, ?, ?, ?)");
  Insert lines(database, "insert into lines values (?, ?, ?, ?, ?)");
  for (int id = 1; id <= Orders; ++id) {
    const double total = AddLines(lines, dice, id);
    insert << id << 1 + dice.Below(Customers) << OrderDate(dice) << std::string(dice.Pick(States)) << total
           << dice.Below(2);
    const std::string note = dice.Pick(Notes);
    if (note.empty()) {
      insert.Null().Run();
    } else {
      (insert << note).Run();
    }
  }
}

}  // namespace

void MakeDatabase(const std::string& file, unsigned seed) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened, sqlite3_close);
  Check(result, database.get());
  const auto run = [&](const char* text) {
    Check(sqlite3_exec(database.get(), text, nullptr, nullptr, nullptr), database.get());
  };
  run("pragma synchronous = off; begin");
  run(Schema.data());
  Dice dice(seed);
  AddCustomers(database.get(), dice);
  AddOrders(database.get(), dice);
  run("commit");
}
