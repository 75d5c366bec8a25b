#include "velmoria/platform/rdo/rdo_engine.h"

#include "velmoria/platform/rdo/rdo_environment.h"

namespace velmoria {

rdoEngine::rdoEngine() : rdoEngine(nullptr) {}

rdoEngine::rdoEngine(const std::shared_ptr<odbc::Calls>& calls)
    : driver_{.Calls = calls ? calls : odbc::UnixOdbc(), .Errors = std::make_shared<odbc::EngineErrors>()} {}

std::string_view rdoEngine::ReportedType() const noexcept { return "rdoEngine"; }

std::vector<EngineError>& rdoEngine::rdoErrors() noexcept { return *driver_.Errors; }

rdoEnvironmentPtr rdoEngine::rdoCreateEnvironment(std::string, std::string userName, std::string password) {
  rdoErrors().clear();
  return Make<rdoEnvironment>(rdoEnginePtr(this), std::move(userName), std::move(password));
}

}  // namespace velmoria
