#include "velmoria/brokering/business_objects.h"
#include "velmoria/brokering/host_objects_impl.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/framework.h"
#include "velmoria/core/statistics.h"
#include "velmoria/design/class_search_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

ServersPtr RegisteredServers() { return Present(Apartment().Servers); }

// The class of the named server, or without a name of the first server that has it; none on a miss.
ClassPtr FindClass(const std::string& className, const std::string& serverName, std::string_view routine) {
  const auto servers = RegisteredServers();
  if (serverName.empty()) return FirstClassNamed(className, *servers, routine);
  const Suspension quiet{routine};
  ClassPtr found;
  WithErrorsIgnored([&] {
    if (const auto server = servers->Find(serverName)) found = server->Classes()->Find(className);
  });
  return found;
}

// The server is the one the caller named, not the one in which the class was found.
std::string CollectionComponent(const std::string& collection, const std::string& serverName) {
  if (collection.find('.') != std::string::npos) return collection;
  return RegisteredServers()->Item(serverName)->ActiveXComponent() + "." + collection;
}

}  // namespace

IdentifierPtr Framework::CreateIdentifier(const std::string& className, const std::string& serverName) const try {
  if (!serverName.empty()) {
    return RegisteredServers()->Item(serverName)->Classes()->Item(className)->CreateIdentifier();
  }
  const auto found = FirstClassNamed(className, *RegisteredServers(), "Framework.CreateIdentifier");
  if (!found) Raise(errItem_Class, "CreateIdentifier", {Quoted(className)}, NoClassText);
  return found->CreateIdentifier();
} catch (...) { Failed("CreateIdentifier"); }

IBusinessObjectsPtr Framework::CreateBusinessObjects(const CreateBusinessObjectsArguments& arguments) const try {
  auto collection = Make<BusinessObjects>();
  collection->SetupTransient(arguments.Name, arguments.KeyFormat, true, arguments.Locked, arguments.Statistics,
                             arguments.SupportsRemove);
  if (arguments.ClassName.empty()) return collection;

  const auto found = FindClass(arguments.ClassName, arguments.ServerName, "Framework.CreateBusinessObjects");
  if (!found) Raise(errItem_Class, "CreateBusinessObjects", {Quoted(arguments.ClassName)}, NoClassText);
  const auto hostName = found->ActiveXCollection();
  if (hostName.empty()) return collection;

  const auto component = CollectionComponent(hostName, arguments.ServerName);
  const auto host = CreateHostObject<Object>(component, "Framework.CreateBusinessObjects");
  if (!host) Raise(errBusinessCollection_Create, "CreateBusinessObjects", {hostName});
  try {
    auto face = FaceOf<IBusinessObjects>(host);
    face->Setup(collection);
    return face;
  } catch (...) { Failed("CreateBusinessObjects", errBusinessCollection_Setup, {hostName}); }
} catch (...) { Failed("CreateBusinessObjects"); }

}  // namespace velmoria
