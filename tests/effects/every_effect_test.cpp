// SPDX-License-Identifier: MIT
// What holds for every effect of the list, whatever it shows.
#include <gtest/gtest.h>

#include <map>

#include "effects/option_ends.h"

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

TEST(EveryEffect, TakesTheEndsOfItsOptions) {
  for (const EffectDescriptor* effect : Effects())
    EXPECT_EQ(FirstBadEnd(*effect, FewFrames(effect->name)), "") << effect->name;
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
    const Built built = BuildWith(name, {{"52", ""}});
    EXPECT_EQ(built.frames.empty(), name != "Pinch" && name != "Ripple") << name;
    EXPECT_TRUE(SampleWith(name, {{"52", ""}}).frames.empty()) << name;
  }
}

}  // namespace
}  // namespace glyphmotion::test
