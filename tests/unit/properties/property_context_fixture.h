#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// A transient context.
class PropertyContextTest : public testing::Test {
 protected:
  static PropertiesPtr Values(const std::string& name, const std::vector<PropertyFields>& members = {}) {
    const PropertiesPtr values = Framework{}.CreateProperties({.Name = name});
    for (const auto& member : members) values->SetupItem(member);
    return values;
  }
  static PropertyFields Number(const std::string& name, std::int32_t value) {
    return {.Name = name, .Value = value, .DataType = dtLongInteger};
  }
  static std::string Names(const PropertyContext& context) {
    std::string names;
    for (const auto& properties : context) names += properties->Name();
    return names;
  }

  ScopedApartment apartment_;
  PropertyContextPtr context_ = Framework{}.CreatePropertyContext();
};

/// Beside it, one that begins with a row of a database result.
class BoundPropertyContextTest : public PropertyContextTest {
 protected:
  static PropertyContextPtr ContextOf(const PropertiesPtr& properties) {
    auto context = Make<PropertyContext>();
    context->SetupWith(properties);
    return context;
  }
  PropertiesPtr Row(std::int32_t row, const std::string& name = {}) const {
    return rows_->GetPersistentProperties(row, name);
  }
  static KeyFormatPtr Format(const KeyFormatFields& fields, std::initializer_list<const char*> members = {}) {
    const KeyFormatPtr format = Framework{}.CreateKeyFormat(fields);
    for (const char* name : members) format->Properties()->SetupItem({.Name = name, .DataType = dtString});
    return format;
  }

  BoundOrders orders_{{.Ids = {1042, 7}}};
  RecordsetPtr rows_ = orders_.Read();
  PropertyContextPtr bound_ = ContextOf(Row(0));
};

}  // namespace velmoria::test
