#pragma once

#include <vector>

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/event.h"
#include "velmoria/runtime/ref.h"

namespace velmoria {

/// The walk by which a collection carries Update and Delete to its members, with one event around the whole and one
/// around each member. Cancel in an event of the whole ends the operation silently; in an event of a member it skips
/// that member. A member's failure ends the walk at once: what was written stays written.
template <class Item>
class PersistentMembers {
 public:
  CancelEvent<PersistentMembers> BeforeUpdate;
  CancelEvent<PersistentMembers, Item&> BeforeItemUpdate;
  Event<PersistentMembers, Item&> AfterItemUpdate;
  Event<PersistentMembers> AfterUpdate;
  CancelEvent<PersistentMembers> BeforePendingDelete;
  CancelEvent<PersistentMembers, Item&> BeforeItemPendingDelete;
  Event<PersistentMembers, Item&> AfterItemPendingDelete;
  Event<PersistentMembers> AfterPendingDelete;

 protected:
  /// Updates each member that is dirty under efUpdate or flagged for deletion under efDelete.
  void UpdateEach(const std::vector<Ref<Item>>& members) {
    if (BeforeUpdate.Raise()) return;
    for (const auto& member : members) UpdateOne(*member);
    AfterUpdate.Raise();
  }

  /// Flags for deletion each member that efDelete allows; `next` gives the members one by one and then none.
  template <class Next>
  void DeleteEach(Next next) {
    if (BeforePendingDelete.Raise()) return;
    while (Ref<Item> member = next()) DeleteOne(*member);
    AfterPendingDelete.Raise();
  }

 private:
  // efInsert is not consulted: a new member goes by its Dirty and efUpdate, and the agent asks efInsert itself.
  static bool WantsUpdate(Item& member) {
    const auto edits = member.EditFlags();
    return (member.Dirty() && has(edits, efUpdate)) ||
           (has(member.StateFlags(), sfpendingdelete) && has(edits, efDelete));
  }

  static bool WantsDelete(Item& member) {
    const auto state = member.StateFlags();
    return has(member.EditFlags(), efDelete) && !has(state, sfpendingdelete) && !has(state, sfdeleted);
  }

  void UpdateOne(Item& member) {
    if (!WantsUpdate(member) || BeforeItemUpdate.Raise(member)) return;
    member.Update();
    AfterItemUpdate.Raise(member);
  }

  void DeleteOne(Item& member) {
    if (!WantsDelete(member) || BeforeItemPendingDelete.Raise(member)) return;
    member.Delete();
    AfterItemPendingDelete.Raise(member);
  }
};

}  // namespace velmoria
