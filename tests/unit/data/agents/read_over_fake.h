#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

inline constexpr short kInteger = 4;
inline constexpr short kVarchar = 12;

/// An agent over a driver in memory: rows 1 to 25 of "Id" and "Name", "n1" to "n25".
class ReadOverFake : public testing::Test {
 protected:
  ReadOverFake() {
    scope_.State().Platform.Odbc = driver_;
    driver_->Columns = {{"Id", kInteger}, {"Name", kVarchar, 40}};
    SetRows(25);
  }

  void SetRows(int count) {
    driver_->Rows.clear();
    for (int number = 1; number <= count; ++number)
      driver_->Rows.push_back({std::to_string(number), "n" + std::to_string(number)});
  }
  void Design(const OneActionFields& fields) { design_ = std::make_unique<OneAction>(fields); }
  static std::int32_t IdAt(const RecordsetPtr& page, std::int32_t row) {
    return page->Values(row, *page->Columns()->Item("Id")).AsLong();
  }
  static PropertiesPtr Parameter(const PropertyFields& fields) {
    auto parameters = Make<Properties>();
    parameters->SetupItem(fields);
    return parameters;
  }
  /// A statement with a marker for each of the declared parameters.
  void DesignStatement(const std::string& text, const std::vector<PropertyFields>& declared,
                       zOptionFlags options = ofNone) {
    Design({.SourceType = stSQL, .SourceText = text, .OptionFlags = options});
    for (const auto& fields : declared) design_->Source->Parameters()->SetupItem(fields);
  }
  std::string Logged() { return scope_.Messages().Item("15129")->ExtraText(); }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  std::unique_ptr<OneAction> design_;
};

}  // namespace velmoria::test
