#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "velmoria/runtime/api.h"

namespace velmoria {

/// What a catalogue number is raised as: this base plus the number.
inline constexpr std::int32_t ErrorBase = static_cast<std::int32_t>(0x80040000U);

/// The one exception that reaches a host.
/// A failure that the library reports carries ErrorBase plus a catalogue number (15000 to 15180); a failure of the
/// run-time itself, such as a conversion of a Variant, carries its own small number (see RuntimeFailure).
class VELMORIA_API Error : public std::exception {
 public:
  Error(std::int32_t number, std::string description, std::string helpFile = {}, std::int32_t helpContext = 0);
  ~Error() override;

  std::int32_t Number() const noexcept { return number_; }
  const std::string& Description() const noexcept { return description_; }
  const std::string& HelpFile() const noexcept { return helpFile_; }
  std::int32_t HelpContext() const noexcept { return helpContext_; }

  /// The catalogue number, 15000 to 15180, or 0 when the number is not one of ours.
  std::int32_t CatalogueNumber() const noexcept;

  /// The description; it stays valid as long as this Error does.
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string description_;
  std::string helpFile_;
  std::int32_t helpContext_;
};

/// The failures that the run-time itself raises, by their usual numbers.
enum class RuntimeFailure : std::int32_t {
  InvalidArgument = 5,
  Overflow = 6,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  BadFileNumber = 52,
  FileNotFound = 53,
  FileAlreadyOpen = 55,
  DeviceError = 57,
  FileAlreadyExists = 58,
  DiskFull = 61,
  InputPastEnd = 62,
  PermissionDenied = 70,
  PathFileAccess = 75,
  PathNotFound = 76,
  ObjectNotSet = 91,
  InvalidUseOfNull = 94,
  CannotCreateComponent = 429,
  NoSuchMember = 438,
  KeyInUse = 457,
  NoCurrentRecord = 3021,
  DuplicateKey = 3022,
  NotInCollection = 3265,
  DriverFailure = 40002,
};

/// The usual text of a failure, "Type mismatch" for 13.
VELMORIA_API const char* RuntimeFailureText(RuntimeFailure failure) noexcept;

/// Throws the failure as an Error with its own number; the text is the usual one unless another is given.
[[noreturn, gnu::cold]] VELMORIA_API void Fail(RuntimeFailure failure);
[[noreturn, gnu::cold]] VELMORIA_API void Fail(RuntimeFailure failure, std::string description);

}  // namespace velmoria
