#include "velmoria/platform/odbc/environment.h"

#include <cstdint>

#include <sql.h>
#include <sqlext.h>

namespace velmoria::odbc {

Handle Environment::Get() {
  if (handle_ != nullptr) return handle_;
  Calls& calls = *driver_.Calls;
  Handle made = nullptr;
  if (!Succeeded(calls.AllocHandle(SQL_HANDLE_ENV, nullptr, &made))) {
    FailWithDiagnostics(driver_, SQL_HANDLE_ENV, nullptr);
  }
  handle_ = made;
  const auto version = reinterpret_cast<Handle>(std::uintptr_t{SQL_OV_ODBC3});
  if (!Succeeded(calls.SetEnvAttr(handle_, SQL_ATTR_ODBC_VERSION, version, 0))) {
    try {
      FailWithDiagnostics(driver_, SQL_HANDLE_ENV, handle_);
    } catch (...) {
      Close();
      throw;
    }
  }
  return handle_;
}

void Environment::Close() noexcept {
  if (handle_ == nullptr) return;
  driver_.Calls->FreeHandle(SQL_HANDLE_ENV, handle_);
  handle_ = nullptr;
}

}  // namespace velmoria::odbc
