#pragma once

#include <cstdint>
#include <string>

namespace velmoria {

/// One entry of a database engine's own list of errors.
struct EngineError {
  std::int32_t Number = 0;
  std::string Description{};
  std::string HelpFile{};
  std::int32_t HelpContext = 0;
  std::string SQLState{};
};

}  // namespace velmoria
