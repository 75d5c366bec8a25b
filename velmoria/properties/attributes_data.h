#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// The ordered attribute definitions of a PropertyData, keyed by name.
class AttributesData final : public Object, public Reporting {
 public:
  AttributesData();
  ~AttributesData() override;
  std::string_view ReportedType() const noexcept override { return "AttributesData"; }

  std::int32_t Count() const noexcept { return static_cast<std::int32_t>(items_.Count()); }
  /// By 1-based position or name; raises 15062.
  AttributeDataPtr Item(const Variant& index) const;
  KeyedList<AttributeDataPtr>::Iterator begin() const noexcept { return items_.begin(); }
  KeyedList<AttributeDataPtr>::Iterator end() const noexcept { return items_.end(); }

  /// Raises 15004 when both positions are given, the name is taken or a position is not there.
  void Add(const AttributeDataPtr& item, const Position& position = {});
  /// Clean, for what is loaded, leaves the new member and the collection without a stamp.
  AttributeDataPtr SetupItem(const AttributeFields& fields, const Position& position = {}, bool clean = false);
  /// Raises 15132, after 15062 for a miss.
  void Remove(const Variant& index);
  /// The position stays. Raises 15148 when the new name is taken, even by the member itself.
  void RenameItem(const std::string& name, const std::string& newName);
  /// A clean one with copies of the members.
  AttributesDataPtr Copy() const;

  /// Whether a member came, went, was renamed or changed.
  bool Dirty() const;
  void ClearDirty();
  std::string Details() const;

 private:
  std::string StateDetails() const override { return Details(); }
  void Stamp();

  KeyedList<AttributeDataPtr> items_;
  Variant modified_;  // date of the last change, Empty while clean
};

}  // namespace velmoria
