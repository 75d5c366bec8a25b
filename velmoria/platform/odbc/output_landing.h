#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/odbc/landing.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// Where a number, a date or a Boolean lands that a call gives back in a parameter.
class OutputLanding {
 public:
  /// For a storage of fixed width, and the driver's code of its type. Without a size it is as wide as such a value can
  /// be.
  OutputLanding(const ColumnInfo& info, Small type);
  OutputLanding(const OutputLanding&) = delete;
  OutputLanding& operator=(const OutputLanding&) = delete;

  /// A value that is given, which Empty, Missing and Null are not, is there before the execution. Raises what its
  /// conversion raises.
  void Bind(Statement& statement, Word number, Small direction, const Variant& given);
  /// What the execution left. Raises 6 for a value that did not fit.
  Variant Value();

 private:
  bool IsWhole() const noexcept;
  std::string TextOf(const Variant& value) const;
  Length Put(const Variant& value);

  ColumnInfo info_;
  Small type_;
  Landing landing_;
  std::unique_ptr<std::byte[]> memory_;
};

}  // namespace velmoria::odbc
