#include "velmoria/platform/odbc/markers.h"

#include <algorithm>
#include <array>

namespace velmoria::odbc {
namespace {

struct Passage {
  std::string_view Opening;
  std::string_view Closing;
};

// A doubled closing quote ends one passage and begins the next, which comes to the same.
constexpr std::array kPassages = {
    Passage{"'", "'"}, Passage{"\"", "\""}, Passage{"`", "`"},
    Passage{"[", "]"}, Passage{"--", "\n"}, Passage{"/*", "*/"},
};

}  // namespace

std::size_t CountMarkers(std::string_view sql) noexcept {
  std::size_t markers = 0;
  for (std::size_t at = 0; at < sql.size();) {
    const std::string_view rest = sql.substr(at);
    const auto passage =
        std::find_if(kPassages.begin(), kPassages.end(), [&](const Passage& p) { return rest.starts_with(p.Opening); });
    if (passage == kPassages.end()) {
      markers += rest.front() == '?' ? 1U : 0U;
      ++at;
      continue;
    }
    const std::size_t end = sql.find(passage->Closing, at + passage->Opening.size());
    if (end == std::string_view::npos) break;
    at = end + passage->Closing.size();
  }
  return markers;
}

}  // namespace velmoria::odbc
