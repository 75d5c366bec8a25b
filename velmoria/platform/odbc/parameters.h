#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// An output parameter as far as it is known; a size or type of 0 is not.
struct OutputParameter {
  std::string Name{};
  std::int32_t Type = 0;
  std::int32_t Size = 0;
  Small Digits = 0;
};

/// The values of one execution, kept where the driver finds them until the statement has run, and those that it leaves
/// there. A text or bytes are shared with the value given, not copied.
class ParameterValues {
 public:
  /// Whether the driver gives the outputs again in a row of their own; then their buffers need not hold what is long.
  explicit ParameterValues(bool outputsComeAsRow = false);
  ~ParameterValues();

  /// Adds the value of the next marker. The type is a documented code, or 0 for the type of the value. Empty, Missing
  /// and Null are NULL. A date with a time of day is always sent as a timestamp. Raises 13 for an object or for an
  /// array that is no byte array.
  void Add(const Variant& value, std::int32_t type);
  /// Adds the buffer of the next marker, which gives a value back and takes `given` before, unless that is null.
  void AddOutput(const OutputParameter& parameter, const Variant* given);
  /// Raises what the conversion of a given value to its parameter's type raises.
  void BindTo(Statement& statement);
  std::size_t Count() const noexcept;
  std::size_t Outputs() const noexcept { return outputs_; }
  bool IsOutput(std::size_t place) const;
  /// The value that the execution left, by the place of its parameter from 0. Raises 6 for one that is too long.
  Variant Output(std::size_t place);
  /// A value that came as that of a column, as the parameter has it. Raises what its conversion raises.
  Variant Output(std::size_t place, const Variant& value) const;
  bool OutputsComeAsRow() const noexcept { return outputsComeAsRow_ && outputs_ > 0; }

 private:
  struct Slot;
  static void AddNumber(Slot& slot, const Variant& value, std::int32_t type);
  static void AddDate(Slot& slot, velmoria::Date date, std::int32_t type);
  static void SetLength(Slot& slot, std::size_t length);
  static std::span<const std::byte> BytesOf(const Slot& slot);

  bool outputsComeAsRow_;
  std::size_t outputs_ = 0;
  std::vector<Slot> slots_;
};

}  // namespace velmoria::odbc
