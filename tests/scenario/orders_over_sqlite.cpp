#include "tests/scenario/orders_over_sqlite.h"

#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"

namespace velmoria::test {

namespace {

constexpr char kScript[] = R"(
  CREATE TABLE orders (
    Id INTEGER NOT NULL PRIMARY KEY,
    Customer VARCHAR(40),
    Placed TIMESTAMP,
    Total DOUBLE,
    Note VARCHAR(80));
  WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 25)
    INSERT INTO orders SELECT i, 'Customer ' || i, '1998-06-01 09:14:02', i * 1.5, NULL FROM n;
  UPDATE orders SET Customer = 'O''Brien & Söhne', Note = 'What?' WHERE Id = 3;
  CREATE VIEW big_orders AS SELECT * FROM orders WHERE Total > 30;
)";

}  // namespace

OrdersOverSqlite::OrdersOverSqlite() : file_(kScript) {}
OrdersOverSqlite::~OrdersOverSqlite() = default;

void OrdersOverSqlite::Design(OneActionFields fields) {
  if (fields.ConnectString == OneActionFields{}.ConnectString) fields.ConnectString = file_.ConnectString();
  design_ = std::make_unique<OneAction>(fields);
}

PropertiesPtr OrdersOverSqlite::Order(std::int32_t id) {
  return Read(design_->Key(id))->GetPersistentProperties(0, "");
}

}  // namespace velmoria::test
