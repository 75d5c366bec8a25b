#include <algorithm>
#include <optional>
#include <string_view>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/sql_clauses_impl.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

constexpr bool IsTableOrView(zSourceTypes sourceType) { return sourceType == stTable || sourceType == stView; }

struct Refusal {
  zErrors Number;
  Replacements Texts;
};

const char* SupportedOperation(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return EqualFolded(text.substr(0, 6), "SELECT") ? "Get/Create BusinessObjects or Properties" : "Execute";
}

/// Why a source cannot give an INSERT, UPDATE or DELETE.
std::optional<Refusal> RefusalOf(const Source& source, const char* statement) {
  switch (source.SourceType()) {
    case stQueryDef: return Refusal{errQueryDef, {statement}};
    case stSQL: return Refusal{errSQL, {statement, SupportedOperation(source.SourceText())}};
    case stStoredProcedure: return Refusal{errStoredProcedure, {statement}};
    default: return std::nullopt;
  }
}

/// The collection in which a counter is looked for.
PropertiesPtr CounterColumns(const PropertiesPtr& properties, const PropertiesPtr& parameters) {
  if (!parameters || parameters->Count() == 0) return properties;
  return (*parameters->begin())->Flags() != pfNone ? parameters : properties;
}

Properties& Present(const PropertiesPtr& properties) {
  if (!properties) Fail(RuntimeFailure::ObjectNotSet);
  return *properties;
}

std::string Concat(std::initializer_list<std::string_view> parts) {
  std::size_t size = 0;
  for (const auto part : parts) size += part.size();
  std::string text;
  text.reserve(size);
  for (const auto part : parts) text.append(part);
  return text;
}

/// Only inside a catch block. A refused operator goes up as it is. It is recorded as information, which whatever the
/// handlers above record would hide, so its text is recorded once more as a failure of no number of its own.
void PassRefusedOperator(const Source& source, const char* routine) {
  const auto refused = CurrentError();
  if (refused.CatalogueNumber() != static_cast<std::int32_t>(errNotSupported_Operator)) return;
  if (const auto messages = Apartment().Messages) {
    messages->SetupItem({.Number = errVelmoria_Unknown,
                         .Description = refused.Description(),
                         .TypeName = std::string(source.ReportedType()),
                         .RoutineName = routine,
                         .StateDetails = source.Details(),
                         .SeverityFlags = svfError});
  }
  throw;
}

/// Markers are found from the left in what the text has become, so a "?" in a value just put in is the next one.
std::string WithValues(std::string text, const Properties& parameters, zEngines engine) {
  for (const auto& parameter : parameters) {
    const auto marker = text.find('?');
    if (marker == std::string::npos) break;
    text.replace(marker, 1, parameter->ValueClause(engine));
  }
  return text;
}

/// With an engine the values stand in the call, without one the markers.
std::string ProcedureCall(const std::string& name, const Properties& parameters, zEngines engine) {
  const bool passThrough = engine != engUnknown;
  std::string list;
  if (passThrough) {
    list = parameters.ValuesClause(engine, false);
  } else {
    for (const auto& parameter : parameters) {
      if (has(parameter->Flags(), pfReturnValue)) continue;
      list += list.empty() ? "?" : ", ?";
    }
  }
  const bool returns = !passThrough && parameters.ReturnValueParameter();
  return Concat(
      {returns ? "{? = Call " : "{ Call ", name, list.empty() ? "" : " (", list, list.empty() ? " }" : ") }"});
}

}  // namespace

std::string Source::SQLSelect(const PropertiesPtr& parameters) try {
  const auto sourceType = SourceType();
  // This operation reports itself under the name of another.
  if (sourceType == stQueryDef) Raise(errQueryDef, "SQLUpdate", {"Select"});
  if (sourceType == stSQL || sourceType == stStoredProcedure) return SQLExecute(parameters);
  if (!IsTableOrView(sourceType)) return {};
  const auto where = parameters ? parameters->WhereClause(sourceType, nullptr, Engine()) : std::string();
  return Concat({"SELECT * FROM ", SourceText(), where.empty() ? "" : " WHERE ", where});
} catch (...) {
  PassRefusedOperator(*this, "SQLSelect");
  Failed("SQLSelect");
}

// Two forms with other blanks for tables; a view is addressed by its own name whatever tables its columns have.
std::string Source::SQLInsert(const PropertiesPtr& properties, bool& returnsIdentity,
                              const PropertiesPtr& parameters) try {
  returnsIdentity = false;
  if (const auto refusal = RefusalOf(*this, "Insert")) Raise(refusal->Number, "SQLInsert", refusal->Texts);
  const auto sourceType = SourceType();
  if (!IsTableOrView(sourceType)) return {};
  const auto& row = Present(properties);
  if (sourceType == stView && row.Count() == 0) return {};
  const auto identity = CounterColumns(properties, parameters)->ReturnIdentityClause(sourceType);
  const auto names = row.NamesClause(sourceType, true);
  const bool spaced = !identity.empty() || sourceType == stView;
  auto text = Concat({sourceType == stView ? " INSERT INTO " : "INSERT INTO ", SourceText(), " ( ", names, " ) VALUES",
                      spaced ? " ( " : " ("});
  sql::AppendValuesClause(text, row, Engine(), true);
  returnsIdentity = !identity.empty();
  text.append(returnsIdentity ? " ) " : " )").append(identity);
  return text;
} catch (...) { Failed("SQLInsert"); }

std::string Source::SQLUpdate(const PropertiesPtr& properties, const PropertiesPtr& parameters) try {
  if (const auto refusal = RefusalOf(*this, "Update")) Raise(refusal->Number, "SQLUpdate", refusal->Texts);
  const auto sourceType = SourceType();
  if (!IsTableOrView(sourceType)) return {};
  const auto& row = Present(properties);
  if (sourceType == stView && row.Count() == 0) return {};
  auto text = Concat({sourceType == stView ? " UPDATE " : "UPDATE ", SourceText(), " SET "});
  sql::AppendSetClause(text, row, sourceType, Engine(), true);
  text.append(" WHERE ").append(Present(parameters).WhereClause(sourceType, nullptr, Engine()));
  return text;
} catch (...) {
  PassRefusedOperator(*this, "SQLUpdate");
  Failed("SQLUpdate");
}

std::string Source::SQLDelete(const PropertiesPtr& properties, const PropertiesPtr& parameters) try {
  if (const auto refusal = RefusalOf(*this, "Delete")) Raise(refusal->Number, "SQLDelete", refusal->Texts);
  const auto sourceType = SourceType();
  if (!IsTableOrView(sourceType)) return {};
  return Concat(
      {"DELETE FROM ", SourceText(), " WHERE ", Present(parameters).WhereClause(sourceType, properties, Engine())});
} catch (...) {
  PassRefusedOperator(*this, "SQLDelete");
  Failed("SQLDelete");
}

std::string Source::SQLExecute(const PropertiesPtr& parameters) try {
  const auto values = parameters ? parameters : Parameters();
  const bool passThrough = has(OptionFlags(), ofRDOPassthru);
  switch (SourceType()) {
    case stSQL: return passThrough ? WithValues(SourceText(), *values, Engine()) : SourceText();
    case stStoredProcedure: return ProcedureCall(SourceText(), *values, passThrough ? Engine() : engUnknown);
    case stQueryDef: Raise(errQueryDef, "SQLExecute", {"Execute"});
    default: Raise(errTableView, "SQLExecute", {SourceTypeName()});
  }
} catch (...) { Failed("SQLExecute"); }

}  // namespace velmoria
