#pragma once

#include <cstddef>
#include <string>

#include "velmoria/platform/odbc/calls.h"

namespace velmoria::odbc {

/// A text as the calls take it, which do not write to it.
Char* MutableText(const std::string& text) noexcept;

/// A length or a place as the calls and the objects over them tell it. Raises 6 for one that they cannot tell.
Number CheckedNumber(std::size_t value);

/// The length of a statement's text. Raises 5 for one with a character 0: a driver may take that for the end of the
/// text, and run what stands before it.
Number LengthOfStatement(const std::string& text);

}  // namespace velmoria::odbc
