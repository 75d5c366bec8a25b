#include "tests/scenario/foreign_schema.h"

namespace velmoria::test {

namespace {

constexpr const char* kWorks = R"sql(
begin;
create table STAFF (Land char(2) not null, badge integer not null, "Full Name" varchar(40), Nick varchar(20),
                    BossLand char(2), BossBadge integer, Home varchar(4), primary key (Land, badge));
insert into STAFF values
  ('DE', 1, 'Ada Lang', 'Ada', null, null, 'N'), ('DE', 2, 'Ben Oh', null, 'DE', 1, 'S'),
  ('FR', 1, 'Cyd O''Rue', 'Cyd', 'DE', 1, null), ('FR', 2, 'Dot Roy', 'Dot', 'FR', 1, 'S'),
  ('FR', 3, null, 'Eve', 'FR', 3, 'X'), ('FR', 4, 'Fay Ito', 'Fay', 'FR', null, 'N');
create table "Order" (region varchar(4) not null, No integer not null, "Group" varchar(10), Title varchar(30),
                      Budget double, primary key (region, No));
insert into "Order" values ('N', 1, 'A', 'Bridge', 100), ('N', 2, null, 'Tunnel', null), ('S', 1, 'B', null, 50);
create table "Order Crew" (Land char(2) not null, badge integer not null, region varchar(4) not null,
                           No integer not null, Part varchar(10), Hours double,
                           primary key (Land, badge, region, No));
insert into "Order Crew" values ('DE', 1, 'N', 1, 'lead', 10), ('DE', 2, 'N', 1, null, 7.5),
  ('DE', 2, 'S', 1, 'help', null), ('FR', 1, 'N', 1, 'help', 3);
create table "Time Sheet" (Land char(2) not null, badge integer not null, "Week Ending" date not null, Hours double,
                           primary key (Land, badge, "Week Ending"));
insert into "Time Sheet" values ('DE', 1, '2026-01-04', 40), ('DE', 1, '2026-01-11', null),
  ('DE', 2, '2026-01-04', 38.5);
create table gate_log (badge integer, Gate varchar(10), Seen timestamp);
insert into gate_log values (1, 'north', '2026-01-05 07:00:00'), (1, 'north', '2026-01-06 07:02:00'),
  (2, 'south', '2026-01-05 08:00:00'), (2, null, null), (null, null, '2026-01-05 09:00:00');
create view "Crew List" as select c.Land, c.badge, c.region, c.No, s."Full Name" as Who, c.Part
  from "Order Crew" c join STAFF s on s.Land = c.Land and s.badge = c.badge;
create table "Odd Types" (Id integer not null primary key, Flag boolean, Tiny tinyint, Small smallint, Big bigint,
                          Price numeric(12, 4), Share real, Day date, Hour time, Moment timestamp, Code char(3),
                          Untyped, Shape geometry, Cash money, Words text, Data blob);
insert into "Odd Types" values
  (1, 1, 200, -5, 9007199254740993, 1234.5678, 1.5, '2026-11-22', '13:14:15', '2026-11-22 13:14:15', 'ab', 'any',
   'POINT(1 2)', 12.5, 'two of them', x'00ff27');
insert into "Odd Types" (Id) values (2);
commit;
)sql";

constexpr const char* kAtlas = R"sql(
begin;
create table region_of (Code varchar(4) not null primary key, "Capital City" varchar(20), HeadLand char(2),
                        HeadBadge integer);
insert into region_of values ('N', 'Norville', 'FR', 2), ('S', null, null, null);
commit;
)sql";

PropertyFields Text(const std::string& name, const std::string& column = {}) {
  return {.Name = name,
          .DataType = dtString,
          .SourceName = name,
          .SourceColumn = column.empty() ? name : column,
          .Flags = pfInput};
}

PropertyFields Number(const std::string& name) {
  PropertyFields fields = Text(name);
  fields.DataType = dtLongInteger;
  return fields;
}

void AddDatabase(const std::string& name, const std::string& connectString) {
  const DatabasePtr database =
      Framework{}.Databases()->SetupItem({.Name = name, .Engine = engODBC, .AutoConnect = true});
  database->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctText, .ConnectionString = connectString});
}

}  // namespace

ForeignSchema::ForeignSchema() : Works(kWorks), Atlas(kAtlas) {
  AddDatabase("People", Works.ConnectString());
  AddDatabase("Places", Atlas.ConnectString());
  People = Framework{}.Servers()->SetupItem({.Name = "People"});
  Places = Framework{}.Servers()->SetupItem({.Name = "Places"});
  DescribeStaff();
  DescribeOrders();
  DescribeTheRest();
  RelateThem();
}

ClassPtr ForeignSchema::AddClass(const ServerPtr& server, const std::string& name,
                                 const std::vector<PropertyFields>& key, const std::string& table, zSourceTypes type) {
  const ClassPtr added = server->Classes()->SetupItem(
      {.Name = name, .SingleActionName = "Get", .NewActionName = "Get", .DefaultActionName = "Get"});
  for (const auto& column : key) added->Properties()->SetupItem(column);
  AddAction(added, "Get", table, {}, type);
  return added;
}

