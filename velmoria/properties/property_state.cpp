#include "velmoria/core/display.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_impl.h"

namespace velmoria {

zStateFlags Property::StateFlags() const {
  if (recordset_) return recordset_->StateFlags(row_);
  return Data()->DirtyValue() ? state_ | sfdirty : state_;
}

std::string Property::StateFlagsDisplay() const { return velmoria::StateFlagsDisplay(StateFlags()); }

zEditFlags Property::EditFlags() const { return editFlags_; }

std::string Property::EditFlagsDisplay() const { return velmoria::EditFlagsDisplay(EditFlags()); }

void Property::SetStateFlags(zStateFlags flags) {
  state_ = flags;
  Data()->SetDirty();
}

void Property::ClearDirty() { Data()->ClearDirty(); }

void Property::MarkUpdated() try {
  auto state = StateFlags();
  if (has(state, sfNew) && EmptyValue() && Data()->Modifiable()) {
    SetValue(Variant::Null());
    state = StateFlags();
  }
  // A row has its state in its Recordset.
  if (!recordset_) {
    const bool isDeleted = has(state, sfpendingdelete);
    state = isDeleted ? (state | sfdeleted) & ~(sfpersistent | sfpendingdelete) : state | sfpersistent;
  }
  // The store behind ClearDirty stamps the definition anew, so that Dirty reads True after an update.
  ClearDirty();
  SetStateFlags(state & ~(sfnonpersistent | sfdirty | sfNew));
} catch (...) { Failed("MarkUpdated"); }

void Property::MarkUndone() {
  const auto state = StateFlags();
  if (has(state, sfNew)) {
    SetStateFlags(sfdeleted);
  } else if (has(state, sfpersistent)) {
    SetStateFlags(sfpersistent);
  }
  ClearDirty();
}

}  // namespace velmoria
