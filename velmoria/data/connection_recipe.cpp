#include <string_view>

#include "velmoria/data/connection_recipe_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

void AppendPart(std::string& text, std::string_view key, std::string_view value) {
  if (!text.empty() && text.back() != ';') text += ';';
  text.append(key).append(value);
}

void AppendLogOnPart(std::string& text, std::string_view key, const std::string& value) {
  if (!value.empty() && !ContainsFolded(text, key)) AppendPart(text, key, value);
}

}  // namespace

std::string ComposeConnectString(zConnectionTypes connectionType, const std::string& given, const LogOn& logOn) {
  if (connectionType != ctDSN && connectionType != ctText) return given;
  std::string text = connectionType == ctText ? given : std::string();
  AppendLogOnPart(text, "UID=", logOn.UserName);
  AppendLogOnPart(text, "PWD=", logOn.Password);
  if (connectionType == ctDSN) AppendPart(text, "DSN=", given);
  return text;
}

const char* PasswordHint(const std::string& password) noexcept {
  if (!password.empty()) return "";
  return "Validate that the Database doesn't require a Password for this User because, the Password is an empty "
         "string.";
}

}  // namespace velmoria
