#pragma once

#include <memory>
#include <string>
#include <vector>

#include "velmoria/platform/engine_error.h"
#include "velmoria/platform/odbc/diagnostics.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// The root of the RDO object model: makes environments and holds the error list that all objects below it share.
/// Every failing driver call, here and below, raises an Error with the driver's own number (0 stays 0, and a
/// driver without a word is 40002) and a text "SQLSTATE: text".
class rdoEngine : public Object {
 public:
  rdoEngine();
  /// Without a table the engine works with unixODBC.
  explicit rdoEngine(const std::shared_ptr<odbc::Calls>& calls);
  std::string_view ReportedType() const noexcept override;

  /// What the driver said about the last failure, the first record first. Every call that talks to a driver empties it.
  std::vector<EngineError>& rdoErrors() noexcept;

  /// An environment whose user and password serve every connect string that names no user. The name is taken and not
  /// used.
  rdoEnvironmentPtr rdoCreateEnvironment(std::string name, std::string userName, std::string password);

  /// What the handles below this engine work with.
  const odbc::Driver& Driver() const noexcept { return driver_; }

 private:
  odbc::Driver driver_;
};

}  // namespace velmoria
