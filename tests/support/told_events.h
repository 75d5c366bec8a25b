#pragma once

#include <string>

#include "velmoria/properties/properties.h"

namespace velmoria::test {

/// Has the events of Update and Delete of a collection write their initials into a text, a blank behind each. The text
/// must outlive the collection.
inline void TellEvents(Properties& properties, std::string& told) {
  properties.BeforeUpdate += [&told](bool&) { told += "bu "; };
  properties.AfterUpdate += [&told] { told += "au "; };
  properties.BeforePendingDelete += [&told](bool&) { told += "bd "; };
  properties.AfterPendingDelete += [&told] { told += "ad "; };
}

}  // namespace velmoria::test
