// SPDX-License-Identifier: MIT
#include "controls/variables.h"

#include <gtest/gtest.h>

namespace glyphmotion {
namespace {

TEST(Variables, EveryKeyFindsItsOwnVariable) {
  for (std::size_t i = 0; i < SettingsTable().size(); ++i) {
    const std::string key = SettingsTable()[i].key;
    ASSERT_EQ(FindVariable(key), &VariableAt(i)) << key;
    EXPECT_EQ(VariableAt(i).row, &SettingsTable()[i]);
  }
}

TEST(Variables, OnlyWholeKeysInTheirCaseAreFound) {
  for (const char* key : {"", "Main", "MainTex", "MainText ", "mainText", "Style000", "Style021Soft", "~", " "}) {
    EXPECT_EQ(FindVariable(key), nullptr) << key;
  }
  EXPECT_EQ(NumberVariable("MainTex"), 0u);
  EXPECT_EQ(TextVariable("MainTex"), "");
}

TEST(Variables, AResetGivesBackTheDefaultsAndKeepsThePlaces) {
  Variable* const size = FindVariable("MainFontSize");
  Variable* const text = FindVariable("MainText");
  size->number = 7;
  text->text = "changed";
  EXPECT_EQ(NumberVariable("MainFontSize"), 7u);
  EXPECT_EQ(TextVariable("MainText"), "changed");
  ResetVariables();
  EXPECT_EQ(FindVariable("MainFontSize"), size);
  EXPECT_EQ(size->number, 56u);
  EXPECT_EQ(text->text, "This space for rent...");
  EXPECT_EQ(NumberVariable("Style018BeamColor4"), 16711935u);
}

}  // namespace
}  // namespace glyphmotion
