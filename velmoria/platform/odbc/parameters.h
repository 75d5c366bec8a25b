#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// The input values of one execution, kept where the driver finds them until the statement has run.
class ParameterValues {
 public:
  ParameterValues();
  ~ParameterValues();

  /// Adds the value of the next marker. The type is a documented code, or 0 for the type of the value. Empty, Missing
  /// and Null are NULL. A date with a time of day is always sent as a timestamp. Raises 13 for an object or for an
  /// array that is no byte array.
  void Add(const Variant& value, std::int32_t type);
  void BindTo(Statement& statement);

 private:
  struct Slot;
  static void AddText(Slot& slot, const Variant& value, std::int32_t type);
  static void AddDate(Slot& slot, velmoria::Date date, std::int32_t type);
  static void SetText(Slot& slot, std::string text);

  std::vector<Slot> slots_;
};

}  // namespace velmoria::odbc
