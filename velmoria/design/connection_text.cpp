#include <algorithm>
#include <array>

#include "velmoria/design/connection_text_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

constexpr std::array<std::string_view, 2> kSecretKeys{"PWD", "PASSWORD"};

bool IsSecret(std::string_view key) {
  const auto first = key.find_first_not_of(' ');
  if (first == std::string_view::npos) return false;
  key = key.substr(first, key.find_last_not_of(' ') - first + 1);
  return std::ranges::any_of(kSecretKeys, [key](auto secret) { return EqualFolded(key, secret); });
}

// A value in braces may hold semicolons, and a doubled closing brace.
std::size_t EndOfValue(std::string_view text, std::size_t start) {
  if (start >= text.size() || text[start] != '{') return std::min(text.find(';', start), text.size());
  for (auto at = start + 1; at < text.size(); ++at) {
    if (text[at] != '}') continue;
    if (at + 1 >= text.size() || text[at + 1] != '}') return std::min(text.find(';', at), text.size());
    ++at;
  }
  return text.size();
}

}  // namespace

std::string WithoutPassword(std::string_view connectionString) {
  std::string shown;
  std::size_t at = 0;
  while (at < connectionString.size()) {
    const auto equals = connectionString.find('=', at);
    const auto semicolon = connectionString.find(';', at);
    const bool hasValue = equals < semicolon;
    const auto valueAt = hasValue ? equals + 1 : at;
    const auto end = EndOfValue(connectionString, valueAt);
    const bool hides = hasValue && IsSecret(connectionString.substr(at, equals - at));
    shown += connectionString.substr(at, hides ? valueAt - at : end - at);
    if (hides) shown += "***";
    if (end < connectionString.size()) shown += ';';
    at = end + 1;
  }
  return shown;
}

}  // namespace velmoria
