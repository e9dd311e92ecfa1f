// Every test binary runs with a home folder of its own: the program deletes caches below HOME.
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  std::string home = (std::filesystem::temp_directory_path() / "halyard-test-home-XXXXXX").string();
  if (mkdtemp(home.data()) == nullptr || setenv("HOME", home.c_str(), 1) != 0) {
    std::cerr << "cannot make a temporary home folder\n";
    return 1;
  }
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  std::error_code ignored;
  std::filesystem::remove_all(home, ignored);
  return result;
}
