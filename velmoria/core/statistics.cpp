#include "velmoria/core/statistics.h"

#include <limits>

#include "velmoria/core/duration_text_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

// The seconds pass through 16 bits here: a greater number overflows and leaves no text.
std::string ShortDurationText(std::int64_t seconds) {
  if (seconds > std::numeric_limits<std::int16_t>::max()) return {};
  return TextOrNone([&] { return DurationText(seconds); });
}

}  // namespace

// The earlier one of the name goes first: it is gone even when the position is refused.
void Statistics::Add(const StatisticPtr& item, const Position& position) try {
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  const auto name = item->Name();
  items_.RemoveKey(name);
  if (position.IsBoth()) {
    Raise(errAdd_Statistic, "Add", {name, PlaceText(position.Before), PlaceText(position.After)}, BothPositionsText);
  }
  InsertAt(items_, item, name, position);
} catch (...) { Failed("Add"); }

StatisticPtr Statistics::SetupItem(const StatisticArguments& arguments, const Position& position) try {
  auto item = Make<Statistic>(arguments);
  Add(item, position);
  return item;
} catch (...) { Failed("SetupItem"); }

void Statistics::Remove(const Variant& index) try {
  static_cast<void>(items_.At(index));
  items_.RemoveAt(items_.PositionOf(index));
} catch (...) { Failed("Remove"); }

void Statistics::Clear() noexcept { items_.Clear(); }

StatisticPtr Statistics::Item(const Variant& index) const try { return items_.At(index); } catch (...) {
  Failed("Item");
}

std::int32_t Statistics::Count() const noexcept { return static_cast<std::int32_t>(items_.Count()); }

Date Statistics::StartTime() const {
  Date earliest = items_.IsEmpty() ? Date{} : (*items_.begin())->StartTime();
  for (const auto& item : items_) {
    if (SecondsBetween(earliest, item->StartTime()) < 0) earliest = item->StartTime();
  }
  return earliest;
}

Date Statistics::EndTime() const {
  Date latest;
  for (const auto& item : items_) {
    if (SecondsBetween(latest, item->EndTime()) > 0) latest = item->EndTime();
  }
  return latest;
}

std::int64_t Statistics::TotalSeconds() const {
  std::int64_t total = 0;
  for (const auto& item : items_) total += item->TotalSeconds();
  return total;
}

std::int64_t Statistics::ElapsedSeconds() const { return SecondsBetween(StartTime(), EndTime()); }

std::string Statistics::TotalDetails() const { return ShortDurationText(TotalSeconds()); }

std::string Statistics::ElapsedDetails() const { return ShortDurationText(ElapsedSeconds()); }

std::string Statistics::Details() const {
  return TextOrNone([this] {
    std::string text = "Statistics Count " + NumberText(Count()) + "\r\nTotal: " + TotalDetails() +
                       "  Elapsed: " + ElapsedDetails() + "  Started: " + StartTime().AsGeneralDate() +
                       "  Ended: " + EndTime().AsGeneralDate();
    for (const auto& item : items_) {
      text += "\r\n    " + item->ProcedureDetails() + "\r\n    " + item->Subject() + "  Total: " + item->TotalDetails();
    }
    return text;
  });
}

}  // namespace velmoria
