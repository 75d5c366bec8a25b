#include "velmoria/platform/odbc/passwords.h"

#include <algorithm>
#include <array>

#include "velmoria/runtime/text.h"

namespace velmoria::odbc {
namespace {

constexpr std::array<std::string_view, 2> kSecretEndings = {"PWD", "PASSWORD"};

bool EndsInSecretKey(std::string_view text) {
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  return std::ranges::any_of(kSecretEndings, [text](std::string_view ending) {
    return text.size() >= ending.size() && EqualFolded(text.substr(text.size() - ending.size()), ending);
  });
}

// A value in braces ends with its brace (two of them stand for one), any other before the next ";".
std::size_t EndOfValue(std::string_view text, std::size_t at) {
  const auto first = text.find_first_not_of(' ', at);
  if (first == std::string_view::npos || text[first] != '{') return std::min(text.find(';', at), text.size());
  for (auto place = text.find('}', first); place < text.size(); place = text.find('}', place + 2)) {
    if (text.substr(place + 1, 1) != "}") return place + 1;
  }
  return text.size();
}

}  // namespace

std::string WithoutPasswords(std::string_view text) {
  std::string shown;
  std::size_t at = 0;
  for (auto equals = text.find('='); equals != std::string_view::npos; equals = text.find('=', at)) {
    shown.append(text.substr(at, equals + 1 - at));
    at = equals + 1;
    if (!EndsInSecretKey(text.substr(0, equals))) continue;
    shown += "***";
    at = EndOfValue(text, at);
  }
  return shown.append(text.substr(at));
}

}  // namespace velmoria::odbc
