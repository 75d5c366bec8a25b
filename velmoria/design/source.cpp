#include "velmoria/design/source.h"

#include "velmoria/core/display.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/design_object_impl.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source_data.h"

namespace velmoria {

template class DesignObject<SourceKind>;

Source::Source() = default;
Source::~Source() = default;

zSourceTypes Source::SourceType() const { return Get(&SourceFields::SourceType); }
void Source::SetSourceType(zSourceTypes value) { Let("SourceType (Let)", &SourceFields::SourceType, value); }
std::string Source::SourceTypeName() const { return velmoria::SourceTypeName(SourceType()); }

std::string Source::SourceText() const { return Get(&SourceFields::SourceText); }
void Source::SetSourceText(std::string value) { Let("SourceText (Let)", &SourceFields::SourceText, std::move(value)); }

std::int32_t Source::KeysetSize() const { return Get(&SourceFields::KeysetSize); }
void Source::SetKeysetSize(std::int32_t value) { Let("KeysetSize (Let)", &SourceFields::KeysetSize, value); }

std::int32_t Source::RowsetSize() const { return Get(&SourceFields::RowsetSize); }
void Source::SetRowsetSize(std::int32_t value) { Let("RowsetSize (Let)", &SourceFields::RowsetSize, value); }

zOptionFlags Source::OptionFlags() const { return Get(&SourceFields::OptionFlags); }
void Source::SetOptionFlags(zOptionFlags value) { Let("OptionFlags (Let)", &SourceFields::OptionFlags, value); }

PropertiesPtr Source::Parameters() try {
  if (!parameters_) parameters_ = BoundProperties(psParameter, Data()->ParametersData(), ParentsForChildren());
  return parameters_;
} catch (...) { Failed("Parameters (Get)"); }

std::string Source::ServerName() const { return NameOf(HeldParents().Server); }
std::string Source::ClassName() const { return NameOf(HeldParents().Class); }
std::string Source::ActionName() const { return NameOf(HeldParents().Action); }

std::string Source::DatabaseName() const {
  const auto& action = HeldParents().Action;
  return action ? action->Fields().DatabaseName : std::string();
}

zUsageFlags Source::UsageFlags() const {
  const auto& action = HeldParents().Action;
  return action ? action->Fields().UsageFlags : ufNone;
}

std::string Source::UsageFlagsDisplay() const { return velmoria::UsageFlagsDisplay(UsageFlags()); }

std::int32_t Source::AccessMethod() const { return Data()->AccessMethod(); }

void Source::PassOn(const ParentChange& change) {
  change.To(parameters_);
  DesignObject::PassOn(change);
}

}  // namespace velmoria
