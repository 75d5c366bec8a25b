#include "tests/scenario/shop.h"

namespace velmoria::test {

namespace {

constexpr const char* kTables = R"sql(
begin;
create table orders (Id integer not null primary key, Name varchar(20), Total double);
insert into orders values (1, 'Ada', 12.5), (2, 'Ben', 99), (3, 'Cyd', null);
create table lines (OrderId integer not null, LineNo integer not null, Product varchar(20),
                    primary key (OrderId, LineNo));
insert into lines values (1, 1, 'Lamp'), (1, 2, 'Chair'), (2, 1, 'Rug');
create table details (Id integer not null, Note varchar(40));
insert into details values (1, 'ring twice'), (2, 'fragile'), (2, 'heavy');
create table items (Code integer not null primary key, Name varchar(20));
commit;
)sql";

}  // namespace

Shop::Shop() : File(kTables), Design(File.ConnectString()) {
  const auto add = [&](ActionFields fields, const SourceFields& source) {
    fields.DatabaseName = "Shop";
    fields.UsageFlags = ufAll;
    fields.EditFlags = efAll;
    fields.ObjectType = otModel;
    return Design.Order->Actions()->SetupItem(fields)->Sources()->SetupItem(source);
  };
  const auto table = [](const char* name) {
    return SourceFields{.Engine = engODBC, .SourceType = stTable, .SourceText = name};
  };
  add({.Name = "Check", .ConnectionsName = "Check"}, table("orders"));
  add({.Name = "Bare"}, table("orders"));
  add({.Name = "Detail"}, table("details"));
  const SourcePtr named =
      add({.Name = "Named"},
          {.Engine = engODBC, .SourceType = stSQL, .SourceText = "select * from orders where Name >= ? order by Id"});
  named->Parameters()->SetupItem({.Name = "Name", .DataType = dtString, .Size = 20});
}

void Shop::RelateLines() const {
  Design.Line->Actions()->Item("Get")->Sources()->Item()->Parameters()->SetupItem(
      {.Name = "OrderId", .DataType = dtLongInteger, .SourceColumn = "OrderId", .Flags = pfInput});
  const RelationshipPtr lines = Design.Order->Relationships()->SetupItem(
      {.Name = "Lines", .RelatedServerName = "Sales", .RelatedClassName = "Line", .RelatedActionName = "Get"});
  const LinkPtr link = lines->Links()->SetupItem({.Name = "OrderId"});
  link->Property()->SetName("Id");
  link->Parameter()->SetName("OrderId");
}

void Shop::AddOrders(int last) {
  std::string script = "begin;";
  for (int id = 4; id <= last; ++id) {
    const std::string number = std::to_string(id);
    script.append("insert into orders values (").append(number).append(", 'Order ").append(number);
    script.append("', ").append(number).append(");");
  }
  File.Run(script + "commit;");
}

void Shop::NoteWrites() {
  File.Run(R"sql(
create table writes (Id integer, What varchar(10));
create trigger updated after update on orders begin insert into writes values (new.Id, 'update'); end;
create trigger inserted after insert on orders begin insert into writes values (new.Id, 'insert'); end;
create trigger deleted after delete on orders begin insert into writes values (old.Id, 'delete'); end;
)sql");
}

PropertiesPtr Shop::NamedParameters(const std::string& name) const {
  const PropertiesPtr parameters = OrderAction("Named")->CreateParameters();
  parameters->Item("Name")->SetValue(name);
  return parameters;
}

}  // namespace velmoria::test
