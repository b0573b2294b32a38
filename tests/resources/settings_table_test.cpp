// SPDX-License-Identifier: MIT
#include "resources/settings_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <map>
#include <set>
#include <string>

namespace glyphmotion {
namespace {

TEST(SettingsTable, KeysAreUniqueAndEachHasOneKind) {
  std::set<std::string> keys;
  std::map<std::uint32_t, int> numbers;
  for (const SettingsRow& row : SettingsTable()) {
    EXPECT_TRUE(keys.insert(row.key).second) << row.key;
    EXPECT_EQ(std::popcount(row.flags & (kSettingSwitch | kSettingText | kSettingNumber)), 1) << row.key;
    EXPECT_TRUE(!(row.flags & kSettingSwitch) || row.defaultNumber <= 1) << row.key;
    if (row.number) ++numbers[row.number];
  }
  const auto ofEffects =
      std::count_if(keys.begin(), keys.end(), [](const auto& key) { return key.starts_with("Style"); });
  EXPECT_EQ(keys.size() - static_cast<std::size_t>(ofEffects), 44u) << "the effects' own are in their panels";
  EXPECT_EQ(numbers, (std::map<std::uint32_t, int>{{100, 1}, {101, 1}, {102, 1}, {103, 1}}));
}

TEST(SettingsTable, SpecialRowsHaveTheirFlags) {
  std::map<std::string, std::uint32_t> special;
  for (const SettingsRow& row : SettingsTable()) {
    if (row.flags >= kSettingNeverRead) special[row.key] = row.flags;
  }
  EXPECT_EQ(special, (std::map<std::string, std::uint32_t>{
                         {"PatchLevel", kSettingNumber | kSettingNeverRead},
                         {"VersionNumber", kSettingNumber | kSettingNeverRead},
                         {"RegistrationName", kSettingText | kSettingRegistration},
                         {"RegistrationCode", kSettingText | kSettingRegistration},
                     }));
}

}  // namespace
}  // namespace glyphmotion
