#include "velmoria/core/message.h"

#include "velmoria/core/display.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/now.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

constexpr std::int32_t kNumberOfNone = 36571;

void ReplaceFirst(std::string& text, std::string_view placeholder, std::string_view value) {
  const auto place = text.find(placeholder);
  if (place != std::string::npos) text.replace(place, placeholder.size(), value);
}

}  // namespace

Message::Message(MessageArguments arguments) : fields_(std::move(arguments)) {
  WithErrorsIgnored([this] { timestamp_ = Now(); });
}

// One after the other, each in its first place only: a second |1| stays, and a value that itself holds |2| is filled.
std::string Message::Description() const {
  return TextOrNone([this] {
    std::string text = fields_.Description;
    const char* row = text.empty() ? CatalogueText(Number()) : nullptr;
    if (row != nullptr) text = row;
    ReplaceFirst(text, "|1|", fields_.Replace1);
    ReplaceFirst(text, "|2|", fields_.Replace2);
    ReplaceFirst(text, "|3|", fields_.Replace3);
    ReplaceFirst(text, "|4|", fields_.Replace4);
    if (text.empty()) text = "(Unknown Message Number)";
    return text;
  });
}

std::string Message::Details() const {
  return TextOrNone([this] {
    std::string text = Heading() + "\r\n" + Description();
    if (!fields_.ExtraText.empty()) text += "\r\n" + fields_.ExtraText;
    return text;
  });
}

std::string Message::Heading() const {
  std::string text = NumberText(Number()) + "-" + SeverityFlagsDisplay(fields_.SeverityFlags) + "-" +
                     TypeFlagsDisplay(fields_.TypeFlags);
  if (!fields_.TypeName.empty()) text += " " + fields_.TypeName;
  if (!fields_.RoutineName.empty()) text += (fields_.TypeName.empty() ? " " : ".") + fields_.RoutineName;
  if (fields_.ErrLine != 0) text += " at Line: " + NumberText(fields_.ErrLine);
  return text + " at " + timestamp_.AsGeneralDate();
}

std::int32_t Message::ErrNo() const noexcept {
  const auto number = Number();
  return ErrorBase + (IsCatalogueNumber(number) ? number : static_cast<std::int32_t>(errVelmoria_Unknown));
}

zTypeFlags Message::TypeFlags() const noexcept {
  return IsCatalogueNumber(Number()) ? fields_.TypeFlags | tfVelmoria : fields_.TypeFlags;
}

std::int32_t Message::Number() const noexcept {
  const auto number = static_cast<std::int32_t>(fields_.Number);
  return number == 0 ? kNumberOfNone : number;
}

}  // namespace velmoria
