#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "velmoria/platform/components/components.h"
#include "velmoria/platform/components/library_components_impl.h"
#include "velmoria/platform/components/offered_components_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {
namespace {

using test::TemporaryFolder;

// The libraries are built beside the test program, in a folder where the system does not look.
std::filesystem::path Built() { return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "components"; }

// A component that no other test knows, in a folder where libraries are looked for: a library stays loaded once it is.
class LibraryComponentsTest : public testing::Test {
 public:
  LibraryComponentsTest() : component_("Component" + std::to_string(++last_)) { Components::AddFolder(folder_.Path()); }
  ~LibraryComponentsTest() override { Components::Unregister(component_ + ".Bolt"); }

 protected:
  std::string File() const { return "lib" + component_ + ".so"; }
  void Put(const std::string& library) { std::filesystem::copy_file(Built() / library, folder_.Path(File())); }
  Ref<Object> Create(const std::string& className) { return LibraryComponents().Create(component_ + "." + className); }
  int NumberOf(const std::string& className) {
    try {
      Create(className);
    } catch (const Error& error) { return error.Number(); }
    return 0;
  }

  static inline int last_ = 0;
  std::string component_;
  TemporaryFolder folder_;
};

class OwnBolt : public Object {};

TEST_F(LibraryComponentsTest, ClassOfALibraryInAFolderIsMadeByItsName) {
  Put("libParts.so");
  EXPECT_EQ(Create("Bolt")->ReportedType(), "Bolt");
  EXPECT_EQ(Create("Nut")->ReportedType(), "Nut");
  EXPECT_NE(Create("Nut"), Create("Nut"));
}

TEST_F(LibraryComponentsTest, NamesAreComparedWithoutRegardToCase) {
  Put("libParts.so");
  EXPECT_EQ(LibraryComponents().Create(FoldCase(component_) + ".bolt")->ReportedType(), "Bolt");
  EXPECT_EQ(Create("NUT")->ReportedType(), "Nut");
}

TEST_F(LibraryComponentsTest, TheComponentIsAllBeforeTheLastDot) {
  component_ += ".Store";
  Put("libParts.so");
  EXPECT_EQ(Create("Bolt")->ReportedType(), "Bolt");
}

TEST_F(LibraryComponentsTest, TheFirstFolderThatHasTheLibraryCounts) {
  const TemporaryFolder later;
  Components::AddFolder(later.Path());
  Put("libParts.so");
  test::WriteText(later.Path(File()), "no library");
  EXPECT_EQ(Create("Bolt")->ReportedType(), "Bolt");
}

TEST_F(LibraryComponentsTest, ALibraryThatTheSystemKnowsNeedsNoFolder) {
  ASSERT_NE(::dlopen((Built() / "libParts.so").c_str(), RTLD_NOW | RTLD_LOCAL), nullptr) << ::dlerror();
  EXPECT_EQ(LibraryComponents().Create("Parts.Bolt")->ReportedType(), "Bolt");
}

TEST_F(LibraryComponentsTest, ALibraryThatTheSystemKnowsMayBeNamedInLowerCase) {
  ASSERT_NE(::dlopen((Built() / "libsmall.so").c_str(), RTLD_NOW | RTLD_LOCAL), nullptr) << ::dlerror();
  EXPECT_EQ(LibraryComponents().Create("Small.Bolt")->ReportedType(), "Bolt");
}

TEST_F(LibraryComponentsTest, UnknownClassesOfALibraryGiveNone) {
  Put("libParts.so");
  EXPECT_EQ(Create("Screw"), nullptr);
  EXPECT_EQ(Create(""), nullptr);
}

TEST_F(LibraryComponentsTest, UnknownComponentsAndNamesWithoutOneGiveNone) {
  for (const char* name : {"Absent.Bolt", "Bolt", "", ".", ".Bolt"}) {
    EXPECT_EQ(LibraryComponents().Create(name), nullptr) << name;
  }
}

TEST_F(LibraryComponentsTest, ANameNeverLeadsOutOfTheFolders) {
  Put("libParts.so");
  std::filesystem::create_directory(folder_.Path("libx"));
  const std::string zero(1, '\0');
  for (const std::string& component : {"x/../" + component_, folder_.Path(component_), component_ + ".so" + zero}) {
    EXPECT_EQ(LibraryComponents().Create(component + ".Bolt"), nullptr) << component;
  }
}

TEST_F(LibraryComponentsTest, ALibraryThatAppearsLaterIsFound) {
  EXPECT_EQ(Create("Bolt"), nullptr);
  Put("libParts.so");
  EXPECT_EQ(Create("Bolt")->ReportedType(), "Bolt");
}

TEST_F(LibraryComponentsTest, ALibraryWithoutOffersHasNone) {
  Put("libHollow.so");
  EXPECT_EQ(Create("Bolt"), nullptr);
  EXPECT_EQ(Create("Bolt"), nullptr);
}

TEST_F(LibraryComponentsTest, FailingOffersReachWhoeverAsksAndAreTriedAgain) {
  Put("libFaulty.so");
  EXPECT_EQ(NumberOf("Thing"), 57);
  EXPECT_NE(Create("Thing"), nullptr);
}

TEST_F(LibraryComponentsTest, AFileThatIsNoLibraryRaises429WithTheLoadersText) {
  test::WriteText(folder_.Path(File()), "no library");
  try {
    Create("Bolt");
    ADD_FAILURE() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 429);
    EXPECT_NE(error.Description().find(File()), std::string::npos) << error.Description();
  }
}

TEST_F(LibraryComponentsTest, FailureOfTheFactoryPasses) {
  Put("libParts.so");
  EXPECT_EQ(NumberOf("Failure"), 11);
  EXPECT_EQ(Create("Nothing"), nullptr);
}

TEST_F(LibraryComponentsTest, AFolderThatDoesNotExistHoldsNothing) {
  Components::AddFolder(folder_.Path("absent"));
  EXPECT_EQ(Create("Bolt"), nullptr);
}

TEST_F(LibraryComponentsTest, AFolderWithoutNameIsRefused) {
  try {
    Components::AddFolder("");
    ADD_FAILURE() << "not refused";
  } catch (const Error& error) { EXPECT_EQ(error.Number(), 5); }
}

TEST_F(LibraryComponentsTest, WhatTheHostRegistersComesBeforeTheLibrary) {
  Put("libParts.so");
  Components::Register<OwnBolt>(component_ + ".Bolt");
  EXPECT_NE(dynamic_cast<OwnBolt*>(Components::Create(component_ + ".Bolt").get()), nullptr);
  EXPECT_EQ(Components::Create(component_ + ".Nut")->ReportedType(), "Nut");
  Components::Unregister(component_ + ".Bolt");
  EXPECT_EQ(OfferedComponents().Create(component_ + ".Bolt")->ReportedType(), "Bolt");
}

TEST_F(LibraryComponentsTest, ManyThreadsMayAskForALibraryAtOnce) {
  Put("libParts.so");
  std::vector<std::string> types(4);
  std::vector<std::thread> threads;
  for (std::string& type : types) threads.emplace_back([&] { type = Create("Bolt")->ReportedType(); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(types, std::vector<std::string>(4, "Bolt"));
}

}  // namespace
}  // namespace velmoria
