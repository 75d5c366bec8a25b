#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace velmoria {

/// Takes a listener back: `auto token = order.BeforeUpdate += listener; order.BeforeUpdate -= token;`
struct EventToken {
  std::uint64_t Number = 0;
};

/// A synchronous notification, a public member of the class that raises it. Anybody may listen; only Owner raises.
/// It is one pointer wide while nobody listens. Listeners are called in the order in which they came, over a copy, so
/// a listener may leave, or others may join, during the call. Whatever a listener throws passes to the raiser.
template <class Owner, class... Arguments>
class Event {
 public:
  using Listener = std::function<void(Arguments...)>;

  Event() noexcept = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  EventToken operator+=(Listener listener) {
    if (!listeners_) listeners_ = std::make_unique<List>();
    listeners_->Entries.emplace_back(++listeners_->LastNumber, std::make_shared<const Listener>(std::move(listener)));
    return {listeners_->LastNumber};
  }
  void operator-=(EventToken token) {
    if (!listeners_) return;
    std::erase_if(listeners_->Entries, [&](const auto& entry) { return entry.first == token.Number; });
  }
  bool HasListeners() const noexcept { return listeners_ && !listeners_->Entries.empty(); }

 private:
  friend Owner;

  void Raise(Arguments... arguments) const {
    if (!HasListeners()) return;
    const auto entries = listeners_->Entries;
    for (const auto& [number, listener] : entries) (*listener)(arguments...);
  }

  struct List {
    std::uint64_t LastNumber = 0;
    std::vector<std::pair<std::uint64_t, std::shared_ptr<const Listener>>> Entries;
  };
  std::unique_ptr<List> listeners_;
};

/// An event that a listener may veto by its last argument, Cancel; every listener is called, and Cancel stays True once
/// somebody has set it, whatever a later listener does.
template <class Owner, class... Arguments>
class CancelEvent {
 public:
  using Listener = std::function<void(Arguments..., bool& Cancel)>;

  EventToken operator+=(Listener listener) {
    return event_ += [listener = std::move(listener)](Arguments... arguments, bool& Cancel) {
      bool cancel = Cancel;
      listener(std::forward<Arguments>(arguments)..., cancel);
      Cancel = Cancel || cancel;
    };
  }
  void operator-=(EventToken token) { event_ -= token; }
  bool HasListeners() const noexcept { return event_.HasListeners(); }

 private:
  friend Owner;

  /// True when a listener cancelled.
  bool Raise(Arguments... arguments) const {
    bool cancel = false;
    event_.Raise(arguments..., cancel);
    return cancel;
  }

  Event<CancelEvent, Arguments..., bool&> event_;
};

}  // namespace velmoria
