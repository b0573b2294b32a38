// SPDX-License-Identifier: MIT
// What holds for every effect of the list, whatever it shows.
#include <gtest/gtest.h>

#include <map>

#include "checksums/checksum_list.h"
#include "effects/effect_checks.h"

namespace glyphmotion::test {
namespace {

// Few frames and little to draw, but every stage of the run.
Settings FewFrames(const std::string& effect) {
  static const std::map<std::string, Settings> special = {
      {"Elastic", {{"@frames", "4"}, {"575", "gradient:#ff0000-#0000ff"}}},
      {"Event Horizon", {{"@frames", "8"}}},
      {"Gumdrops", {{"@frames", "3"}, {"@density", "6"}}},
      {"Iris", {{"@frames", "10"}}},
      {"Background Iris", {{"@frames", "10"}}},
      {"Nebula", {{"@frames", "3"}, {"@size", "8"}}},
      {"Pinch", {{"@frames", "6"}, {"221", "gradient:#ff0000-#0000ff"}}},
      {"Ripple", {{"@frames", "6"}, {"135", "gradient:#ff0000-#0000ff"}}},
      {"Radar", {{"@increment", "33"}}},
      {"Simple", {{"@frames", "2"}, {"MainPadding", "2"}}}};
  const auto found = special.find(effect);
  return found == special.end() ? Settings{{"@frames", "4"}} : found->second;
}

// Each end of each option, in palette and alpha runs, alternating, and in letters large enough to show it; options.txt
// keeps the frames' checksums.
TEST(EveryEffect, GivesTheBytesOfTheListAtTheEndsOfItsOptions) {
  std::vector<std::string> rows;
  for (const EffectDescriptor* effect : Effects()) {
    bool alpha = false;
    for (const Job::Setting& end : OptionEnds(*effect->panel)) {
      Settings settings = FewFrames(effect->name);
      settings.insert(settings.end(), {{"MainFontSize", "30"}, {"52", "M8g"}, end});
      if ((alpha = !alpha)) settings.emplace_back("62", "1");
      const Built built = BuildWith(effect->name, settings);
      const std::string row = std::string(effect->name) + "," + end.first + "=" + end.second;
      EXPECT_EQ(built.result.status, RenderStatus::Done) << row << ": " << built.result.message;
      EXPECT_EQ(built.result.blocks + built.result.locks, 0u) << row;
      EXPECT_FALSE(built.frames.empty()) << row;
      testing::Hash hash;
      for (const BuiltFrame& frame : built.frames) {
        hash.Add({frame.delay, frame.transparentIndex, frame.standAlone});
        hash.Add(frame.dib);
      }
      rows.push_back(row + "," + hash.Text());
    }
  }
  testing::ExpectList("options.txt", rows);
}

TEST(EveryEffect, AnyAllocationMayFailAndNothingLeaks) {
  for (const EffectDescriptor* effect : Effects()) {
    const Job job = SmallJob(effect->name, FewFrames(effect->name));
    EXPECT_EQ(FirstBadFailure(job, 3, 600), 0u) << effect->name;
  }
  for (const char* effect : {"fuse", "singularity"})
    EXPECT_EQ(FirstBadFailure(SmallJob(effect, {{"@frames", "4"}}), 1, 600), 0u) << effect;
}

// The passing bumps move the blank that every text ends with.
TEST(EveryEffect, NeedsAText) {
  for (const EffectDescriptor* effect : Effects()) {
    const std::string name = effect->name;
    Job job = SmallJob(name, {{"52", ""}});
    job.action = Job::Action::Test;  // Build is disabled
    EXPECT_EQ(RunJob(job).frames.empty(), name != "Pinch" && name != "Ripple") << name;
    EXPECT_TRUE(SampleWith(name, {{"52", ""}}).frames.empty()) << name;
    job.action = Job::Action::Build;
    EXPECT_EQ(RunJob(job).result.status, RenderStatus::BadJob) << name;
  }
}

}  // namespace
}  // namespace glyphmotion::test
