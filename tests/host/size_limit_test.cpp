// SPDX-License-Identifier: MIT
#include "host/render/size_limit.h"

#include <gtest/gtest.h>

#include <numeric>

#include "host/decoders.h"
#include "host/encoders/half_rate.h"

namespace glyphmotion {
namespace {

Job FireJob() {
  Job job;
  job.text = "Hello";
  job.effect = "vortex";
  job.fill = "fountain:Fire";
  job.background = "fountain:Ocean";
  job.palette = Job::Palette::Best;
  job.trueColourFormat = false;
  job.settings = {{"MainFontSize", "30"}, {"@frames", "15"}, {"MainDelay", "4"}};
  return job;
}

int Duration(const testing::DecodedGif& gif) { return std::accumulate(gif.delays.begin(), gif.delays.end(), 0); }

// Each limit takes a little less than the one before, and what was given up is said in the order of what is missed
// least.
TEST(SizeLimit, AFileThatFitsSaysWhatItGaveUp) {
  Job job = FireJob();
  job.maxBytes = 1 << 30;
  const FittedPictures whole = RenderWithin(job, {}, true);
  EXPECT_GT(whole.colours, 100);
  ASSERT_EQ(whole.trouble, "");
  EXPECT_TRUE(whole.result.notes.empty());
  const int duration = Duration(testing::DecodeGif(whole.bytes));
  const struct {
    int percent;
    std::size_t images;
    const char* says;
  } rows[] = {
      {99, 15, "lossy"}, {80, 15, "lossy"}, {60, 15, "colors"}, {25, 8, "every second frame"}, {8, 8, "colors"}};
  for (const auto& row : rows) {
    const std::size_t most = whole.bytes.size() * static_cast<std::size_t>(row.percent) / 100;
    job.maxBytes = most;
    const FittedPictures made = RenderWithin(job, {});
    ASSERT_EQ(made.trouble, "") << row.percent;
    EXPECT_LE(made.bytes.size(), most);
    const testing::DecodedGif gif = testing::DecodeGif(made.bytes);
    EXPECT_EQ(gif.screens.size(), row.images) << row.percent;
    EXPECT_EQ(Duration(gif), duration) << row.percent;
    ASSERT_EQ(made.result.notes.size(), 1u);
    EXPECT_NE(made.result.notes[0].find(row.says), std::string::npos) << made.result.notes[0];
  }
  job.maxBytes = 100;
  const FittedPictures none = RenderWithin(job, {});
  EXPECT_TRUE(none.bytes.empty());
  EXPECT_NE(none.trouble.find("no file of 100 bytes"), std::string::npos) << none.trouble;
  job.effect = "none";
  EXPECT_NE(RenderWithin(job, {}).trouble, "");
}

TEST(SizeLimit, HalfTheRateKeepsTheDurationAndTheFirstOfEachPair) {
  std::vector<std::array<int, 3>> got;
  Encoder all;
  all.add = [&](const Image& image) {
    got.push_back({image.number, image.delay, image.dib[0]});
    return std::string(image.dib[0] == 5 ? "stop" : "");
  };
  all.finish = [] { return std::string("done"); };
  const Encoder half = AtHalfRate(all);
  for (int i = 0; i < 5; ++i) {
    const std::uint8_t byte = static_cast<std::uint8_t>(i);
    Image image;
    image.dib = {&byte, 1};
    image.number = i;
    image.delay = i + 1;
    EXPECT_EQ(half.add(image), "");
  }
  EXPECT_EQ(half.finish(), "done");
  EXPECT_EQ(got, (std::vector<std::array<int, 3>>{{0, 3, 0}, {1, 7, 2}, {2, 5, 4}}));
}

}  // namespace
}  // namespace glyphmotion
