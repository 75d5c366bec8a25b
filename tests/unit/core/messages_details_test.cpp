#include <memory>
#include <string>

#include "tests/unit/core/messages_fixture.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

class MessagesDetailsTest : public MessagesTest {
 protected:
  static std::string Title() { return "Velmoria v1.0-0h [TestHost 123]\r\n" + std::string(31, '-'); }
};

TEST_F(MessagesDetailsTest, EmptyReportIsTheTitle) { EXPECT_EQ(messages_.Details(), Title()); }

TEST_F(MessagesDetailsTest, SuspendedReportNamesTheSuspender) {
  Record(13, svfError);
  messages_.SetSuspendRoutine("Class.Routine");
  EXPECT_EQ(messages_.Details(), Title() + "\r\nMessaging Suspended by 'Class.Routine'");
}

TEST_F(MessagesDetailsTest, MostSevereStandsFirstWithItsState) {
  const auto message =
      messages_.SetupItem({.Number = errVelmoria_Locked, .StateDetails = "Property: 'x'", .SeverityFlags = svfError});
  EXPECT_EQ(messages_.Details(), Title() + "\r\n" + message->Details() +
                                     "\r\n\r\nRepository Object State Details\r\n-------------------------------"
                                     "\r\nProperty: 'x'");
}

TEST_F(MessagesDetailsTest, OthersFollowBySeverity) {
  const auto information = Record(1, svfInfo);
  const auto warning = Record(2, svfWarning);
  const auto first = Record(3, svfError);
  const auto error = Record(4, svfError);
  const auto secondWarning = Record(5, svfWarning);
  EXPECT_EQ(messages_.Details(), Title() + "\r\n" + first->Details() + "\r\n\r\nError Messages\r\n--------------\r\n" +
                                     error->Details() + "\r\n\r\nWarning Messages\r\n----------------\r\n" +
                                     warning->Details() + "\r\n\r\n" + secondWarning->Details() +
                                     "\r\n\r\nInformational Messages\r\n----------------------\r\n" +
                                     information->Details());
}

TEST_F(MessagesDetailsTest, OtherSeveritiesAreLeftOut) {
  const auto first = Record(3, svfError);
  Record(4, svfNone);
  Record(5, svfWarning | svfInfo);
  EXPECT_EQ(messages_.Details(), Title() + "\r\n" + first->Details());
}

TEST_F(MessagesDetailsTest, UnderlineOfTheTitleCountsCharacters) {
  apartment_.Host().HostName = "Käse";
  EXPECT_EQ(messages_.Details(), "Velmoria v1.0-0h [Käse 123]\r\n" + std::string(27, '-'));
}

TEST_F(MessagesDetailsTest, MostSevereWithoutStateIsFollowedByTheGroupsAtOnce) {
  const auto first = Record(3, svfError);
  const auto warning = Record(2, svfWarning);
  EXPECT_EQ(messages_.Details(), Title() + "\r\n" + first->Details() +
                                     "\r\n\r\nWarning Messages\r\n----------------\r\n" + warning->Details());
}

TEST_F(MessagesDetailsTest, StateOfAnyOtherMessageIsNotShown) {
  Record(3, svfError);
  messages_.SetupItem({.Number = zErrors{4}, .StateDetails = "Property: 'x'", .SeverityFlags = svfError});
  EXPECT_EQ(messages_.Details().find("Property: 'x'"), std::string::npos);
}

TEST_F(MessagesDetailsTest, GroupsWithoutMessagesHaveNoHeading) {
  Record(3, svfError);
  Record(1, svfInfo);
  const auto report = messages_.Details();
  EXPECT_EQ(report.find("Error Messages"), std::string::npos);
  EXPECT_EQ(report.find("Warning Messages"), std::string::npos);
  EXPECT_NE(report.find("\r\n\r\nInformational Messages\r\n----------------------\r\n"), std::string::npos);
}

// A host whose version cannot be read.
class NamelessHost final : public HostApplication {
 public:
  std::string Name() override { return "Host"; }
  std::int32_t Major() override { Fail(RuntimeFailure::FileNotFound); }
  std::int32_t Minor() override { return 0; }
  std::int32_t Revision() override { return 0; }
  std::string UserName() override { return {}; }
};

TEST_F(MessagesDetailsTest, TitleThatFailsLeavesTheRestOfTheReport) {
  apartment_.State().Platform.Host = std::make_shared<NamelessHost>();
  const auto message = Record(3, svfError);
  EXPECT_EQ(messages_.Details(), "\r\n" + message->Details());
}

}  // namespace
}  // namespace velmoria::test
