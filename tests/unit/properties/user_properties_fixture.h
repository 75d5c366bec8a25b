#pragma once

#include <string>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// A transient collection, and one over definitions of its own.
class UserPropertiesFixture : public testing::Test {
 protected:
  UserPropertiesFixture()
      : transient_(Framework().CreateProperties()), data_(Make<PropertiesData>()), user_(Over(data_)) {}
  static PropertyPtr New(const std::string& name) { return Framework().CreateProperty({.Name = name}); }
  static PropertiesPtr Over(const PropertiesDataPtr& data) {
    auto properties = Make<Properties>();
    properties->Bind({.Style = psUser, .PropertiesData = data});
    return properties;
  }
  /// The names of the members, one behind the other.
  template <class Collection>
  static std::string Order(const Collection& members) {
    std::string names;
    for (const auto& item : *members) names += item->Name();
    return names;
  }
  std::string DefinedOrder() const { return Order(data_); }

  ScopedApartment apartment_;
  PropertiesPtr transient_;
  PropertiesDataPtr data_;
  PropertiesPtr user_;  // over data_
};

}  // namespace velmoria::test
