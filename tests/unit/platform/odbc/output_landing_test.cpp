#include "velmoria/platform/odbc/output_landing.h"

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

class OutputLandingTest : public RdoTest {
 protected:
  OutputLandingTest() { connection_->Open("Driver=Fake", false, false); }

  /// What comes back of a parameter that the execution gives the text.
  Variant Returned(std::int32_t type, const std::optional<std::string>& text, const Variant& given = {}) {
    odbc->Outputs = {text};
    odbc::OutputLanding landing({.Name = "Result", .Type = type, .Storage = odbc::StorageOf(type)},
                                static_cast<odbc::Small>(type));
    odbc::Statement statement(*connection_);
    landing.Bind(statement, 1, kInputOutput, given);
    statement.ExecuteDirect("{ call p ( ? ) }");
    EXPECT_FALSE(statement.MoreResults());
    return landing.Value();
  }

  static constexpr odbc::Small kInputOutput = 2;
  odbc::Environment environment_{engine->Driver()};
  std::unique_ptr<odbc::Connection> connection_ = std::make_unique<odbc::Connection>(environment_);
};

TEST_F(OutputLandingTest, ValueComesBackAsItsType) {
  EXPECT_EQ(Returned(rdTypeINTEGER, "-7"), Variant(-7));
  EXPECT_EQ(Returned(rdTypeSMALLINT, "300"), Variant(std::int16_t{300}));
  EXPECT_EQ(Returned(rdTypeTINYINT, "200"), Variant(Byte{200}));
  EXPECT_EQ(Returned(rdTypeBIGINT, "9007199254740993").AsText(), "9007199254740993");
  EXPECT_EQ(Returned(rdTypeDOUBLE, "1.5"), Variant(1.5));
  EXPECT_EQ(Returned(rdTypeREAL, "2.5"), Variant(2.5F));
  EXPECT_EQ(Returned(rdTypeDECIMAL, "12.50").AsText(), "12.50");
  EXPECT_EQ(Returned(rdTypeBIT, "1"), Variant(true));
  EXPECT_TRUE(Returned(rdTypeINTEGER, std::nullopt).IsNull());
}

TEST_F(OutputLandingTest, GivenValueIsThereBeforeTheExecution) {
  Returned(rdTypeINTEGER, "1", 42);
  EXPECT_EQ(odbc->Parameters.at(0).Bytes, "42");
  Returned(rdTypeDECIMAL, "1", Decimal::Parse("0.10"));
  EXPECT_EQ(odbc->Parameters.at(0).Bytes, "0.10");
  for (const auto& missing : {Variant(), Variant::Null(), Variant::Missing()}) {
    Returned(rdTypeINTEGER, "1", missing);
    EXPECT_TRUE(odbc->Parameters.at(0).IsNull);
  }
}

TEST_F(OutputLandingTest, NumberThatItsTypeDoesNotHoldRaises6) {
  const auto overflow = static_cast<std::int32_t>(RuntimeFailure::Overflow);
  ExpectRdoFailure(overflow, "'Result'", [&] { Returned(rdTypeSMALLINT, "70000"); });
  ExpectRdoFailure(overflow, "", [&] { Returned(rdTypeINTEGER, "1", Decimal::Parse("1.5")); });
  ExpectRdoFailure(overflow, "the parameter 'Result' is too long",
                   [&] { Returned(rdTypeDECIMAL, std::string(100, '1')); });
}

}  // namespace
}  // namespace velmoria::test
