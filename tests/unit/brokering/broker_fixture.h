#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// A context of one's own over OneAction and a driver in memory, which tells what was asked of it. The columns are Id
/// and Name.
class BrokerTest : public testing::Test {
 protected:
  BrokerTest() {
    apartment_.State().Platform.Odbc = driver_;
    driver_->Columns = {{"Id", kInteger}, {"Name", kVarchar, 40}};
  }
  void Design(int rows, const OneActionFields& fields = {}) {
    for (int id = 1; id <= rows; ++id) driver_->Rows.push_back({std::to_string(id), "Order " + std::to_string(id)});
    design_ = std::make_unique<OneAction>(fields);
    design_->Class->SetNewActionName("Get");
  }
  std::size_t Statements() const { return driver_->Texts.size(); }

  static constexpr short kInteger = 4;
  static constexpr short kVarchar = 12;
  ScopedApartment apartment_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  std::unique_ptr<OneAction> design_;
  BusinessContextPtr context_ = Framework{}.CreateBusinessContext();
};

}  // namespace velmoria::test
