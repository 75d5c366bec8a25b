#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/processes.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/platform/posix/file_settings_store.h"

namespace velmoria::test {
namespace {

constexpr int kKeys = 60;

class SharedSettingsTest : public testing::Test {
 protected:
  // Each key once, with a value that tells writer and key and takes some room.
  void WriteKeys(int writer) const {
    FileSettingsStore store(folder_.Path());
    for (int key = 0; key < kKeys; ++key) {
      store.SaveSetting("App", SectionOf(writer), std::to_string(key), ValueOf(writer, key));
    }
  }
  void ExpectAllKeys(int writers) const {
    FileSettingsStore store(folder_.Path());
    for (int writer = 0; writer < writers; ++writer) {
      for (int key = 0; key < kKeys; ++key) {
        EXPECT_EQ(store.GetSetting("App", SectionOf(writer), std::to_string(key), ""), ValueOf(writer, key));
      }
    }
    EXPECT_EQ(store.TakeDamage("App"), "");
  }
  static std::string SectionOf(int writer) { return "Writer " + std::to_string(writer); }
  static std::string ValueOf(int writer, int key) {
    return std::to_string(writer) + "\n" + std::string(200, static_cast<char>('a' + key % 26)) + "=" +
           std::to_string(key);
  }

  static SettingsStore::Entries Generation(int number) {
    SettingsStore::Entries entries;
    for (int key = 0; key < kKeys; ++key) {
      entries.emplace_back(std::to_string(key), std::string(static_cast<std::size_t>(number % 50), 'x'));
    }
    return entries;
  }
  void WriteGenerations(int count) const {
    FileSettingsStore store(folder_.Path());
    for (int number = 1; number <= count; ++number) store.ReplaceSection("App", "Generation", Generation(number));
  }
  // Changes the values of all keys, and leaves the keys.
  void SaveGenerations(int count) const {
    FileSettingsStore store(folder_.Path());
    for (int number = 1; number <= count; ++number) store.SaveSettings("App", "Generation", Generation(number));
  }
  // All values of the file as it lies there now are of one generation.
  void ExpectOneGeneration() const {
    const SettingsText text(ReadText(folder_.Path("App.settings")));
    ASSERT_TRUE(text.DamagedLines().empty());
    const auto* first = text.Find("Generation", "0");
    for (int key = 0; first && key < kKeys; ++key) {
      const auto* value = text.Find("Generation", std::to_string(key));
      ASSERT_TRUE(value);
      ASSERT_EQ(*value, *first);
    }
  }

  TemporaryFolder folder_;
};

TEST_F(SharedSettingsTest, WritersInSeveralProcessesLoseNothing) {
  const auto one = StartProcess([this] { WriteKeys(0); });
  const auto two = StartProcess([this] { WriteKeys(1); });
  WriteKeys(2);
  EXPECT_TRUE(EndsWell(one));
  EXPECT_TRUE(EndsWell(two));
  ExpectAllKeys(3);
}

TEST_F(SharedSettingsTest, WritersInSeveralThreadsLoseNothing) {
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 4; ++writer) writers.emplace_back([this, writer] { WriteKeys(writer); });
  for (auto& writer : writers) writer.join();
  ExpectAllKeys(4);
}

TEST_F(SharedSettingsTest, ReaderNeverSeesHalfAChangeOfAnotherProcess) {
  const auto writer = StartProcess([this] { WriteGenerations(100); });
  int status = 0;
  while (waitpid(writer, &status, WNOHANG) == 0) ExpectOneGeneration();
  EXPECT_EQ(status, 0);
  ExpectOneGeneration();
}

TEST_F(SharedSettingsTest, ReaderNeverSeesSomeOfTheEntriesThatSeveralProcessesSave) {
  const auto one = StartProcess([this] { SaveGenerations(49); });
  const auto two = StartProcess([this] { SaveGenerations(99); });
  int status = 0;
  while (waitpid(one, &status, WNOHANG) == 0) ExpectOneGeneration();
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(EndsWell(two));
  ExpectOneGeneration();
}

TEST_F(SharedSettingsTest, ReaderNeverSeesHalfAChangeOfAnotherThread) {
  std::atomic<bool> isOver = false;
  std::thread writer([&] {
    WriteGenerations(100);
    isOver = true;
  });
  while (!isOver) ExpectOneGeneration();
  writer.join();
  ExpectOneGeneration();
}

TEST_F(SharedSettingsTest, DamagedFileIsKeptOnceWhenSeveralWritersMeetIt) {
  WriteText(folder_.Path("App.settings"), "garbage\n");
  const auto one = StartProcess([this] { WriteKeys(0); });
  const auto two = StartProcess([this] { WriteKeys(1); });
  EXPECT_TRUE(EndsWell(one));
  EXPECT_TRUE(EndsWell(two));
  ExpectAllKeys(2);
  EXPECT_EQ(ReadText(folder_.Path("App.settings.damaged")), "garbage\n");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("App.settings.damaged-2")));
}

// The present state of a file is known by what stays its own while it is held.
TEST_F(SharedSettingsTest, ReaderSeesEachOfManyQuickChanges) {
  FileSettingsStore reader(folder_.Path());
  FileSettingsStore writer(folder_.Path());
  for (int number = 100; number < 400; ++number) {
    writer.SaveSetting("App", "S", "K", std::to_string(number));
    ASSERT_EQ(reader.GetSetting("App", "S", "K", ""), std::to_string(number));
  }
}

}  // namespace
}  // namespace velmoria::test
