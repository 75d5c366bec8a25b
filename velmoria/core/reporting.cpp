#include "velmoria/core/reporting.h"

#include <new>
#include <optional>
#include <utility>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/asking_state_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

namespace {

constexpr std::int32_t kOutOfMemory = 7;

// None at the very start and the very end of an apartment.
MessagesPtr PresentMessages() noexcept {
  MessagesPtr messages;
  WithErrorsIgnored([&] { messages = Apartment().Messages; });
  return messages;
}

// None also while Main runs: it records what fails by itself, as a warning.
MessagesPtr RecordingMessages() noexcept {
  MessagesPtr messages;
  WithErrorsIgnored([&] {
    if (!Apartment().Starting) messages = Apartment().Messages;
  });
  return messages;
}

thread_local bool isAsking = false;

// A report must not start another one, and asking an object for its state must leave no trace.
template <class Ask>
std::string AskState(std::string_view type, Ask ask) noexcept {
  if (isAsking) return {};
  isAsking = true;
  auto state = TextOrNone([&] {
    Suspension quiet{std::string(type) + ".StateDetails"};
    return std::string(ask());
  });
  isAsking = false;
  return state;
}

std::optional<Error> MostSevere(const MessagesPtr& messages) {
  if (!messages || messages->ErrNo() == 0) return std::nullopt;
  return Error(messages->ErrNo(), messages->Description(), messages->HelpFile(), messages->HelpContext());
}

// What is raised when nothing is held: the catalogue number and the text without a heading.
Error Unrecorded(const MessageArguments& arguments) {
  auto text = Make<Message>(arguments)->Description();
  if (!arguments.ExtraText.empty()) text += "\r\n" + arguments.ExtraText;
  return Error(ErrorBase + static_cast<std::int32_t>(arguments.Number), std::move(text));
}

// Throws the Error that `build` gives; if even that fails, the failure as an Error.
template <class Build>
[[noreturn, gnu::cold]] void ThrowBuilt(Build build) {
  std::optional<Error> error;
  try {
    error.emplace(build());
  } catch (...) { error.emplace(CurrentError()); }
  throw Error(*error);
}

MessageArguments CatalogueArguments(zErrors number, Replacements& replacements, std::string_view extraText) {
  return {.Number = number,
          .TypeFlags = tfVelmoria,
          .SeverityFlags = svfError,
          .ExtraText = std::string(extraText),
          .Replace1 = std::move(replacements.Replace1),
          .Replace2 = std::move(replacements.Replace2),
          .Replace3 = std::move(replacements.Replace3),
          .Replace4 = std::move(replacements.Replace4)};
}

MessageArguments CaughtArguments(const Error& caught, zSeverityFlags severity) {
  return {.Number = zErrors{caught.Number()}, .Description = caught.Description(), .SeverityFlags = severity};
}

}  // namespace

Reporting::~Reporting() = default;

bool IsAskingState() noexcept { return isAsking; }

std::string Reporting::StateDetails() const { return {}; }

void Reporting::Raise(zErrors number, std::string_view routine, Replacements replacements, std::string_view extraText,
                      std::int32_t line) const {
  ThrowBuilt([&] { return Raised(CatalogueArguments(number, replacements, extraText), routine, line); });
}

void Reporting::RaiseWithState(const std::string& stateDetails, zErrors number, std::string_view routine,
                               Replacements replacements, std::string_view extraText, std::int32_t line) const {
  ThrowBuilt([&] { return Raised(CatalogueArguments(number, replacements, extraText), routine, line, &stateDetails); });
}

Error Reporting::Raised(MessageArguments arguments, std::string_view routine, std::int32_t line,
                        const std::string* stateDetails) const {
  const auto messages = RecordingMessages();
  if (messages) Record(*messages, arguments, routine, line, stateDetails);
  const auto error = MostSevere(messages);
  return error ? *error : Unrecorded(arguments);
}

void Reporting::Failed(std::string_view routine, std::int32_t line) const {
  ThrowBuilt([&] {
    const auto caught = CurrentError();
    const auto messages = RecordingMessages();
    if (messages) {
      auto arguments = CaughtArguments(caught, svfError);
      Record(*messages, arguments, routine, line);
    }
    const auto error = MostSevere(messages);
    return error ? *error : caught;
  });
}

void Reporting::Failed(std::string_view routine, zErrors number, Replacements replacements, std::string_view extraText,
                       std::int32_t line) const {
  const auto messages = RecordingMessages();
  if (messages) {
    WithErrorsIgnored([&] {
      auto arguments = CaughtArguments(CurrentError(), svfWarning);
      Record(*messages, arguments, routine, line);
    });
  }
  Raise(number, routine, std::move(replacements), extraText, line);
}

void Reporting::Record(Messages& messages, MessageArguments& arguments, std::string_view routine, std::int32_t line,
                       const std::string* stateDetails) const {
  if (!messages.SuspendRoutine().empty()) return;
  arguments.TypeName = ReportedType();
  arguments.RoutineName = routine;
  arguments.StateDetails =
      stateDetails != nullptr ? *stateDetails : AskState(ReportedType(), [this] { return StateDetails(); });
  arguments.ErrLine = line;
  messages.SetupItem(arguments);
}

Suspension::Suspension(std::string_view routine) {
  if (const auto messages = PresentMessages()) ticket_ = messages->Suspend(routine);
}

Suspension::~Suspension() { End(); }

void Suspension::End() noexcept {
  const auto ticket = std::exchange(ticket_, 0);
  if (ticket == 0) return;
  if (const auto messages = PresentMessages()) messages->Resume(ticket);
}

Error CurrentError() noexcept {
  try {
    try {
      throw;
    } catch (const Error& error) { return error; } catch (const std::bad_alloc&) {
      return Error(kOutOfMemory, "Out of memory");
    } catch (const std::exception& error) {
      return Error(static_cast<std::int32_t>(RuntimeFailure::InvalidArgument), error.what());
    } catch (...) {
      return Error(static_cast<std::int32_t>(RuntimeFailure::InvalidArgument),
                   RuntimeFailureText(RuntimeFailure::InvalidArgument));
    }
  } catch (...) {
    return Error(kOutOfMemory, "Out of memory");  // short enough to need none
  }
}

}  // namespace velmoria
