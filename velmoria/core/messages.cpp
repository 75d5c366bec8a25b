#include "velmoria/core/messages.h"

#include <limits>
#include <utility>

#include "velmoria/core/engine_errors_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

// The number that a raised number stands for: itself less the error base. Where that would not fit there is none.
bool HasUnraisedForm(std::int32_t number) { return number <= std::numeric_limits<std::int32_t>::max() + ErrorBase; }

// One warning for each entry of an engine's list, in the engine's order.
void AddWarnings(Messages& messages, std::vector<EngineError> errors, zTypeFlags engine) {
  for (auto& error : errors) {
    messages.Add(Make<Message>(MessageArguments{.Number = zErrors{error.Number},
                                                .Description = std::move(error.Description),
                                                .TypeFlags = engine,
                                                .SeverityFlags = svfWarning,
                                                .HelpContextID = error.HelpContext,
                                                .HelpFile = std::move(error.HelpFile)}));
  }
}

}  // namespace

Messages::Messages(ApartmentState& apartment) {
  WithErrorsIgnored([&] { ReadLogSettings(apartment); });
  WithErrorsIgnored([this] { StartLog(); });
}

void Messages::Add(const MessagePtr& item) {
  if (!suspendRoutine_.empty() || !item) return;
  WithErrorsIgnored([&] {
    const auto number = item->Number();
    auto key = NumberText(number);
    if (Declines(key, *item)) return;
    if (HasUnraisedForm(number) && Declines(NumberText(number - ErrorBase), *item)) return;
    items_.Add(item, key);
    if (!mostSevere_ || item->SeverityFlags() > mostSevere_->SeverityFlags()) mostSevere_ = item;
    WriteToLog(*item);
  });
}

bool Messages::Declines(const std::string& key, const Message& item) {
  if (items_.FindKey(key) == nullptr) return false;
  if (item.SeverityFlags() != svfInfo) return true;
  items_.RemoveKey(key);  // it stays the most severe one if it was: only the collection lets it go
  return false;
}

void Messages::Clear() noexcept {
  items_.Clear();
  mostSevere_.reset();
}

std::int32_t Messages::Count() const noexcept { return static_cast<std::int32_t>(items_.Count()); }

zTypeFlags Messages::TypeFlags() const noexcept { return mostSevere_ ? mostSevere_->TypeFlags() : tfUnknown; }

zSeverityFlags Messages::SeverityFlags() const noexcept { return mostSevere_ ? mostSevere_->SeverityFlags() : svfNone; }

std::int32_t Messages::ErrLine() const noexcept { return mostSevere_ ? mostSevere_->ErrLine() : 0; }

std::int32_t Messages::Number() const noexcept { return mostSevere_ ? mostSevere_->Number() : 0; }

std::int32_t Messages::ErrNo() const noexcept { return mostSevere_ ? mostSevere_->ErrNo() : 0; }

std::int32_t Messages::HelpContext() const noexcept { return mostSevere_ ? mostSevere_->HelpContextID() : 0; }

std::string Messages::HelpFile() const { return mostSevere_ ? mostSevere_->HelpFile() : std::string(); }

std::string Messages::Description() const { return mostSevere_ ? mostSevere_->Details() : std::string(); }

MessagePtr Messages::Item(const Variant& index) const {
  const auto* item = items_.Find(index);
  return item == nullptr ? MessagePtr() : *item;
}

MessagePtr Messages::SetupItem(MessageArguments arguments) {
  if (!suspendRoutine_.empty()) return {};
  const auto number = static_cast<std::int32_t>(arguments.Number);
  MessagePtr item;
  WithErrorsIgnored([&] { item = Make<Message>(std::move(arguments)); });
  Add(item);
  WithErrorsIgnored([&] { AddWarnings(*this, DaoErrorsOf(number), tfDAO); });
  WithErrorsIgnored([&] { AddWarnings(*this, TakeRdoErrors(), tfRDO); });
  return item;
}

void Messages::SetSuspendRoutine(std::string_view value) {
  const bool starts = suspendRoutine_.empty();
  if (!starts && !value.empty() && value != suspendRoutine_) return;
  ++suspensions_;
  suspendRoutine_ = starts ? value : std::string_view();
}

std::uint64_t Messages::Suspend(std::string_view routine) {
  if (!suspendRoutine_.empty()) return 0;
  SetSuspendRoutine(routine);
  return suspensions_;
}

void Messages::Resume(std::uint64_t ticket) noexcept {
  if (ticket != suspensions_) return;
  ++suspensions_;
  suspendRoutine_.clear();
}

}  // namespace velmoria
