#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/fwd.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// What a Statistic is made of: the arguments of Statistics.SetupItem and Framework.CreateStatistic.
struct StatisticArguments {
  std::string Name;
  std::string SubjectLabel{};
  std::int32_t SubjectCount = 0;
  Date StartTime{};
  Date EndTime{};
  bool Locked = false;
};

/// One measurement of a process: what it worked on, how many, and from when to when, in whole seconds. Nothing in it
/// raises: a text that cannot be built is empty.
class VELMORIA_API Statistic final : public Object {
 public:
  /// An EndTime that is later than StartTime by a second or more is left out, as SetEndTime comes after the work.
  explicit Statistic(StatisticArguments arguments);

  std::string_view ReportedType() const noexcept override { return "Statistic"; }

  /// A new Statistic with all the values, the times included.
  StatisticPtr Copy() const;

  bool Locked() const noexcept { return fields_.Locked; }
  void SetLocked(bool value) noexcept { fields_.Locked = value; }
  std::string Name() const { return fields_.Name; }
  /// Does not change the key in a Statistics that holds it.
  void SetName(std::string value) { fields_.Name = std::move(value); }
  std::string SubjectLabel() const { return fields_.SubjectLabel; }
  void SetSubjectLabel(std::string value) { fields_.SubjectLabel = std::move(value); }
  std::int32_t SubjectCount() const noexcept { return fields_.SubjectCount; }
  void SetSubjectCount(std::int32_t value) noexcept { fields_.SubjectCount = value; }

  /// Without its fraction of a second; day 0 while not set.
  Date StartTime() const;
  /// Does nothing once EndTime is later than StartTime; else EndTime goes back to 0.
  void SetStartTime(Date value) noexcept;
  /// Without its fraction of a second; day 0 while not set.
  Date EndTime() const;
  /// Ignored if it lies before StartTime.
  void SetEndTime(Date value) noexcept;
  /// The whole seconds from StartTime to EndTime; negative while there is no EndTime.
  std::int64_t TotalSeconds() const noexcept;

  /// "1 minute and 5 seconds"; "" for a negative total or one beyond 32 bits.
  std::string TotalDetails() const;
  std::string Details() const;
  std::string ProcedureDetails() const;
  std::string Subject() const;
  std::string Subjects() const;

 private:
  StatisticArguments fields_;
};

}  // namespace velmoria
