#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/unit/properties/state_model/property_model.h"
#include "tests/unit/properties/state_model/state_scene.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/core/position.h"

namespace velmoria::test {

/// A free-standing Properties as the tables tell it.
struct CollectionModel {
  using Member = std::shared_ptr<PropertyModel>;

  zPropertyStyles Style = psNone;
  bool Defined = false;  // there are definitions behind it; otherwise it is transient
  bool Routed = false;   // an Identifier tells where to write
  zEditFlags EditFlags = efAll;
  bool Locked = false;
  bool SupportsAdd = true;
  bool SupportsRemove = true;
  std::vector<Member> Members;
  std::vector<Member> Definitions;  // the Members', and those of members that a listener or a refusal kept out

  CollectionModel Copied() const;
  /// The same with members of its own.
  CollectionModel Clone() const;

  zStateFlags StateFlags() const;
  bool Modifiable(bool all) const;
  bool Dirty() const;
  bool DirtyValues() const;
  bool EmptyValues() const;
  bool RequiresValues() const;

  const PropertyModel& Item(const Variant& index, Scene& scene) const;
  void Add(const PropertyFields& fields, const Position& position, Scene& scene);
  void SetupItem(const PropertyFields& fields, const Position& position, Scene& scene);
  void Remove(const Variant& index, Scene& scene);
  void RenameItem(const std::string& name, const std::string& newName, const Scene& scene);
  void Undo(Scene& scene);
  void Delete(Scene& scene);
  void LetStateFlags(zStateFlags flags, const Scene& scene);
  void Update(Scene& scene);
  void ClearDirty();
  void LetLocked(bool value);
  void LetSupports(bool CollectionModel::* which, bool value);

 private:
  bool Write(zStateFlags state, Scene& scene) const;
};

}  // namespace velmoria::test
