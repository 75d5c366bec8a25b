#include "velmoria/core/reporting.h"
#include "velmoria/data/sql_clauses_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"

namespace velmoria {

namespace {

/// The members that take part, each appended by `append`, with ", " between.
template <class Append>
std::string Joined(const Properties& properties, bool dirtyOnly, Append append) {
  std::string text;
  for (const auto& property : properties) {
    if (dirtyOnly && !property->DirtyValue()) continue;
    if (!text.empty()) text += ", ";
    append(text, *property);
  }
  return text;
}

}  // namespace

std::string Properties::NamesClause(zSourceTypes sourceType, bool dirtyOnly) const {
  return Joined(*this, dirtyOnly,
                [&](std::string& text, const Property& property) { sql::AppendName(text, property, sourceType); });
}

std::string Properties::ValuesClause(zEngines engine, bool dirtyOnly) const {
  return Joined(*this, dirtyOnly,
                [&](std::string& text, const Property& property) { sql::AppendValue(text, property, engine); });
}

// The table is not looked at: a source of several tables gets the same list for each.
std::string Properties::SetClause(zSourceTypes sourceType, zEngines engine, const std::string& /*sourceTable*/,
                                  bool dirtyOnly) const {
  return Joined(*this, dirtyOnly, [&](std::string& text, const Property& property) {
    sql::AppendSet(text, property, sourceType, engine);
  });
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
