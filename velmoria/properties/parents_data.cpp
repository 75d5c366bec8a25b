#include "velmoria/properties/parents_data.h"

#include "velmoria/brokering/key_format_data.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/link_data.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source_data.h"

namespace velmoria {

namespace {

// In the order in which a conflict is looked for.
template <class Visit>
void ForEachSlot(Visit visit) {
  visit(&Parents::Server, &ParentSlots::Server, errParent_Server);
  visit(&Parents::Class, &ParentSlots::Class, errParent_Class);
  visit(&Parents::Action, &ParentSlots::Action, errParent_Action);
  visit(&Parents::Source, &ParentSlots::Source, errParent_Source);
  visit(&Parents::Relationship, &ParentSlots::Relationship, errParent_Relationship);
  visit(&Parents::Link, &ParentSlots::Link, errParent_Link);
  visit(&Parents::Database, &ParentSlots::Database, errParent_Database);
  visit(&Parents::Connector, &ParentSlots::Connector, errParent_Connector);
  visit(&Parents::KeyFormat, &ParentSlots::KeyFormat, errParent_KeyFormat);
}

template <class Data>
std::string KeyOf(const Data& data) {
  if constexpr (requires { data.Name(); }) {
    return data.Name();
  } else {
    return data.EngineName();
  }
}

std::string KeyOf(const LinkData& link) { return link.Details(); }

}  // namespace

Parents::Parents() = default;

Parents::Parents(const Parents& other) = default;

Parents::Parents(Parents&& other) noexcept = default;

Parents& Parents::operator=(const Parents& other) = default;

Parents& Parents::operator=(Parents&& other) noexcept = default;

Parents::~Parents() = default;

std::optional<ParentConflict> Parents::Take(const Parents& given) {
  auto taken = *this;
  auto conflict = taken.TakeInTurn(given);
  if (!conflict) *this = std::move(taken);
  return conflict;
}

std::optional<ParentConflict> Parents::TakeInTurn(const Parents& given) {
  std::optional<ParentConflict> conflict;
  ForEachSlot([&](auto slot, auto, zErrors number) {
    if (conflict || !(given.*slot)) return;
    if (this->*slot) {
      conflict = ParentConflict{number, KeyOf(*(this->*slot))};
    } else {
      this->*slot = given.*slot;
    }
  });
  return conflict;
}

void Parents::Clear(const ParentSlots& slots) {
  ForEachSlot([&](auto slot, auto flag, zErrors) {
    if (slots.*flag) (this->*slot).reset();
  });
}

bool Parents::IsEmpty() const noexcept {
  bool empty = true;
  ForEachSlot([&](auto slot, auto, zErrors) { empty = empty && !(this->*slot); });
  return empty;
}

ParentSlots Parents::Filled() const noexcept {
  ParentSlots filled;
  ForEachSlot([&](auto slot, auto flag, zErrors) { filled.*flag = static_cast<bool>(this->*slot); });
  return filled;
}

const Parents& Parents::None() noexcept {
  static const Parents none;
  return none;
}

}  // namespace velmoria
