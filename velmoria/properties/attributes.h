#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/runtime/keyed_list.h"

namespace velmoria {

/// Attributes by name. Those of a Property change its definition; a transient collection has no definition behind it
/// and its members cannot be renamed. Members stay alive while somebody holds them, also after Remove. Locked guards
/// SupportsAdd and SupportsRemove and does not reach the members. A refused operation changes nothing.
class VELMORIA_API Attributes final : public Object, public Reporting {
 public:
  using Iterator = KeyedList<AttributePtr>::Iterator;

  Attributes();
  ~Attributes() override;

  std::string_view ReportedType() const noexcept override { return "Attributes"; }

  /// Raises 15082 when SupportsAdd is False, 15004 when both positions are given, the name is taken or a position is
  /// not there.
  void Add(const AttributePtr& item, const Position& position = {});
  /// Makes an Attribute and adds it. Raises as Add does, and what Attribute.SetValue raises.
  AttributePtr SetupItem(const AttributeFields& fields, const Position& position = {});
  /// By 1-based position or name. Raises 15062.
  AttributePtr Item(const Variant& index) const;
  /// The same without failure: none when it is not there.
  AttributePtr Find(const Variant& index) const;
  /// By 1-based position or name. Raises 15083 when SupportsRemove is False, 15132 otherwise, after 15062 for a miss.
  void Remove(const Variant& index);
  /// The position stays. Raises 15085 for a transient collection, 15148 when the new name is taken, even by the member
  /// itself in another case, 15062 for a miss.
  void RenameItem(const std::string& name, const std::string& newName);

  std::int32_t Count() const;
  std::string Details() const;
  Iterator begin() const;
  Iterator end() const;

  bool Locked() const noexcept { return locked_; }
  void SetLocked(bool value) noexcept { locked_ = value; }
  bool SupportsAdd() const noexcept { return !noAdd_; }
  /// Raises 15002 when Locked, as the other does.
  void SetSupportsAdd(bool value);
  bool SupportsRemove() const noexcept { return !noRemove_; }
  void SetSupportsRemove(bool value);
  /// True as soon as one member is.
  bool Modifiable() const;

  // Inside the library.

  /// Raises 15002 on a collection that is Locked, bound or in use.
  void Setup(bool locked, bool supportsAdd, bool supportsRemove);
  /// Puts the definition behind a collection not used yet; its members are made at the first use.
  void Bind(PropertyDataPtr definition);

 protected:
  std::string StateDetails() const override { return Details(); }

 private:
  const KeyedList<AttributePtr>& Members() const;
  AttributePtr NewItem(const AttributeFields& fields) const;
  void Insert(std::string_view routine, const AttributePtr& item, const std::string& name, const Position& position);
  void CheckAdd(std::string_view routine, const std::string& name, const Position& position) const;

  PropertyDataPtr definition_;
  mutable AttributesDataPtr data_;
  mutable KeyedList<AttributePtr> items_;
  mutable bool built_ = false;
  bool locked_ = false;
  bool noAdd_ = false;
  bool noRemove_ = false;
};

}  // namespace velmoria
