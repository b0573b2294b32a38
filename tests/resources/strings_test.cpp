// SPDX-License-Identifier: MIT
#include "resources/strings.h"

#include <gtest/gtest.h>

namespace glyphmotion {
namespace {

TEST(Strings, NumbersThatOtherProgramsKnowStand) {
  EXPECT_EQ(LoadText(6), "Memory error");
  EXPECT_EQ(LoadText(1600), "Black and white");
  EXPECT_EQ(LoadText(1604), "128-color orthogonal");
  EXPECT_EQ(LoadText(1608), "256 gray levels");
}

TEST(Strings, AMissingNumberSaysSo) {
  for (int number : {0, 5, 1599, 1610, -1, INT32_MAX}) {
    EXPECT_EQ(LoadText(number), "String table error - this application may be damaged") << number;
  }
}

TEST(Strings, ArgumentsReplaceTheirMarkOnceEvenWhenTheyHoldIt) {
  EXPECT_EQ(FormatText(kTextAskDeleteTiles, "a%sb").substr(0, 44), "Do you want to delete the a%sb matrix group?");
  EXPECT_EQ(FormatText(kTextMemoryError, "x"), "Memory error");
}

}  // namespace
}  // namespace glyphmotion
