#pragma once

#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "velmoria/core/reporting.h"
#include "velmoria/design/design_kind.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// Whether a child's definition is there and dirty.
template <class T>
bool IsDirty(const Ref<T>& child) {
  return child && child->Dirty();
}

/// A child's definition, made when it is not there yet.
template <class T>
const Ref<T>& Made(Ref<T>& child) {
  if (!child) child = Make<T>();
  return child;
}

/// A copy with all detail, or none of none.
template <class T>
Ref<T> CopyOf(const Ref<T>& child) {
  return child ? child->Copy(true) : Ref<T>();
}

/// The definition behind the facades of one design object: it owns the fields and the children's definitions.
template <class Kind>
class DesignData : public Object, public Reporting {
 public:
  using Key = typename Kind::KeyPolicy::Key;

  ~DesignData() override;
  std::string_view ReportedType() const noexcept final { return Kind::Names.Data; }

  const typename Kind::Fields& Fields() const noexcept { return fields_; }
  const std::string& Name() const noexcept
    requires NamedKind<Kind>
  {
    return fields_.*Kind::KeyField;
  }
  zEngines Engine() const noexcept
    requires EngineKind<Kind>
  {
    return fields_.*Kind::KeyField;
  }
  std::string EngineName() const
    requires EngineKind<Kind>;
  std::string KeyText() const { return Kind::KeyPolicy::Text(fields_.*Kind::KeyField); }

  /// Takes the fields of a new object, which is dirty from then on.
  virtual void Setup(typename Kind::Fields fields);
  /// Stores a value that differs, or any value of a field that is stored always, and makes the object dirty.
  template <class T>
  void Let(T Kind::Fields::* field, std::type_identity_t<T> value) {
    if (Lists(Kind::StoredAlways, field) || !(fields_.*field == value)) Store(field, std::move(value));
  }
  /// Stores and makes the object dirty, whatever the value was.
  template <class T>
  void Store(T Kind::Fields::* field, std::type_identity_t<T> value) {
    fields_.*field = std::move(value);
    Stamp();
  }
  void SetKey(const Key& key) { Let(Kind::KeyField, key); }

  Date DateCreated() const noexcept { return dateCreated_; }
  virtual Date DateModified() const { return dateModified_; }
  const std::string& ModifiedBy() const noexcept { return modifiedBy_; }
  /// Its own change, or that of a child that is there.
  bool Dirty() const { return !dirty_.IsEmpty() || ChildrenDirty(); }
  virtual std::string Details() const = 0;
  PropertiesDataPtr UserPropertiesData();
  /// One of the Kind's children.
  template <class T>
  const Ref<T>& Child() {
    return Made(std::get<Ref<T>>(children_));
  }
  Ref<typename Kind::Data> Copy(const Key& key = {}, bool recursive = true) const;
  /// Brings everything below into memory, so that the object is whole by itself.
  void LoadAllDetail();
  /// Puts itself in its slot of a child's parents.
  void Enter(velmoria::Parents& parents);

 protected:
  DesignData();

  /// Stores the fields as they are and stamps the object as new.
  void Adopt(typename Kind::Fields fields);
  /// How a copy takes the fields of its source.
  virtual void SetupCopy(typename Kind::Fields fields) { Setup(std::move(fields)); }
  /// What a copy takes beside the fields, recursive or not.
  virtual void CopyParts(const typename Kind::Data& source, bool recursive);
  virtual void CopyChildren(const typename Kind::Data& source);
  virtual const PropertiesDataPtr& UserPropertiesForCopy() const { return userPropertiesData_; }
  virtual bool ChildrenDirty() const;
  /// None when it has not been made.
  template <class T>
  const Ref<T>& Existing() const noexcept {
    return std::get<Ref<T>>(children_);
  }
  const PropertiesDataPtr& ExistingUserProperties() const noexcept { return userPropertiesData_; }
  /// Takes a child's definitions and makes the object dirty, whatever was there.
  template <class T>
  void SetChild(Ref<T>& child, const Ref<T>& value) {
    child = value;
    Stamp();
  }
  void SetUserProperties(const PropertiesDataPtr& value);
  void Stamp();
  std::string StateDetails() const override { return Details(); }

 private:
  typename Kind::Fields fields_{};
  Variant dirty_;  // date of the last change, Empty while clean
  Date dateCreated_;
  Date dateModified_;
  std::string modifiedBy_;
  typename Kind::Children children_;
  PropertiesDataPtr userPropertiesData_;
};

}  // namespace velmoria
