#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/product.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

struct Group {
  zSeverityFlags Severity;
  std::string_view Heading;
};

constexpr Group kGroups[] = {
    {svfError, "Error Messages"}, {svfWarning, "Warning Messages"}, {svfInfo, "Informational Messages"}};

std::string Underlined(std::string heading) {
  const auto width = CharacterCount(heading);
  return std::move(heading) + "\r\n" + std::string(width, '-');
}

std::string Title() {
  auto& host = *Apartment().Platform.Host;
  return "Velmoria " + std::string(ProductVersion) + " [" + host.Name() + " " + NumberText(host.Major()) +
         NumberText(host.Minor()) + NumberText(host.Revision()) + "]";
}

// The messages of one severity under its heading; those of the number printed already are passed over.
std::string GroupText(const Messages& messages, const Group& group, std::int32_t numberPrinted) {
  std::string text;
  for (const auto& item : messages) {
    if (item->Number() == numberPrinted || item->SeverityFlags() != group.Severity) continue;
    const bool isFirst = text.empty();
    text += "\r\n\r\n";
    if (isFirst) text += Underlined(std::string(group.Heading)) + "\r\n";
    text += item->Details();
  }
  return text;
}

}  // namespace

std::string Messages::Details() const {
  std::string text;
  WithErrorsIgnored([&] { text = Underlined(Title()); });
  WithErrorsIgnored([&] {
    if (!suspendRoutine_.empty()) {
      text += "\r\nMessaging Suspended by '" + suspendRoutine_ + "'";
      return;
    }
    if (mostSevere_) text += "\r\n" + mostSevere_->Details();
    if (mostSevere_ && !mostSevere_->StateDetails().empty()) {
      text += "\r\n\r\n" + Underlined("Repository Object State Details") + "\r\n" + mostSevere_->StateDetails();
    }
    for (const auto& group : kGroups) text += GroupText(*this, group, Number());
  });
  return text;
}

}  // namespace velmoria
