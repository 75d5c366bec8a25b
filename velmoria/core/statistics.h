#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/core/statistic.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/keyed_list.h"

namespace velmoria {

/// Measurements by the name of their process, the newest of each name. Its owner (a connection, a recordset, a
/// collection of business objects) reports with it what it did and how long it took.
class VELMORIA_API Statistics final : public Object, private Reporting {
 public:
  std::string_view ReportedType() const noexcept override { return "Statistics"; }

  /// Adds a measurement under its name, in the place of an earlier one of that name. Raises 15018 when the position has
  /// both Before and After; the earlier one is gone then, too.
  void Add(const StatisticPtr& item, const Position& position = {});
  /// Makes a Statistic and adds it.
  StatisticPtr SetupItem(const StatisticArguments& arguments, const Position& position = {});
  /// By 1-based position or name; raises 15000 for a miss.
  void Remove(const Variant& index);
  void Clear() noexcept;
  /// By 1-based position or name; raises 15000 for a miss.
  StatisticPtr Item(const Variant& index) const;
  std::int32_t Count() const noexcept;
  KeyedList<StatisticPtr>::Iterator begin() const noexcept { return items_.begin(); }
  KeyedList<StatisticPtr>::Iterator end() const noexcept { return items_.end(); }

  /// The earliest StartTime of the members; day 0 when empty.
  Date StartTime() const;
  /// The latest EndTime of the members; day 0 when empty.
  Date EndTime() const;
  /// The sum of the members' seconds: parallel work counts twice.
  std::int64_t TotalSeconds() const;
  /// The seconds from StartTime to EndTime.
  std::int64_t ElapsedSeconds() const;
  /// The text of TotalSeconds; "" beyond 16 bits.
  std::string TotalDetails() const;
  /// The text of ElapsedSeconds; "" beyond 16 bits.
  std::string ElapsedDetails() const;
  std::string Details() const;

 protected:
  std::string StateDetails() const override { return Details(); }

 private:
  KeyedList<StatisticPtr> items_;
};

}  // namespace velmoria
