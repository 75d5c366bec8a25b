#pragma once

#include <bitset>
#include <cstddef>
#include <ctime>

#include "velmoria/platform/odbc/calls.h"
#include "velmoria/platform/odbc/driver_manners.h"

namespace velmoria::odbc {

class Statement;

/// Tells which timestamps of a fetch the driver has misread. What may be such a one is looked at again, and only that:
/// a driver that says today is asked for the number that the date's text begins with, which is the year.
class DateDoubts {
 public:
  explicit DateDoubts(Misreading misreading) : misreading_(misreading) {}

  /// Readies the slots for a fetch.
  void Begin(std::byte* slots, std::size_t rows);
  /// Behind the fetch, ahead of IsMisread: midnight may have passed meanwhile.
  void End() { NoteDay(); }
  /// `place` is the row's in the fetch, from 1; the cursor stays where it is.
  bool IsMisread(Statement& statement, Word column, std::size_t place, const std::byte* slot, bool isNull) const;

 private:
  void NoteDay();
  bool MayBeToday(unsigned month, unsigned day) const noexcept;

  static constexpr std::size_t kDays = std::size_t{13} * 32;
  Misreading misreading_;
  std::time_t noted_ = -1;
  std::bitset<kDays> days_;  // that the driver may have taken for today, by month and day
};

}  // namespace velmoria::odbc
