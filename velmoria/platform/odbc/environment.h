#pragma once

#include "velmoria/platform/odbc/diagnostics.h"

namespace velmoria::odbc {

/// A version 3 environment handle, made at the first need and freed with its owner.
class Environment {
 public:
  explicit Environment(odbc::Driver driver) : driver_(std::move(driver)) {}
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() { Close(); }

  const odbc::Driver& Driver() const noexcept { return driver_; }
  /// The handle; made here if there is none.
  Handle Get();
  void Close() noexcept;

 private:
  odbc::Driver driver_;
  Handle handle_ = nullptr;
};

}  // namespace velmoria::odbc
