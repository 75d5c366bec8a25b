#include "velmoria/core/reporting.h"
#include "velmoria/data/sql_clauses_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"

namespace velmoria {

namespace {

/// The members that take part, each appended by `append`, with ", " between.
template <class Append>
void AppendJoined(std::string& text, const Properties& properties, bool dirtyOnly, Append append) {
  const auto before = text.size();
  for (const auto& property : properties) {
    if (dirtyOnly && !property->DirtyValue()) continue;
    if (text.size() != before) text += ", ";
    append(text, *property);
  }
}

}  // namespace

namespace sql {

void AppendSetClause(std::string& text, const Properties& properties, zSourceTypes sourceType, zEngines engine,
                     bool dirtyOnly) {
  AppendJoined(text, properties, dirtyOnly,
               [&](std::string& end, const Property& property) { AppendSet(end, property, sourceType, engine); });
}

void AppendValuesClause(std::string& text, const Properties& properties, zEngines engine, bool dirtyOnly) {
  AppendJoined(text, properties, dirtyOnly,
               [&](std::string& end, const Property& property) { AppendValue(end, property, engine); });
}

}  // namespace sql

std::string Properties::NamesClause(zSourceTypes sourceType, bool dirtyOnly) const {
  std::string text;
  AppendJoined(text, *this, dirtyOnly,
               [&](std::string& end, const Property& property) { sql::AppendName(end, property, sourceType); });
  return text;
}

std::string Properties::ValuesClause(zEngines engine, bool dirtyOnly) const {
  std::string text;
  sql::AppendValuesClause(text, *this, engine, dirtyOnly);
  return text;
}

// The table is not looked at: a source of several tables gets the same list for each.
std::string Properties::SetClause(zSourceTypes sourceType, zEngines engine, const std::string& /*sourceTable*/,
                                  bool dirtyOnly) const {
  std::string text;
  sql::AppendSetClause(text, *this, sourceType, engine, dirtyOnly);
  return text;
}

std::string Properties::WhereClause(zSourceTypes sourceType, const PropertiesPtr& values, zEngines engine) const {
  std::string text;
  for (const auto& property : *this) {
    if (!text.empty()) text += property->OrFlag() ? " Or " : " And ";
    PropertyPtr answer = property;
    if (values) {
      const Suspension quiet{"Properties.WhereClause"};
      if (auto found = values->FindOrAsk({.Parameter = property})) answer = found;
    }
    sql::AppendName(text, *property, sourceType);
    text += ' ';
    sql::AppendOperatorValue(text, *answer, engine);
  }
  return text;
}

std::string Properties::ReturnIdentityClause(zSourceTypes sourceType) const {
  for (const auto& property : *this) {
    if (!property->Counter()) continue;
    std::string text = "SELECT '";
    sql::AppendName(text, *property, sourceType);
    text += "' = @@IDENTITY";
    return text;
  }
  return {};
}

}  // namespace velmoria
