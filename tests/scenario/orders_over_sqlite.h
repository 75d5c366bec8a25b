#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/sqlite_file.h"
#include "velmoria/fwd.h"

namespace velmoria::test {

/// Orders 1 to 25 in a real database, and an Action over them.
class OrdersOverSqlite : public testing::Test {
 public:
  ~OrdersOverSqlite() override;

 protected:
  OrdersOverSqlite();

  /// The fields with the database's connect string put in.
  void Design(OneActionFields fields = {});
  RecordsetPtr Read(const PropertiesPtr& parameters = {}) { return design_->Read(parameters); }
  /// The row of one order, read by its key.
  PropertiesPtr Order(std::int32_t id);
  /// What the database holds, looked at without the library.
  std::string Stored(const std::string& column, const std::string& where) {
    return file_.Column("SELECT " + column + " FROM orders WHERE " + where + " ORDER BY Id");
  }
  SqliteFile file_;
  ScopedApartment scope_;
  std::unique_ptr<OneAction> design_;
};

}  // namespace velmoria::test
