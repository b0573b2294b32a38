// SPDX-License-Identifier: MIT
#include "resources/settings_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <set>
#include <string>

namespace glyphmotion {
namespace {

TEST(SettingsTable, KeysAreUniqueAndEachHasOneKind) {
  std::set<std::string> keys;
  for (const SettingsRow& row : SettingsTable()) {
    EXPECT_TRUE(keys.insert(row.key).second) << row.key;
    EXPECT_EQ(std::popcount(row.flags & (kSettingSwitch | kSettingText | kSettingNumber)), 1) << row.key;
    EXPECT_TRUE(!(row.flags & kSettingSwitch) || row.defaultNumber <= 1) << row.key;
  }
  const auto ofEffects =
      std::count_if(keys.begin(), keys.end(), [](const auto& key) { return key.starts_with("Style"); });
  EXPECT_EQ(keys.size() - static_cast<std::size_t>(ofEffects), 44u) << "the effects' own are in their panels";
}

}  // namespace
}  // namespace glyphmotion
