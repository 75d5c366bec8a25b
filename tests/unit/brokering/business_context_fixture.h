#pragma once

#include <string>

#include <gtest/gtest.h>

#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// Contexts over the design of SampleDesign, which has no database behind it.
class BusinessContextTest : public testing::Test {
 protected:
  static BusinessContextPtr NewContext(const BusinessContextFields& fields = {}) {
    auto context = Make<BusinessContext>();
    context->Setup(fields);
    return context;
  }
  static IBusinessObjectsPtr Collection(const std::string& name) {
    return Framework{}.CreateBusinessObjects({.Name = name});
  }
  static PropertiesPtr SomeParameters() {
    PropertiesPtr parameters = Framework{}.CreateProperties();
    parameters->SetupItem({.Name = "Id", .Value = 5, .DataType = dtLongInteger});
    return parameters;
  }

  ScopedApartment apartment_;
  SampleDesign design_;
};

}  // namespace velmoria::test
