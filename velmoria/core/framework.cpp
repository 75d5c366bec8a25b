#include "velmoria/core/framework.h"

#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/ibusiness_objects.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/engine_support.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/product.h"
#include "velmoria/core/profile.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/servers.h"
#include "velmoria/properties/properties.h"

namespace velmoria {

std::string Framework::Version() const { return std::string(ProductVersion); }

MessagesPtr Framework::Messages() const try { return Present(Apartment().Messages); } catch (...) {
  Failed("Messages (Get)");
}

ProfilePtr Framework::Profile() const try { return Present(Apartment().Profile); } catch (...) {
  Failed("Profile (Get)");
}

DatabasesPtr Framework::Databases() const try { return Present(Apartment().Databases); } catch (...) {
  Failed("Databases (Get)");
}

ServersPtr Framework::Servers() const try { return Present(Apartment().Servers); } catch (...) {
  Failed("Servers (Get)");
}

ConnectionContextPtr Framework::ConnectionContext() const try {
  return Present(Apartment().ConnectionContext);
} catch (...) { Failed("ConnectionContext (Get)"); }

Variant Framework::SupportedEngines() const try { return SupportedEnginesList(); } catch (...) {
  Failed("SupportedEngines (Get)");
}

IBusinessObjectPtr Framework::GetBusinessObject(const GetBusinessObjectArguments& arguments) const try {
  const auto context = Present(Apartment().BusinessContext);
  context->SetServerName(arguments.ServerName);
  auto forwarded = arguments;
  forwarded.ServerName.clear();
  return context->GetBusinessObject(forwarded);
} catch (...) { Failed("GetBusinessObject"); }

IBusinessObjectsPtr Framework::GetBusinessObjects(const GetBusinessObjectsArguments& arguments) const try {
  const auto context = Present(Apartment().BusinessContext);
  context->SetServerName(arguments.ServerName);
  auto forwarded = arguments;
  forwarded.ServerName.clear();
  return context->GetBusinessObjects(forwarded);
} catch (...) { Failed("GetBusinessObjects"); }

ConnectionPtr Framework::SetupConnection(const SetupConnectionArguments& arguments) const try {
  return Present(Apartment().ConnectionContext)->SetupConnection(arguments);
} catch (...) { Failed("SetupConnection"); }

}  // namespace velmoria
