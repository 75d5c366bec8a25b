#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/catalogue.h"
#include "velmoria/runtime/api.h"

namespace velmoria {

class Error;
class Messages;
struct MessageArguments;

/// The values of the placeholders |1| to |4| of a catalogue text.
struct Replacements {
  std::string Replace1{};
  std::string Replace2{};
  std::string Replace3{};
  std::string Replace4{};
};

/// How a class reports failure. Every routine that can fail has one handler:
///   void Actions::Remove(const Variant& index) try { ... } catch (...) { Failed("Remove"); }
/// Failures go to the apartment's Messages and leave as the one Error, whose number and text are those of the most
/// severe Message held.
class VELMORIA_API Reporting {
 public:
  virtual ~Reporting();

  /// The class name as messages show it. One override serves this and Object::ReportedType.
  virtual std::string_view ReportedType() const noexcept = 0;

 protected:
  Reporting() = default;
  Reporting(const Reporting&) = default;
  Reporting& operator=(const Reporting&) = default;

  /// The state of the object for a report, usually its Details. It is asked with messaging suspended and never while it
  /// is already being asked; a failure in it gives "".
  virtual std::string StateDetails() const;

  /// Records a catalogue error with severity svfError and throws the Error.
  [[noreturn, gnu::cold]] void Raise(zErrors number, std::string_view routine, Replacements replacements = {},
                                     std::string_view extraText = {}, std::int32_t line = __builtin_LINE()) const;
  /// Raise with another state than the reporting object's own.
  [[noreturn, gnu::cold]] void RaiseWithState(const std::string& stateDetails, zErrors number, std::string_view routine,
                                              Replacements replacements = {}, std::string_view extraText = {},
                                              std::int32_t line = __builtin_LINE()) const;
  /// Only inside a catch block: records what is in flight under its own number and throws the Error.
  [[noreturn, gnu::cold]] void Failed(std::string_view routine, std::int32_t line = __builtin_LINE()) const;
  /// Only inside a catch block, for a routine that owns a number: records what is in flight as a warning under its own
  /// number and text, then raises the owned number. A catalogue error already recorded as an error stays the one seen.
  [[noreturn, gnu::cold]] void Failed(std::string_view routine, zErrors number, Replacements replacements = {},
                                      std::string_view extraText = {}, std::int32_t line = __builtin_LINE()) const;

 private:
  /// The state is the object's own where none is given.
  void Record(Messages& messages, MessageArguments& arguments, std::string_view routine, std::int32_t line,
              const std::string* stateDetails = nullptr) const;
  Error Raised(MessageArguments arguments, std::string_view routine, std::int32_t line,
               const std::string* stateDetails = nullptr) const;
};

/// Suspends messaging around a step whose failure is an expected answer. It starts only when messaging is not
/// suspended and ends only what it started, also on unwinding. The name reads "Class.Routine".
class VELMORIA_API Suspension {
 public:
  explicit Suspension(std::string_view routine);
  ~Suspension();
  Suspension(const Suspension&) = delete;
  Suspension& operator=(const Suspension&) = delete;

  /// Ends the suspension before the scope does: before an event is raised or an error is.
  void End() noexcept;

 private:
  std::uint64_t ticket_ = 0;  // 0 when another suspension was there first
};

/// What is in flight, seen as an Error; only inside a catch block. Anything that is no Error becomes one with the
/// run-time's number for it (out of memory 7, others 5).
VELMORIA_API Error CurrentError() noexcept;

}  // namespace velmoria
