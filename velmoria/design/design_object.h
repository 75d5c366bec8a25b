#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "velmoria/core/reporting.h"
#include "velmoria/design/design_kind.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

class ParentChange;
struct ParentSlots;

/// What all design objects have in common. The object that a host holds is a facade without values: they are kept by a
/// definition behind it, and several facades may stand on one definition, so what is set through one is seen through
/// all. A facade that was made on its own makes its definition when it is first asked for something.
template <class Kind>
class VELMORIA_API DesignObject : public Object, public Reporting {
 public:
  ~DesignObject() override;
  std::string_view ReportedType() const noexcept final { return Kind::Names.Facade; }

  /// The key in its collection; it changes by RenameItem or ChangeItemEngine of that collection.
  std::string Name() const
    requires NamedKind<Kind>;
  zEngines Engine() const
    requires EngineKind<Kind>;
  std::string EngineName() const
    requires EngineKind<Kind>;

  /// Setting it is never refused and always makes the object Dirty. It does not reach children.
  bool Locked() const;
  void SetLocked(bool value);
  std::string Description() const;
  void SetDescription(std::string value);
  Date DateCreated() const;
  Date DateModified() const;
  /// Who saved the object last.
  std::string ModifiedBy() const;
  /// Whether this object, or a child that is there, has unsaved changes.
  bool Dirty() const;
  std::string Details() const;
  PropertiesPtr UserProperties();
  /// A new, dirty object of the same fields without parents and outside any collection; the empty name, or engine 0,
  /// keeps the key. Recursive copies the children, too.
  Ref<typename Kind::Facade> Copy(const typename Kind::KeyPolicy::Key& key = {}, bool recursive = true) const;

  // Inside the library.

  void Bind(const Ref<typename Kind::Data>& data, const Parents& parents);
  /// Makes the definition when there is none.
  Ref<typename Kind::Data> Data() const;
  const velmoria::Parents& HeldParents() const { return *parents_; }
  /// Each parent can be given once: raises 15100, 15101, 15103, 15107 or 15108 for one of a filled slot, the same one
  /// included. They are taken in turn, and those before the refused one stay.
  void SetParents(const Parents& given);
  void ClearParents(const ParentSlots& slots);

 protected:
  DesignObject();

  // The only reader and writer of fields. Let refuses with 15002 when the kind obeys Locked for the field.
  template <class T>
  T Get(T Kind::Fields::* field) const;
  template <class T>
  void Let(std::string_view routine, T Kind::Fields::* field, std::type_identity_t<T> value);
  /// Raises 15002 while Locked, in a kind whose setters obey it.
  void RefuseLocked(std::string_view routine) const;

  /// Hands a change of parents to every child that has been made; an override does its children and calls this.
  virtual void PassOn(const ParentChange& change);
  /// The parents of a child: this object's and itself.
  velmoria::Parents ParentsForChildren() const;
  /// A collection below this object, made and bound when it is first asked for.
  template <class Collection>
  Ref<Collection> Child(Ref<Collection>& child);
  std::string StateDetails() const override;

 private:
  mutable Ref<typename Kind::Data> data_;
  std::unique_ptr<velmoria::Parents> parents_;
  PropertiesPtr userProperties_;
};

}  // namespace velmoria
