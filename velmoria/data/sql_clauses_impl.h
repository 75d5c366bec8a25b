#pragma once

#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::sql {

// The pieces of a statement, each appended to a text that grows. An engine of 0 is the Property's own.

/// The name of a column: unqualified for tables and views, table and column else. Nothing is quoted.
void AppendName(std::string& text, const Property& property, zSourceTypes sourceType);

/// The Value as a literal.
void AppendValue(std::string& text, const Property& property, zEngines engine);

/// A literal of the given type; dtVariant goes by the value's own. Raises 13 for a value that has no literal.
void AppendLiteral(std::string& text, const Variant& value, zDataTypes dataType, zEngines engine);

/// The Operator and the literal, or the test for Null. Raises 15096, recorded as information, for a Null with another
/// Operator than "=" and "<>".
void AppendOperatorValue(std::string& text, const Property& property, zEngines engine);

void AppendSet(std::string& text, const Property& property, zSourceTypes sourceType, zEngines engine);

/// Properties.SetClause and ValuesClause. What is long is written once, where it stays.
void AppendSetClause(std::string& text, const Properties& properties, zSourceTypes sourceType, zEngines engine,
                     bool dirtyOnly);
void AppendValuesClause(std::string& text, const Properties& properties, zEngines engine, bool dirtyOnly);

void AppendWhere(std::string& text, const Property& property, zSourceTypes sourceType, zEngines engine);

}  // namespace velmoria::sql
