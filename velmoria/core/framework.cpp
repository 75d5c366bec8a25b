#include "velmoria/core/framework.h"

#include <utility>

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

namespace {

// The default context keeps the server's name for the next call, and the arguments go on without it.
template <class Arguments>
BusinessContextPtr ContextFor(Arguments& arguments) {
  const auto context = Present(Apartment().BusinessContext);
  context->SetServerName(std::exchange(arguments.ServerName, {}));
  return context;
}

}  // namespace

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
  auto forwarded = arguments;
  return ContextFor(forwarded)->GetBusinessObject(forwarded);
} catch (...) { Failed("GetBusinessObject"); }

IBusinessObjectsPtr Framework::GetBusinessObjects(const GetBusinessObjectsArguments& arguments) const try {
  auto forwarded = arguments;
  return ContextFor(forwarded)->GetBusinessObjects(forwarded);
} catch (...) { Failed("GetBusinessObjects"); }

IBusinessObjectPtr Framework::CreateBusinessObject(const CreateBusinessObjectArguments& arguments) const try {
  auto forwarded = arguments;
  const auto context = ContextFor(forwarded);
  context->SetObjectType(otDefault);
  return context->CreateBusinessObject(forwarded);
} catch (...) { Failed("CreateBusinessObject"); }

ConnectionPtr Framework::SetupConnection(const SetupConnectionArguments& arguments) const try {
  return Present(Apartment().ConnectionContext)->SetupConnection(arguments);
} catch (...) { Failed("SetupConnection"); }

}  // namespace velmoria
