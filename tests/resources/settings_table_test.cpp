// SPDX-License-Identifier: MIT
#include "resources/settings_table.h"

#include <gtest/gtest.h>

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
  EXPECT_EQ(keys.size(), 354u);
  EXPECT_EQ(numbers, (std::map<std::uint32_t, int>{{100, 1}, {101, 1}, {102, 1}, {103, 1}}));
}

TEST(SettingsTable, EveryEffectHasItsKeys) {
  constexpr int kCounts[] = {12, 5, 23, 5, 14, 18, 15, 24, 13, 12, 13, 13, 11, 23, 13, 15, 12, 11, 22, 24, 13};
  std::map<std::string, int> counts;
  for (const SettingsRow& row : SettingsTable()) {
    const std::string key = row.key;
    if (key.starts_with("Style")) ++counts[key.substr(5, 3)];
  }
  ASSERT_EQ(counts.size(), std::size(kCounts));
  int stem = 0;
  for (const auto& [name, count] : counts) EXPECT_EQ(count, kCounts[stem++]) << name;
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
