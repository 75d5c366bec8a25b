#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "tests/support/sqlite_file.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// Two databases that others have laid out, and a design over them. "Works" (server People) has the tables STAFF (key
/// Land, badge; each with a boss in the same table), "Order" (region, No), "Order Crew" (Land, badge, region, No; who
/// works on which order), "Time Sheet" (Land, badge, Week Ending), gate_log (no key at all), "Odd Types", and the view
/// "Crew List". "Atlas" (server Places) has region_of (Code), with the head of each region.
class ForeignSchema {
 public:
  ForeignSchema();

  SqliteFile Works;
  SqliteFile Atlas;
  ServerPtr People;
  ServerPtr Places;

  /// The class with an Action "Get" over the table; the key columns in their order.
  static ClassPtr AddClass(const ServerPtr& server, const std::string& name, const std::vector<PropertyFields>& key,
                           const std::string& table, zSourceTypes type = stTable);
  /// An Action over the text, with declared parameters.
  static ActionPtr AddAction(const ClassPtr& owner, const std::string& name, const std::string& text,
                             const std::vector<PropertyFields>& parameters, zSourceTypes type = stTable);
  struct Step {
    std::string Property;
    std::string Parameter;
  };
  static void Relate(const ClassPtr& owner, const std::string& name, const ClassPtr& related, const std::string& action,
                     const std::vector<Step>& links = {});
  ClassPtr Class(const std::string& name) const { return People->Classes()->Item(name); }

 private:
  void DescribeStaff() const;
  void DescribeOrders() const;
  void DescribeTheRest() const;
  void RelateThem() const;
};

class ForeignSchemaTest : public testing::Test {
 protected:
  static Variant Value(const IBusinessObjectPtr& object, const char* property) {
    return object->FindProperty(property)->Value();
  }
  /// The values of one property of all members, each with ";" behind; "Null" for Null.
  static std::string Values(const IBusinessObjectsPtr& objects, const char* property);
  static IBusinessObjectPtr Staff(const char* land, std::int32_t badge);
  static IBusinessObjectPtr Order(const char* region, std::int32_t number);
  static IBusinessObjectsPtr All(const char* className) {
    return Framework{}.GetBusinessObjects({.ClassName = className});
  }
  std::string Works(const std::string& query) { return schema_.Works.Column(query); }
  std::string Atlas(const std::string& query) { return schema_.Atlas.Column(query); }

  ScopedApartment apartment_;
  ForeignSchema schema_;
};

}  // namespace velmoria::test
