// SPDX-License-Identifier: MIT
// Tries the plug-in library as a stranger would: loads it, runs its dialog with a thread in the place of the person,
// and checks what arrives.
//
//   test_plugin LIBRARY [options of GoogleTest]
//   test_plugin LIBRARY show [skin] [old] [refuse]  runs the dialog for a person, with a host that wishes for the skin,
//                                                   is too old, or refuses what is built
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>

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

int Show(std::span<char* const> wishes) {
  const auto wished = [&](std::string_view word) {
    return std::find(wishes.begin(), wishes.end(), word) != wishes.end();
  };
  SetProcessDPIAware();
  HostCallTable table = TableOf(kBothFormats);
  table.skinSwitch = wished("skin");
  if (wished("old")) table.version = 0x0FFF;
  host.refuseTask = wished("refuse");
  host.instead = [](void*, std::uint32_t operation, std::uint64_t, std::uint64_t) -> std::optional<std::uint64_t> {
    if (operation != HostOpIsRegistered) return std::nullopt;
    return 1;
  };
  return DoBuild(nullptr, &table) == 1 ? 0 : 1;
}

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
    return Show({arguments + 3, static_cast<std::size_t>(count) - 3});
  }
  testing::UnitTest::GetInstance()->listeners().Append(new FreshStart);
  const int result = RUN_ALL_TESTS();
  const std::string name = LibraryPath().substr(LibraryPath().find_last_of("\\/") + 1);
  if (FreeLibrary(Library()) && !GetModuleHandleA(name.c_str())) return result;
  std::printf("The library stays when it is let go.\n");
  return 1;
}
