#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/property_fields.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// The ordered definitions behind a Properties, keyed by Name. The columns of a Recordset are one, shared by all rows.
class PropertiesData final : public Object, public Reporting {
 public:
  PropertiesData();
  ~PropertiesData() override;
  std::string_view ReportedType() const noexcept override { return "PropertiesData"; }

  std::int32_t Count() const noexcept { return static_cast<std::int32_t>(items_.Count()); }
  /// By 1-based position or name; raises 15072.
  const PropertyDataPtr& Item(const Variant& index) const;
  /// None on a miss. The index first, then the first member with that SourceName or SourceKey; an empty one finds
  /// nothing.
  PropertyDataPtr Find(const Variant& index, std::string_view sourceName = {}, std::string_view sourceKey = {}) const;
  /// By 1-based position; 9 when there is none.
  const PropertyDataPtr& At(std::int32_t position) const { return items_.At(static_cast<std::size_t>(position)); }
  /// The 1-based position of an index, 0 when there is none; a name is looked for at `guess`, any number, first.
  std::int32_t PositionOf(const Variant& index, std::int32_t guess = 0) const noexcept {
    return static_cast<std::int32_t>(items_.PositionOf(index, static_cast<std::size_t>(guess)));
  }
  KeyedList<PropertyDataPtr>::Iterator begin() const noexcept { return items_.begin(); }
  KeyedList<PropertyDataPtr>::Iterator end() const noexcept { return items_.end(); }

  /// Takes a definition in under its Name and gives it its OrderNumber. With both positions given it appends. Raises
  /// 457 for a name in use, 9 or 5 for a position that is not there.
  void Add(const PropertyDataPtr& item, const Position& position = {});
  /// Makes a definition and takes it in as Add does; clean leaves the list without a stamp.
  PropertyDataPtr SetupItem(zPropertyStyles style, const PropertyFields& fields, const Position& position = {},
                            bool clean = false);
  /// Raises 15072 for an unknown name.
  void Remove(const std::string& name);
  /// The position stays. Raises 15153 when newName is taken, even by the same member, and 15072 for an unknown name.
  void RenameItem(const std::string& name, const std::string& newName);
  /// Dirty, of clean copies of the members; recursive copies their Attributes.
  PropertiesDataPtr Copy(bool recursive) const;

  /// A clean list of definitions like these, which have only been set up; as if made now.
  PropertiesDataPtr Twin() const;

  /// Whether members came, went or changed their name, or one of them is dirty itself.
  bool Dirty() const;
  void SetDirty();
  /// Of the members, too.
  void ClearDirty();
  /// All: every member is modifiable. Not all: at least one is. An empty list answers `all` itself.
  bool Modifiable(bool all) const;
  std::string Details() const;
  /// Made on first read.
  StatisticsPtr Statistics();

  /// The definitions become the columns of rows: from now on a member keeps the OrderNumber it has.
  void FixOrder() noexcept;
  /// The highest OrderNumber that was given.
  std::int32_t LastOrder() const noexcept { return lastOrder_; }
  /// Another number whenever members came, went or changed their name.
  std::uint32_t Generation() const noexcept { return generation_; }

 private:
  std::string StateDetails() const override { return Details(); }
  void Insert(const PropertyDataPtr& item, const Position& position);
  void Renumber(std::size_t from);

  KeyedList<PropertyDataPtr> items_;
  Variant modified_;  // date of the last change, Empty while clean
  StatisticsPtr statistics_;
  std::uint32_t generation_ = 0;
  std::int32_t lastOrder_ = 0;
  bool orderFixed_ = false;
};

}  // namespace velmoria
