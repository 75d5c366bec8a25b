#include "velmoria/platform/odbc/passwords.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velmoria::test {
namespace {

TEST(PasswordsTest, ValuesOfPasswordKeysAreHiddenInEveryForm) {
  const std::vector<std::pair<std::string, std::string>> texts = {
      {"PWD=secret", "PWD=***"},
      {"DSN=x;pwd=se cret;UID=u", "DSN=x;pwd=***;UID=u"},
      {"UID=u;PWD={a;b}}c};DSN=x", "UID=u;PWD=***;DSN=x"},
      {"Password = secret", "Password =***"},
      {"PWD= {a;b};UID=u", "PWD=***;UID=u"},
      {"PWD={open", "PWD=***"},
      {"PWD={doubled}}", "PWD=***"},
      {"PWD=", "PWD=***"},
      {"PWD=a=b;UID=u", "PWD=***;UID=u"},
      {"SSLKeyPassword=secret;NewPwd=other;", "SSLKeyPassword=***;NewPwd=***;"},
      {"PQOPT={sslmode=require password=secret}", "PQOPT={sslmode=require password=***"},
  };
  for (const auto& [text, shown] : texts) EXPECT_EQ(odbc::WithoutPasswords(text), shown);
}

TEST(PasswordsTest, TextsWithoutPasswordsStayAsTheyAre) {
  for (const std::string text : {"", "DSN name;x", "no password here", "Driver={A;B};UID=a;", "PWDX=shown;=;", "="}) {
    EXPECT_EQ(odbc::WithoutPasswords(text), text);
  }
}

}  // namespace
}  // namespace velmoria::test
