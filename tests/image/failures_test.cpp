// SPDX-License-Identifier: MIT
// Operations on images without memory, and with what is not an image that they take.
#include <gtest/gtest.h>

#include "every_allocation.h"
#include "image/best_palette.h"
#include "image/filters.h"
#include "image/quantise.h"
#include "image/remap.h"
#include "random_images.h"

namespace glyphmotion {
namespace {

bool Quantise(const FrameList& frames) {
  int count = 256;
  Palette palette;
  return QuantiseFrames(frames, count, palette);
}
bool FindBestPalette(const FrameList& frames) {
  int count = 256;
  Palette palette;
  return BestPalette(frames, {}, count, palette);
}

TEST(ImageFailures, AnyAllocationMayFail) {
  Dice dice(4);
  for (const int bits : {4, 8, 24, 32}) {
    const PackedDib picture = RandomImage(dice, 50, 50, bits);
    ExpectEachAllocationMayFail([&] { return static_cast<bool>(Blur(picture, 9)); });
    ExpectEachAllocationMayFail([&] { return static_cast<bool>(ResampleToSize(picture, 70, 30)); });
  }
  const PackedDib small = RandomImage(dice, 9, 3, 24);
  for (const int depth : {1, 8}) {
    ExpectEachAllocationMayFail([&] {
      ColourMatcher matcher(GreyRamp(), depth, 256, {});
      return static_cast<bool>(DitherImage(small, matcher));
    });
    ExpectEachAllocationMayFail([&] {
      ColourMatcher matcher(GreyRamp(), depth, 256, {});
      return static_cast<bool>(MaskReplace(RemapImage(small, matcher), small, 0, 1));
    });
  }
  TestFrames frames;
  for (int i = 0; i < 2; ++i) frames.Append(RandomImage(dice, 400, 250, 24, 256, 1));
  ExpectEachAllocationMayFail([&] { return Quantise(frames.list); }, 3);
  ExpectEachAllocationMayFail([&] { return FindBestPalette(frames.list); });
}

TEST(ImageFailures, OtherPicturesGiveNothing) {
  Dice dice(3);
  const PackedDib bit = RandomImage(dice, 5, 5, 1), alpha = RandomImage(dice, 5, 5, 32),
                  picture = RandomImage(dice, 5, 5, 24);
  ColourMatcher good(GreyRamp(), 8, 256, {}), one(GreyRamp(), 1, 256, {}), deep(GreyRamp(), 24, 256, {}),
      flat(GreyRamp(), 0, 256, {});
  for (ColourMatcher* matcher : {&good, &one}) {
    EXPECT_FALSE(DitherImage(bit, *matcher) || DitherImage(alpha, *matcher) || DitherImage({}, *matcher));
    EXPECT_FALSE(RemapImage(alpha, *matcher) || RemapImage({}, *matcher));
  }
  for (ColourMatcher* matcher : {&deep, &flat})
    EXPECT_FALSE(DitherImage(picture, *matcher) || RemapImage(picture, *matcher));
  EXPECT_FALSE(MaskReplace({}, picture, 0, 0) || MaskReplace(picture, {}, 0, 0));
  TestFrames none, wrongDepth, lost;
  wrongDepth.Append(BlankDib(3, 3, nullptr, 32));
  lost.Append(SolidDib(3, 3, 0));
  lost.Append({});
  for (const TestFrames* frames : {&none, &wrongDepth, &lost})
    EXPECT_FALSE(Quantise(frames->list) || FindBestPalette(frames->list));
}

}  // namespace
}  // namespace glyphmotion
