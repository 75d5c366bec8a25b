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
  if (has(StateFlags(), sfNew) && EmptyValue() && Data()->Modifiable()) SetValue(Variant::Null());
  SetStateFlags(StateFlags() | sfpersistent);
  if (has(StateFlags(), sfpendingdelete)) {
    SetStateFlags(StateFlags() | sfdeleted);
    SetStateFlags(StateFlags() & ~(sfpersistent | sfpendingdelete));
  }
  // The store behind ClearDirty stamps the definition anew, so that Dirty reads True after an update.
  ClearDirty();
  SetStateFlags(StateFlags() & ~(sfnonpersistent | sfdirty | sfNew));
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
