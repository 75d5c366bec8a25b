// A line-of-business program: it opens a shop's database, reads orders and what hangs on them, changes them, makes and
// deletes some, and shows what a refusal looks like.
//
// make_database.cpp makes the data, describe.cpp tells the framework what it means, order.h has the business classes of
// the shop; reading.cpp, writing.cpp and failing.cpp are the chapters, each a few routines to read from top to bottom.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "chapters.h"
#include "describe.h"
#include "make_database.h"
#include "report.h"

int main(int argumentCount, char** arguments) try {
  const std::filesystem::path folder = argumentCount > 1 ? arguments[1] : "orders-demo";
  std::filesystem::create_directories(folder);
  const std::string file = (std::filesystem::absolute(folder) / "shop.db").string();
  std::filesystem::remove(file);
  // The library keeps its settings per user; a demonstration keeps them in its folder.
  setenv("VELMORIA_SETTINGS_DIR", std::filesystem::absolute(folder).c_str(), 1);

  MakeDatabase(file, 20261121);
  DescribeBusiness(file);
  Row("database", file);
  ShowOneOrder();
  FollowRelationships();
  WalkAllOrders();
  ChangeAndUpdate();
  TakeAnOrder();
  DropTheOrder();
  CloseAnAccount();
  ShowFailures();
  std::printf("\nAll of it held.\n");
  return EXIT_SUCCESS;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "\n%s\n", failure.what());
  return EXIT_FAILURE;
}
