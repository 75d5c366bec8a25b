#include "velmoria/design/server.h"

#include "velmoria/design/classes.h"
#include "velmoria/design/design_object_impl.h"
#include "velmoria/design/server_data.h"

namespace velmoria {

template class DesignObject<ServerKind>;

Server::Server() = default;
Server::~Server() = default;

void Server::SetName(std::string value) { Let("Name (Let)", &ServerFields::Name, std::move(value)); }

std::string Server::FileName() const { return Data()->FileName(); }
void Server::SetFileName(std::string value) { Data()->SetFileName(std::move(value)); }

std::string Server::ActiveXComponent() const { return Get(&ServerFields::ActiveXComponent); }
void Server::SetActiveXComponent(std::string value) {
  Let("ActiveXComponent (Let)", &ServerFields::ActiveXComponent, std::move(value));
}

bool Server::LoadOnStartup() const { return Get(&ServerFields::LoadOnStartup); }
void Server::SetLoadOnStartup(bool value) { Let("LoadOnStartup (Let)", &ServerFields::LoadOnStartup, value); }

bool Server::UseMetaData() const { return Get(&ServerFields::UseMetaData); }
void Server::SetUseMetaData(bool value) { Let("UseMetaData (Let)", &ServerFields::UseMetaData, value); }

ClassesPtr Server::Classes() { return Child(classes_); }

void Server::PassOn(const ParentChange& change) {
  change.To(classes_);
  DesignObject::PassOn(change);
}

}  // namespace velmoria
