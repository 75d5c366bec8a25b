#include "tests/scenario/faulty_shop.h"

#include "velmoria/data/recordset_impl.h"

namespace velmoria::test {

namespace {

constexpr const char* kMore = R"sql(
create table pictures (Id integer not null primary key, Photo blob);
insert into pictures values (1, x'0102ff');
create table notes (Id integer not null primary key, Note varchar(10));
insert into notes values (1, 'short'), (2, substr(hex(zeroblob(400)), 1, 700)), (3, 'end');
)sql";

}  // namespace

FaultyShop::FaultyShop(const std::shared_ptr<FaultyOdbc>& driver) {
  Scope.State().Platform.Odbc = driver;
  Base.File.Run(kMore);
  Base.AddOrders(kOrders);
  Base.RelateLines();
  const auto add = [&](ActionFields fields, zSourceTypes type, const char* text) {
    fields.DatabaseName = "Shop";
    fields.UsageFlags = ufAll;
    fields.EditFlags = efAll;
    fields.ObjectType = otModel;
    Base.Design.Order->Actions()->SetupItem(fields)->Sources()->SetupItem(
        {.Engine = engODBC, .SourceType = type, .SourceText = text});
  };
  add({.Name = "Paged", .ObjectBuffer = kPage}, stTable, "orders");
  add({.Name = "Backwards", .ObjectBuffer = -kPage}, stTable, "orders");
  add({.Name = "Filtered"}, stSQL, "select * from orders order by Id");
  add({.Name = "Raise"}, stSQL, "update orders set Total = 100 where Id <= 2");
  add({.Name = "Picture"}, stTable, "pictures");
  add({.Name = "Notes"}, stTable, "notes");
  Context = Framework{}.CreateBusinessContext({});
}

std::shared_ptr<odbc::Calls> FaultyShop::Driver() { return odbc::UnixOdbc(); }

std::string FaultyShop::Ping() {
  return Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 3})->FindProperty("Name")->Value().AsText();
}

}  // namespace velmoria::test
