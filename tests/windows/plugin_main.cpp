// SPDX-License-Identifier: MIT
// Tries the plug-in library as a stranger would: loads it, runs its dialog with a thread in the place of the person,
// and checks what arrives.
//
//   test_plugin LIBRARY [options of GoogleTest]
//   test_plugin LIBRARY show                      runs the dialog for a person
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "plugin_host.h"

namespace glyphmotion::test {
namespace {

// Every test begins with a host that has seen nothing and a machine that remembers nothing.
struct FreshStart : testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    host = {};
    ForgetSettings();
  }
};

}  // namespace
}  // namespace glyphmotion::test

int main(int count, char** arguments) {
  using namespace glyphmotion::test;
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  testing::InitGoogleTest(&count, arguments);
  if (count > 1) SetLibraryPath(arguments[1]);
  if (!Library()) {
    std::printf("%s cannot be loaded.\n", LibraryPath().c_str());
    return 2;
  }
  if (count > 2 && std::strcmp(arguments[2], "show") == 0) {
    const HostCallTable table = TableOf(kBothFormats);
    return DoBuild(nullptr, &table) == 1 ? 0 : 1;
  }
  testing::UnitTest::GetInstance()->listeners().Append(new FreshStart);
  const int result = RUN_ALL_TESTS();
  const std::string name = LibraryPath().substr(LibraryPath().find_last_of("\\/") + 1);
  if (FreeLibrary(Library()) && !GetModuleHandleA(name.c_str())) return result;
  std::printf("The library stays when it is let go.\n");
  return 1;
}
