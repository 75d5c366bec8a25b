#include "velmoria/core/statistic.h"

#include <limits>
#include <string_view>
#include <utility>

#include "velmoria/core/duration_text_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

Date WithoutFraction(Date date) {
  WithErrorsIgnored([&] {
    auto parts = date.Parts();
    parts.Millisecond = 0;
    date = Date::From(parts);
  });
  return date;
}

std::string Or(const std::string& text, std::string_view none) { return text.empty() ? std::string(none) : text; }

}  // namespace

// Only an EndTime that is not later is taken: the usual caller has none yet, and sets it when the work is done.
Statistic::Statistic(StatisticArguments arguments) : fields_(std::move(arguments)) {
  if (SecondsBetween(fields_.StartTime, fields_.EndTime) > 0) fields_.EndTime = {};
}

StatisticPtr Statistic::Copy() const {
  auto copy = Make<Statistic>(fields_);
  copy->fields_.EndTime = fields_.EndTime;
  return copy;
}

Date Statistic::StartTime() const { return WithoutFraction(fields_.StartTime); }

void Statistic::SetStartTime(Date value) noexcept {
  if (TotalSeconds() > 0) return;
  fields_.StartTime = value;
  fields_.EndTime = {};
}

Date Statistic::EndTime() const { return WithoutFraction(fields_.EndTime); }

void Statistic::SetEndTime(Date value) noexcept {
  if (SecondsBetween(fields_.StartTime, value) >= 0) fields_.EndTime = value;
}

std::int64_t Statistic::TotalSeconds() const noexcept { return SecondsBetween(fields_.StartTime, fields_.EndTime); }

std::string Statistic::TotalDetails() const {
  const auto seconds = TotalSeconds();
  if (seconds > std::numeric_limits<std::int32_t>::max()) return {};
  return TextOrNone([&] { return DurationText(seconds); });
}

std::string Statistic::Details() const {
  return TextOrNone([this] {
    std::string text = "Started: " + StartTime().AsGeneralDate() + "\r\nEnded: " + EndTime().AsGeneralDate() +
                       "\r\nTotal: " + TotalDetails();
    if (!fields_.Name.empty()) text += "\r\nProcedure: " + fields_.Name;
    return text + "\r\n" + Or(fields_.SubjectLabel, "Subjects") + ": " + NumberText(fields_.SubjectCount);
  });
}

std::string Statistic::ProcedureDetails() const {
  return TextOrNone([this] {
    return "Procedure: " + Or(fields_.Name, "(Unknown)") + "  Started: " + StartTime().AsGeneralDate() +
           "  Ended: " + EndTime().AsGeneralDate();
  });
}

std::string Statistic::Subject() const {
  return TextOrNone([this] {
    return "Subject: " + Or(fields_.SubjectLabel, "(Unknown)") + "  Count: " + NumberText(fields_.SubjectCount);
  });
}

std::string Statistic::Subjects() const {
  return TextOrNone([this] {
    const auto& label = fields_.SubjectLabel;
    const auto count = NumberText(fields_.SubjectCount);
    if (label.empty()) return "Subject Count: " + count;
    return "Subjects: " + Quoted(label) + "  Count: " + count;
  });
}

}  // namespace velmoria
