#pragma once

#include <cstdint>
#include <string>

#include "tests/unit/properties/state_model/state_scene.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/properties/property_fields.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

/// The data type that has the storage of a value; dtVariant when none has.
zDataTypes OwnDataType(const Variant& value);
/// Whether an assignment would change nothing.
bool Same(const Variant& left, const Variant& right);

/// A free-standing Property as the tables tell it.
struct PropertyModel {
  std::string Name;
  zPropertyStyles Style = psNone;
  zDataTypes DataType = dtVariant;
  std::int32_t Size = 0;
  zPropertyFlags Flags = pfNone;
  bool Modifiable = true;
  bool Locked = false;
  bool DefinitionLocked = false;
  Variant Current;
  Variant Old;
  Variant Default;
  Variant Stamp;  // the time of the last change, Empty while clean
  zStateFlags State = sfnonpersistent | sfNew;

  static PropertyModel Made(zPropertyStyles style, const PropertyFields& fields, const Variant& stamp);
  PropertyModel Copied(const std::string& name) const;

  Variant Value() const;
  Variant DefaultValue() const;
  bool DirtyValue() const;
  bool Dirty() const { return !Stamp.IsEmpty(); }
  bool EmptyValue() const { return Current.IsEmpty(); }
  bool RequiresValue() const { return has(Flags, pfInput) && has(Flags, pfRequired) && EmptyValue(); }
  zStateFlags StateFlags() const { return DirtyValue() ? State | sfdirty : State; }

  void LetValue(const Variant& value, Scene& scene);
  void LetDefaultValue(const Variant& value);
  void Undo(Scene& scene);
  void LetState(zStateFlags flags, const Scene& scene);
  void MarkUpdated(Scene& scene);
  void MarkUndone(const Scene& scene);
  void ClearDirty();
  /// A field that Locked guards.
  template <class T>
  void Let(T PropertyModel::* field, const T& value, const Scene& scene) {
    if (Locked) throw Refused{errVelmoria_Locked};
    if (this->*field == value) return;
    this->*field = value;
    Stamp = scene.Now;
  }

 private:
  Variant Checked(const Variant& value) const;
  void Store(const Variant& value, Scene& scene);
};

}  // namespace velmoria::test
