#include "tests/support/expect_raised.h"

#include <gtest/gtest.h>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/runtime/text.h"

namespace velmoria::test {

namespace {

// The words of a catalogue text between its placeholders. Only the first place of each placeholder is ever filled.
std::vector<std::string> Words(std::string text) {
  for (const char* placeholder : {"|1|", "|2|", "|3|", "|4|"}) {
    if (const auto at = text.find(placeholder); at != std::string::npos) text.replace(at, 3, 1, '\0');
  }
  std::vector<std::string> words(1);
  for (const char each : text) each == '\0' ? static_cast<void>(words.emplace_back()) : words.back().push_back(each);
  return words;
}

bool ContainsInOrder(const std::string& text, const std::vector<std::string>& words) {
  std::size_t from = 0;
  for (const auto& word : words) {
    const auto at = text.find(word, from);
    if (at == std::string::npos) return false;
    from = at + word.size();
  }
  return true;
}

void CheckText(zErrors number, const std::string& text, const RaisedExpectation& expected, CodePlace place) {
  const char* row = CatalogueText(static_cast<std::int32_t>(number));
  if (row == nullptr) {
    ADD_FAILURE_AT(place.File, place.Line) << "no catalogue row";
  } else if (!ContainsInOrder(text, Words(row))) {
    ADD_FAILURE_AT(place.File, place.Line) << "raised text: " << text << "\n    catalogue: " << row;
  } else if (text.find(expected.Text) == std::string::npos) {
    ADD_FAILURE_AT(place.File, place.Line) << "raised text: " << text << "\n     expected: " << expected.Text;
  }
}

}  // namespace

void CheckRaised(zErrors number, const std::optional<Error>& error, const RaisedExpectation& expected,
                 CodePlace place) {
  auto& messages = *Apartment().Messages;
  const int count = messages.Count();
  const auto wanted = static_cast<std::int32_t>(number);
  if (!error) {
    ADD_FAILURE_AT(place.File, place.Line) << "nothing was raised; expected " << wanted;
  } else if (error->Number() != ErrorBase + wanted) {
    ADD_FAILURE_AT(place.File, place.Line) << "raised " << error->Number() << " (" << error->CatalogueNumber()
                                           << "), expected " << wanted << "; text: " << error->Description();
  } else {
    CheckText(number, error->Description(), expected, place);
    if (expected.Count < 0 ? count < 1 : count != expected.Count) {
      ADD_FAILURE_AT(place.File, place.Line) << "Messages.Count is " << count << "\n" << messages.Details();
    }
  }
  messages.Clear();
}

void CheckReported(RuntimeFailure failure, const std::optional<Error>& error, CodePlace place) {
  auto& messages = *Apartment().Messages;
  const auto number = static_cast<std::int32_t>(failure);
  if (!error) {
    ADD_FAILURE_AT(place.File, place.Line) << "nothing was raised; expected the run-time's " << number;
  } else if (error->CatalogueNumber() != static_cast<std::int32_t>(errVelmoria_Unknown) ||
             error->Description().find(RuntimeFailureText(failure)) == std::string::npos) {
    ADD_FAILURE_AT(place.File, place.Line) << "raised " << error->Number() << ", expected 15000 with the text of "
                                           << number << "; text: " << error->Description();
  } else if (!messages.Item(NumberText(number))) {
    ADD_FAILURE_AT(place.File, place.Line) << "no message " << number << "\n" << messages.Details();
  }
  messages.Clear();
}

}  // namespace velmoria::test
