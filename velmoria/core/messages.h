#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/message.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

struct ApartmentState;
class Suspension;

/// The arguments of Messages.SetupLogging. An empty LogFileName keeps the one held.
struct SetupLoggingArguments {
  zLogModes LogMode = lmAutomatic;
  zSeverityFlags LogSeverityFlags = svfWarning | svfInfo | svfError;
  zTypeFlags LogTypeFlags = tfAll;
  std::string LogFileName{};
  bool LogOverwrite = false;
};

/// The one sink of failures: the messages of an apartment, one for each number, in order of recording. The apartment
/// owns it; the library records here and the host reads and clears. It also copies what it records to the log. Nothing
/// in it raises: what goes wrong inside is passed over.
class VELMORIA_API Messages final : public Object {
 public:
  /// Made by the apartment at its start: reads the log settings and starts the log.
  explicit Messages(ApartmentState& apartment);
  /// Saves the log settings, as SaveLogSettings does.
  ~Messages() override;

  std::string_view ReportedType() const noexcept override { return "Messages"; }

  /// Records a message built elsewhere, unless messaging is suspended. A number that is already held, as itself or in
  /// its raised form, declines the message; an information then takes the place of the one held.
  void Add(const MessagePtr& item);
  /// Empties the collection. A suspension and the log settings stay.
  void Clear() noexcept;
  std::int32_t Count() const noexcept;

  // The values of the most severe message, the earliest of equals; 0 or "" while nothing was recorded.
  zTypeFlags TypeFlags() const noexcept;
  zSeverityFlags SeverityFlags() const noexcept;
  std::int32_t ErrLine() const noexcept;
  std::int32_t Number() const noexcept;
  std::int32_t ErrNo() const noexcept;
  std::int32_t HelpContext() const noexcept;
  std::string HelpFile() const;
  /// The Details of the most severe message, not its Description.
  std::string Description() const;

  /// The whole report: title, most severe message with its state, then all others by severity.
  std::string Details() const;
  /// The message at a 1-based position, or by the decimal text of its number; none when it is not there.
  MessagePtr Item(const Variant& index) const;
  KeyedList<MessagePtr>::Iterator begin() const noexcept { return items_.begin(); }
  KeyedList<MessagePtr>::Iterator end() const noexcept { return items_.end(); }

  /// Records a message and behind it, as warnings, what the database engines themselves say: DAO's list of errors when
  /// its last entry has the number given, RDO's list whatever the number, which is emptied then. The result is the new
  /// message, also when it was declined, or none while messaging is suspended.
  MessagePtr SetupItem(MessageArguments arguments);

  /// The name of the routine that suspended messaging, or "" while messages are recorded.
  std::string SuspendRoutine() const { return suspendRoutine_; }
  /// A name suspends messaging; the same name again, or "", ends it; another name meanwhile changes nothing.
  void SetSuspendRoutine(std::string_view value);

  // The log: settings of the user, read at the start and saved at the end. Setting another value than the one held
  // restarts it. It takes the Details of a message whose severity and type are both selected; one that is 0 always is.
  zSeverityFlags LogSeverityFlags() const noexcept { return log_.LogSeverityFlags; }
  void SetLogSeverityFlags(zSeverityFlags value);
  zTypeFlags LogTypeFlags() const noexcept { return log_.LogTypeFlags; }
  void SetLogTypeFlags(zTypeFlags value);
  /// Where the log goes: nowhere by lmOff, which is the default; to the file by lmWindows; to the system log by lmWinNT
  /// and lmAutomatic.
  zLogModes LogMode() const noexcept { return log_.LogMode; }
  void SetLogMode(zLogModes value);
  /// A path, a relative one from the working folder of the moment. A name with a drive letter or a backslash, as the
  /// default one has, cannot be one: its last component then lies in the user's state folder, ~/.local/state/velmoria.
  std::string LogFileName() const { return log_.LogFileName; }
  void SetLogFileName(const std::string& value);
  /// Stored and restarts the log, but has no effect on an existing file.
  bool LogOverwrite() const noexcept { return log_.LogOverwrite; }
  void SetLogOverwrite(bool value);
  /// Stores all five and restarts the log once, whether or not anything changed.
  void SetupLogging(const SetupLoggingArguments& arguments = {});

  // Inside the library.
  /// Writes the log settings to the apartment's store in one step, unless they could never be read. A stored text that
  /// is no value of its setting stays while the setting keeps its default.
  void SaveLogSettings(ApartmentState& apartment) const;

 private:
  friend class Suspension;

  bool Declines(const std::string& key, const Message& item);
  /// Suspends for a guard; the ticket ends it, 0 when messaging is suspended already.
  std::uint64_t Suspend(std::string_view routine);
  void Resume(std::uint64_t ticket) noexcept;

  static SetupLoggingArguments DefaultLogging();
  void ReadLogSettings(ApartmentState& apartment);
  void StartLog();
  void WriteToLog(const Message& message);

  KeyedList<MessagePtr> items_;
  MessagePtr mostSevere_;
  std::string suspendRoutine_;
  std::uint64_t suspensions_ = 0;  // counts each start and end, so that a guard knows its own
  SetupLoggingArguments log_ = DefaultLogging();
  bool isLogRead_ = false;
};

}  // namespace velmoria
