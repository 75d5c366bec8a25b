#include "velmoria/core/lockable.h"

namespace velmoria {

Lockable::~Lockable() = default;

void Lockable::LetUnlocked(bool locked, bool& setting, bool value, std::string_view routine) const try {
  if (locked) Raise(errVelmoria_Locked, routine);
  setting = value;
} catch (...) { Failed(routine); }

}  // namespace velmoria
