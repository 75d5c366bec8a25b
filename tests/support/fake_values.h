#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

#include "velmoria/platform/odbc/calls.h"

namespace velmoria::test {

/// Where the values of a column or a parameter go, one for each row.
struct FakeBinding {
  odbc::Small CType;
  void* Value;
  odbc::Length Capacity;
  odbc::Length* Indicator;
};

/// As much of the text as there is room for, with a zero behind it; gives the length of the whole.
odbc::Small CopyText(const std::string& text, void* target, odbc::Length capacity);

template <class T>
void Put(void* target, std::size_t row, T value) {
  std::memcpy(static_cast<std::byte*>(target) + row * sizeof(T), &value, sizeof value);
}

/// Writes a value, none for Null, as the C type of the place wants it, and its length.
odbc::Code PutValue(const std::optional<std::string>& value, const FakeBinding& binding, std::size_t row);

}  // namespace velmoria::test
