#include "velmoria/platform/posix/process_host_application.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <utility>

#include "velmoria/platform/posix/user_account.h"

namespace velmoria {

namespace {

struct Description {
  std::string Name;
  std::int32_t Major = 0;
  std::int32_t Minor = 0;
  std::int32_t Revision = 0;
};

struct Described {
  std::mutex Guard;
  Description Host;
};

Described& TheHost() {
  static Described only;
  return only;
}

Description Present() {
  auto& host = TheHost();
  const std::scoped_lock lock(host.Guard);
  return host.Host;
}

}  // namespace

void ProcessHostApplication::Describe(std::string name, std::int32_t major, std::int32_t minor, std::int32_t revision) {
  auto& host = TheHost();
  const std::scoped_lock lock(host.Guard);
  host.Host = {std::move(name), major, minor, revision};
}

std::string ProcessHostApplication::Name() {
  auto name = Present().Name;
  if (!name.empty()) return name;
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).filename().string();
}

std::int32_t ProcessHostApplication::Major() { return Present().Major; }

std::int32_t ProcessHostApplication::Minor() { return Present().Minor; }

std::int32_t ProcessHostApplication::Revision() { return Present().Revision; }

std::string ProcessHostApplication::UserName() {
  if (const auto user = EffectiveUser()) return user->Name;
  const char* name = std::getenv("USER");
  return name ? name : "";
}

}  // namespace velmoria
