#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// The longest text or bytes, in bytes, that servers take as a value of a type that is not long.
inline constexpr std::uint16_t kLongestPlain = 8000;

/// Where a text or bytes land that a call gives back in a parameter.
///
/// It is as wide as the catalogue says that the value can be: 64 kB at least, 256 MB at most, and at least 16 MB for a
/// long type or where the catalogue tells no length. What of it is not written takes no memory.
class OutputBuffer {
 public:
  /// For a storage of Text or Bytes. Where the value comes again as a row, the least width is enough.
  OutputBuffer(const ColumnInfo& info, bool comesAsRow);

  /// A value that is given, which Empty, Missing and Null are not, is there before the execution. Raises 13 for bytes
  /// that are no byte array.
  void Bind(Statement& statement, Word number, Small direction, const Variant& given);
  /// What the execution left. Raises 6 for a value that did not fit.
  Variant Value() const;

 private:
  void Put(const Variant& given);
  std::size_t Room() const noexcept { return isText_ ? width_ - 1 : width_; }

  std::string name_;
  bool isText_;
  Small type_;
  ULength size_;
  std::size_t width_;
  std::unique_ptr<Byte[]> bytes_;
  Length length_ = 0;
};

}  // namespace velmoria::odbc
