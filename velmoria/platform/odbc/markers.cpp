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

// The place of the next such sign outside all passages, from `at` on.
std::size_t FindOutside(std::string_view sql, char sign, std::size_t at) noexcept {
  if (sql.find(sign, at) == std::string_view::npos) return std::string_view::npos;
  while (at < sql.size()) {
    const std::string_view rest = sql.substr(at);
    const auto passage =
        std::find_if(kPassages.begin(), kPassages.end(), [&](const Passage& p) { return rest.starts_with(p.Opening); });
    if (passage == kPassages.end()) {
      if (rest.front() == sign) return at;
      ++at;
      continue;
    }
    const std::size_t end = sql.find(passage->Closing, at + passage->Opening.size());
    if (end == std::string_view::npos) break;
    at = end + passage->Closing.size();
  }
  return std::string_view::npos;
}

}  // namespace

std::size_t CountMarkers(std::string_view sql) noexcept {
  std::size_t markers = 0;
  for (auto at = FindOutside(sql, '?', 0); at != std::string_view::npos; at = FindOutside(sql, '?', at + 1)) ++markers;
  return markers;
}

bool HasSeveralStatements(std::string_view sql) noexcept {
  for (auto at = FindOutside(sql, ';', 0); at != std::string_view::npos; at = FindOutside(sql, ';', at + 1)) {
    if (sql.find_first_not_of("; \t\r\n", at) != std::string_view::npos) return true;
  }
  return false;
}

}  // namespace velmoria::odbc
