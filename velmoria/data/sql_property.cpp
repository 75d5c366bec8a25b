#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/sql_clauses_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace sql {

namespace {

struct NullTest {
  std::string_view Operator;
  std::string_view Access;
  std::string_view Server;
};
constexpr NullTest kNullTests[] = {
    {"=", "IsNull", "is Null"},
    {"<>", "Not IsNull", "is not Null"},
};

zEngines EngineFor(const Property& property, zEngines engine) {
  return engine == engUnknown ? property.Engine() : engine;
}

/// Raises 15096, recorded as information: the most severe message held may be another one.
[[noreturn, gnu::cold]] void RefuseOperator(const PropertyData& data) {
  const MessageArguments arguments{.Number = errNotSupported_Operator,
                                   .TypeName = "Property",
                                   .RoutineName = "OperatorValue (Get)",
                                   .StateDetails = "Name: " + Quoted(data.Name()),
                                   .TypeFlags = tfVelmoria,
                                   .SeverityFlags = svfInfo,
                                   .Replace1 = data.Operator(),
                                   .Replace2 = data.Name()};
  const auto messages = Apartment().Messages;
  auto message = messages ? messages->SetupItem(arguments) : MessagePtr();
  if (!message) message = Make<Message>(arguments);
  throw Error(message->ErrNo(), message->Description(), message->HelpFile(), message->HelpContextID());
}

}  // namespace

void AppendName(std::string& text, const Property& property, zSourceTypes sourceType) {
  const auto& data = *property.Data();
  const auto before = text.size();
  if (sourceType == stTable || sourceType == stView)
    text += data.SourceColumn();
  else
    text += data.SourceKey();
  if (text.size() == before) text += data.SourceName();
  if (text.size() == before) text += data.Name();
}

void AppendValue(std::string& text, const Property& property, zEngines engine) {
  AppendLiteral(text, property.Value(), property.Data()->DataType(), EngineFor(property, engine));
}

void AppendOperatorValue(std::string& text, const Property& property, zEngines engine) {
  const auto value = property.Value();
  const auto& data = *property.Data();
  engine = EngineFor(property, engine);
  if (!value.IsNull()) {
    text += data.Operator();
    text += ' ';
    return AppendLiteral(text, value, data.DataType(), engine);
  }
  for (const auto& test : kNullTests) {
    if (test.Operator != data.Operator()) continue;
    text += engine == engAccess ? test.Access : test.Server;
    return;
  }
  RefuseOperator(data);
}

void AppendSet(std::string& text, const Property& property, zSourceTypes sourceType, zEngines engine) {
  AppendName(text, property, sourceType);
  text += " = ";
  AppendValue(text, property, engine);
}

void AppendWhere(std::string& text, const Property& property, zSourceTypes sourceType, zEngines engine) {
  AppendName(text, property, sourceType);
  text += ' ';
  AppendOperatorValue(text, property, engine);
}

}  // namespace sql

std::string Property::NameClause(zSourceTypes sourceType) const {
  std::string text;
  sql::AppendName(text, *this, sourceType);
  return text;
}

std::string Property::ValueClause(zEngines engine) const {
  std::string text;
  sql::AppendValue(text, *this, engine);
  return text;
}

std::string Property::OperatorValue(zEngines engine) const {
  std::string text;
  sql::AppendOperatorValue(text, *this, engine);
  return text;
}

std::string Property::SetClause(zSourceTypes sourceType, zEngines engine) const {
  std::string text;
  sql::AppendSet(text, *this, sourceType, engine);
  return text;
}

std::string Property::WhereClause(zSourceTypes sourceType, zEngines engine) const {
  std::string text;
  sql::AppendWhere(text, *this, sourceType, engine);
  return text;
}

}  // namespace velmoria
