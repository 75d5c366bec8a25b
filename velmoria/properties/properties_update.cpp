#include "velmoria/brokering/identifier.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/actions.h"
#include "velmoria/design/class.h"
#include "velmoria/design/classes.h"
#include "velmoria/design/server.h"
#include "velmoria/design/servers.h"
#include "velmoria/properties/properties_parts_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

bool IsEmpty(const IdentifierPtr& identifier) {
  const PropertiesPtr parts = identifier ? identifier->Properties() : PropertiesPtr();
  return !parts || parts->Count() == 0;
}

}  // namespace

void Properties::Update() try {
  if (recordset_) {
    UpdateRow();
  } else {
    UpdateByIdentifier();
  }
} catch (...) { Failed("Update"); }

void Properties::UpdateRow() {
  const auto state = recordset_->StateFlags(row_);
  if (has(state, sfdeleted)) Raise(errPersistence_Deleted, "Update", {NumberText(row_)});
  if (!recordset_->IsDirty(row_) && !has(state, sfNew | sfpendingdelete)) return;
  if (BeforeUpdate.Raise()) return;
  recordset_->UpdatePersistentProperties(PropertiesPtr(this));
  AfterUpdate.Raise();
}

void Properties::UpdateByIdentifier() {
  if (IsEmpty(identifier_)) Raise(errProperties_Update, "Update");
  if (BeforeUpdate.Raise()) return;
  const auto server = Present(Apartment().Servers)->Item(identifier_->ServerName());
  const auto classObject = server->Classes()->Item(identifier_->ClassName());
  const auto action = classObject->Actions()->Item(ActionName());
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(classObject, action, action->CreateParameters(identifier_), -1);
  bool written = false;
  agent->UpdatePersistentProperties(PropertiesPtr(this), 0, written);
  AfterUpdate.Raise();
}

void Properties::Delete() try {
  if (!recordset_ && style_ != psPersistent && style_ != psCached) Raise(errProperties_Delete, "Delete");
  if (has(StateFlags(), sfpendingdelete | sfdeleted)) return;
  if (BeforePendingDelete.Raise()) return;
  try {
    FlagPendingDelete();
  } catch (...) {
    WithErrorsIgnored([this] { AfterPendingDelete.Raise(); });
    throw;
  }
  AfterPendingDelete.Raise();
} catch (...) { Failed("Delete"); }

void Properties::FlagPendingDelete() {
  if (recordset_) return recordset_->DeletePersistentProperties(row_);
  for (const auto& item : *this) item->SetStateFlags(item->StateFlags() | sfpendingdelete | sfdirty);
}

void Properties::Undo() try {
  if (recordset_) return recordset_->Undo(row_);
  for (const auto& item : *this) {
    item->Undo();
    item->MarkUndone();
  }
} catch (...) { Failed("Undo"); }

}  // namespace velmoria
