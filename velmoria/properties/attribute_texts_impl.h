#pragma once

#include <string>

#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"

namespace velmoria {

/// An index as the messages on Attributes show it: a number plain, a String in single quotes, anything else as the name
/// of its type in single quotes.
std::string AttributeIndexText(const Variant& index);

/// The placeholders of "Problem adding Attribute"; a position not given shows as '(Missing)' or '(Empty)'.
Replacements AttributeAddTexts(const std::string& name, const Position& position);

}  // namespace velmoria
