#include <cstdio>
#include <filesystem>
#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace velmoria::test {

namespace {

// What examples/orders prints, but for what no two runs have in common: the folder, the time of day and how long
// something took. Neither is the line of a source file part of the story.

std::string Example() { return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "orders").string(); }

/// What the program says until it ends, on both its ways out, and how it ended.
std::string Output(const std::string& command, int& status) {
  std::string text;
  FILE* output = popen((command + " 2>&1").c_str(), "r");
  for (int byte = fgetc(output); byte != EOF; byte = fgetc(output)) text += static_cast<char>(byte);
  status = pclose(output);
  return text;
}

std::string Masked(std::string text, const std::string& folder) {
  if (const auto found = text.find(folder); found != std::string::npos) text.replace(found, folder.size(), "FOLDER");
  text = std::regex_replace(text, std::regex("[0-9]+/[0-9]+/[0-9]+ [0-9]+:[0-9]+:[0-9]+ [AP]M"), "NOW");
  text = std::regex_replace(text, std::regex("(\\d+ minutes? )?\\b\\d+ seconds?"), "N SECONDS");
  return std::regex_replace(text, std::regex("at Line: \\d+"), "at Line: N");
}

TEST(OrdersExampleTest, TellsItsStoryToTheEnd) {
  if (!std::filesystem::exists(Example())) GTEST_SKIP() << "Does not apply: the examples are not built";
  const TemporaryFolder folder;
  int status = -1;
  const std::string told = Output("'" + Example() + "' '" + folder.Path() + "'", status);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Masked(told, folder.Path()), ReadText(VELMORIA_TESTS_DIR "/golden/orders_example.txt"));
}

}  // namespace

}  // namespace velmoria::test
