#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/catalogue.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// What a Message is made of: the arguments of Messages.SetupItem and Framework.CreateMessage. Number is a catalogue
/// number or, as `zErrors{number}`, the number of a caught failure; an empty Description takes the catalogue's text.
struct MessageArguments {
  zErrors Number{};
  std::string Description{};
  std::string TypeName{};
  std::string RoutineName{};
  std::string StateDetails{};
  std::int32_t ErrLine = 0;
  zTypeFlags TypeFlags = tfUnknown;
  zSeverityFlags SeverityFlags = svfNone;
  std::string ExtraText{};
  std::string Replace1{};
  std::string Replace2{};
  std::string Replace3{};
  std::string Replace4{};
  std::int32_t HelpContextID = 0;
  std::string HelpFile{};
};

/// One recorded failure, warning or piece of information. Its text is put together each time it is read. Nothing in it
/// raises: what goes wrong inside leaves the value empty.
class VELMORIA_API Message final : public Object {
 public:
  /// Takes the arguments as they stand, and the present time for its heading.
  explicit Message(MessageArguments arguments = {});

  std::string_view ReportedType() const noexcept override { return "Message"; }

  /// The text: the description given, else the catalogue's, with the first occurrence of each placeholder filled in;
  /// "(Unknown Message Number)" when there is none.
  std::string Description() const;
  void SetDescription(std::string value) { fields_.Description = std::move(value); }
  std::string StateDetails() const { return fields_.StateDetails; }
  void SetStateDetails(std::string value) { fields_.StateDetails = std::move(value); }
  /// The heading (number, severity, type, class and routine, line, time), the text and the extra text, on lines that
  /// end with CR LF.
  std::string Details() const;
  /// The number that is raised for this message: the error base plus Number, a Number outside 15000 to 15180 counting
  /// as 15000.
  std::int32_t ErrNo() const noexcept;

  std::string TypeName() const { return fields_.TypeName; }
  void SetTypeName(std::string value) { fields_.TypeName = std::move(value); }
  std::string RoutineName() const { return fields_.RoutineName; }
  void SetRoutineName(std::string value) { fields_.RoutineName = std::move(value); }
  /// 0 for none.
  std::int32_t ErrLine() const noexcept { return fields_.ErrLine; }
  void SetErrLine(std::int32_t value) noexcept { fields_.ErrLine = value; }
  /// What was set, with tfVelmoria added when Number lies in 15000 to 15180.
  zTypeFlags TypeFlags() const noexcept;
  void SetTypeFlags(zTypeFlags value) noexcept { fields_.TypeFlags = value; }
  zSeverityFlags SeverityFlags() const noexcept { return fields_.SeverityFlags; }
  void SetSeverityFlags(zSeverityFlags value) noexcept { fields_.SeverityFlags = value; }
  /// 0 reads as 36571.
  std::int32_t Number() const noexcept;
  void SetNumber(std::int32_t value) noexcept { fields_.Number = zErrors{value}; }
  std::string ExtraText() const { return fields_.ExtraText; }
  void SetExtraText(std::string value) { fields_.ExtraText = std::move(value); }
  std::string Replace1() const { return fields_.Replace1; }
  void SetReplace1(std::string value) { fields_.Replace1 = std::move(value); }
  std::string Replace2() const { return fields_.Replace2; }
  void SetReplace2(std::string value) { fields_.Replace2 = std::move(value); }
  std::string Replace3() const { return fields_.Replace3; }
  void SetReplace3(std::string value) { fields_.Replace3 = std::move(value); }
  std::string Replace4() const { return fields_.Replace4; }
  void SetReplace4(std::string value) { fields_.Replace4 = std::move(value); }
  std::int32_t HelpContextID() const noexcept { return fields_.HelpContextID; }
  void SetHelpContextID(std::int32_t value) noexcept { fields_.HelpContextID = value; }
  std::string HelpFile() const { return fields_.HelpFile; }
  void SetHelpFile(std::string value) { fields_.HelpFile = std::move(value); }

 private:
  std::string Heading() const;

  MessageArguments fields_;
  Date timestamp_;
};

}  // namespace velmoria
