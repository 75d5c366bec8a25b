#pragma once

#include <string_view>

#include "velmoria/core/reporting.h"

namespace velmoria {

/// A reporting class with settings that are fixed while it is locked. When it is locked, it says itself.
class VELMORIA_API Lockable : public Reporting {
 public:
  ~Lockable() override;

 protected:
  Lockable() = default;
  Lockable(const Lockable&) = default;
  Lockable& operator=(const Lockable&) = default;

  /// Gives a setting its value. Raises 15002 when locked.
  void LetUnlocked(bool locked, bool& setting, bool value, std::string_view routine) const;
};

}  // namespace velmoria