ActionPtr ForeignSchema::AddAction(const ClassPtr& owner, const std::string& name, const std::string& text,
                                   const std::vector<PropertyFields>& parameters, zSourceTypes type) {
  // The databases have the names of the servers.
  const ActionPtr action = owner->Actions()->SetupItem({.Name = name,
                                                        .DatabaseName = owner->ServerName(),
                                                        .UsageFlags = ufAll,
                                                        .EditFlags = efAll,
                                                        .ObjectType = otModel,
                                                        .BusinessObjectsName = name});
  const SourcePtr source = action->Sources()->SetupItem({.Engine = engODBC, .SourceType = type, .SourceText = text});
  for (const auto& parameter : parameters) source->Parameters()->SetupItem(parameter);
  return action;
}

void ForeignSchema::Relate(const ClassPtr& owner, const std::string& name, const ClassPtr& related,
                           const std::string& action, const std::vector<Step>& links) {
  const RelationshipPtr relationship = owner->Relationships()->SetupItem({.Name = name,
                                                                          .RelatedServerName = related->ServerName(),
                                                                          .RelatedClassName = related->Name(),
                                                                          .RelatedActionName = action});
  for (const auto& step : links) {
    const LinkPtr link = relationship->Links()->SetupItem({.Name = step.Parameter});
    if (!step.Property.empty()) link->Property()->SetName(step.Property);
    link->Parameter()->SetName(step.Parameter);
  }
}

void ForeignSchema::DescribeStaff() const {
  const ClassPtr staff = AddClass(People, "Staff", {Text("Land"), Number("badge")}, "STAFF");
  AddAction(staff, "By Badge", "STAFF", {Text("Land"), Number("badge")});
  AddAction(staff, "Of Boss", "STAFF", {Text("BossLand"), Number("BossBadge")});
  AddAction(staff, "Of Order",
            "select s.* from STAFF s join \"Order Crew\" c on c.Land = s.Land and c.badge = s.badge "
            "where c.region = ? and c.No = ? order by s.Land, s.badge",
            {Text("region"), Number("No")}, stSQL);
}

void ForeignSchema::DescribeOrders() const {
  const ClassPtr order = AddClass(People, "Order", {Text("region"), Number("No")}, "\"Order\"");
  AddAction(order, "Of Staff",
            "select o.* from \"Order\" o join \"Order Crew\" c on c.region = o.region and c.No = o.No "
            "where c.Land = ? and c.badge = ? order by o.region, o.No",
            {Text("Land"), Number("badge")}, stSQL);
  AddClass(People, "Order Crew", {Text("Land"), Number("badge"), Text("region"), Number("No")}, "\"Order Crew\"");
  AddClass(People, "Crew List", {Text("Land"), Number("badge"), Text("region"), Number("No")}, "\"Crew List\"", stView);
}

void ForeignSchema::DescribeTheRest() const {
  PropertyFields week = Text("Week Ending", "[Week Ending]");
  week.DataType = dtDate;
  AddClass(People, "Time Sheet", {Text("Land"), Number("badge"), week}, "[Time Sheet]");
  AddClass(People, "Passage", {Number("badge"), Text("Gate")}, "gate_log");
  AddClass(People, "Odd", {Number("Id")}, "\"Odd Types\"");
  const ClassPtr region = AddClass(Places, "Region", {Text("Code")}, "region_of");
  AddAction(region, "By Code", "region_of", {Text("Code")});
}

void ForeignSchema::RelateThem() const {
  const ClassPtr staff = Class("Staff");
  const ClassPtr order = Class("Order");
  const ClassPtr crew = Class("Order Crew");
  const ClassPtr region = Places->Classes()->Item("Region");
  Relate(staff, "Boss", staff, "By Badge", {{"BossLand", "Land"}, {"BossBadge", "badge"}});
  Relate(staff, "Reports", staff, "Of Boss", {{"Land", "BossLand"}, {"badge", "BossBadge"}});
  Relate(staff, "Self", staff, "Get");
  Relate(staff, "Crew", crew, "Get");
  Relate(staff, "Orders", order, "Of Staff");
  Relate(staff, "Sheets", Class("Time Sheet"), "Get");
  Relate(staff, "Home", region, "By Code", {{"Home", "Code"}});
  Relate(order, "Crew", crew, "Get");
  Relate(order, "Staff", staff, "Of Order");
  Relate(order, "Region", region, "By Code", {{"region", "Code"}});
  Relate(crew, "Order", order, "Get", {{"region", "region"}, {"No", "No"}});
  Relate(crew, "Staff", staff, "Get", {{"Land", "Land"}, {"badge", "badge"}});
  Relate(region, "Head", staff, "By Badge", {{"HeadLand", "Land"}, {"HeadBadge", "badge"}});
}

std::string ForeignSchemaTest::Values(const IBusinessObjectsPtr& objects, const char* property) {
  std::string values;
  for (const auto& object : *objects) {
    const Variant value = Value(object, property);
    values += (value.IsNull() ? "Null" : value.AsText()) + ";";
  }
  return values;
}

IBusinessObjectPtr ForeignSchemaTest::Staff(const char* land, std::int32_t badge) {
  return Framework{}.GetBusinessObject({.ClassName = "Staff", .KeyValue1 = land, .KeyValue2 = badge});
}

IBusinessObjectPtr ForeignSchemaTest::Order(const char* region, std::int32_t number) {
  return Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = region, .KeyValue2 = number});
}

}  // namespace velmoria::test
