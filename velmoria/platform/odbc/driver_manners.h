#pragma once

#include <cstdint>
#include <string_view>

namespace velmoria::odbc {

/// What a driver makes of a date that it does not understand, or that its structure cannot hold.
enum class Misreading : std::uint8_t {
  None,
  /// What is missing is today's, and a timestamp without end is the last second of year 9999.
  AsToday,
  /// A Null whose structure has been written all the same.
  AsNull
};

/// How the dates of a driver have to be read, so that none of them is taken for another one.
struct DateManners {
  Misreading Misreads = Misreading::None;
  bool DatesAsText = false;
  bool TimesAsText = false;  // the structure of a time has no fraction, no sign and no hour beyond the day
};

/// How a driver behaves where it does otherwise than the call level interface says, or better than it asks for.
struct DriverManners {
  std::string_view Driver{};  // part of the name that the driver gives itself
  DateManners Dates{};
  /// A statement that has ended serves again as if it were new, and making one is dear. Others do not gain so much, or
  /// were seen to leave out rows of a statement that had been used before.
  bool StatementsServeAgain = false;
  /// When it refuses a text of several statements, its lock of the connection stays with the thread that sent it, and
  /// every other thread would wait for ever.
  bool RefusalKeepsThread = false;
  /// It puts a request to cancel where another thread still writes the statement, and the connection is in ruins.
  /// Nothing tells when the statement has gone out, but so long it hardly ever takes.
  std::int32_t MillisecondsToSend = 0;
  /// A call that returns a value is prepared with all its parameters; one without them is another function.
  bool PreparesReturns = true;
  /// What a call gives back comes as a row of its own, too.
  bool OutputsComeAsRow = false;
  /// Results whose rows come one by one end without a word when a transaction begins.
  bool BeginEndsResults = false;
};

/// Those of a driver by the file name that it gives itself, "psqlodbcw.so"; one that is not known behaves as it should.
const DriverManners& DriverMannersOf(std::string_view driver) noexcept;

}  // namespace velmoria::odbc
