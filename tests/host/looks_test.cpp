// SPDX-License-Identifier: MIT
#include "host/options/looks.h"

#include <gtest/gtest.h>

#include "glyphmotion/render.h"
#include "host/host_helpers.h"
#include "host/program/command_line.h"

namespace glyphmotion {
namespace {

using Words = std::vector<std::string>;
using testing::TemporaryFolder;

Catalogue RealCatalogue() {
  Catalogue catalogue = LibraryCatalogue();
  catalogue.hasFont = [](const std::string& font) { return font[0] != '?'; };
  catalogue.readLook = ReadLook;
  return catalogue;
}

ParsedArguments Parse(const Words& words) { return ParseArguments(words, RealCatalogue()); }

std::string WriteLook(const TemporaryFolder& folder, const std::string& text) {
  const std::string path = folder / "a.toml";
  testing::WriteBytes(path, {text.begin(), text.end()});
  return path;
}

// All settings of a job in one line, and its materials.
std::string Summary(const Job& job) {
  std::string text = job.effect.value_or("-") + " " + job.fill + " " + job.shadow + " " + std::to_string(job.width);
  for (const auto& [key, value] : job.settings) text += " " + key + "=" + value;
  return text;
}

TEST(Looks, EachShippedOneHasASentenceAnEffectAndAPictureAndTakesEveryEffect) {
  const auto looks = Looks();
  EXPECT_GE(looks.size(), 24u);
  for (const auto& [name, sentence] : looks) {
    EXPECT_GT(sentence.size(), 10u) << name;
    const ParsedArguments parsed = Parse({"Hi", "--look", name, "--size", "20", "--sample", "-o", "a.png"});
    ASSERT_TRUE(parsed.arguments) << parsed.error;
    EXPECT_TRUE(parsed.arguments->job.effect && !parsed.arguments->job.fill.empty()) << name;
    EXPECT_EQ(parsed.arguments->notes, Words{}) << name;
    const RenderResult result = Render(parsed.arguments->job, {});
    EXPECT_EQ(result.status, RenderStatus::Done) << name << ": " << result.message;
    EXPECT_EQ(result.notes, Words{}) << name;
  }
  for (const std::string& effect : EffectNames()) {
    Job job = Parse({"Hi", "--look", "gold", "-e", effect, "--size", "20", "--sample", "-o", "a.png"}).arguments->job;
    EXPECT_EQ(Render(job, {}).message, "") << effect;
  }
}

TEST(Looks, LieBeneathTheOptionsOfTheCommandLine) {
  const TemporaryFolder folder;
  const std::string look =
      WriteLook(folder,
                "# Mine\neffect = 'vortex'\nfill = 'red'\nshadow = '#00f'\nsize = 30\nbold = true\n"
                "delay = '50ms'\nsoftness = 3\nframes = 9\nwidth = 200\nfont = ['?', 'Any']\n"
                "no-antialias = true\ndither = false\n[set]\n'@rotate' = 77\nMainPadding = 5\n");
  const auto job = [&](Words more) {
    more.insert(more.begin(), {"Hi", "-o", "a.gif", "--look", look});
    const ParsedArguments parsed = Parse(more);
    return parsed.arguments ? Summary(parsed.arguments->job) : parsed.error;
  };
  EXPECT_EQ(job({}),
            "vortex red #00f 200 MainFontName=Any @rotate=77 MainPadding=5 MainDelay=5 "
            "MainFontSize=30 MainFontBold=1 MainAntialias=0 @frames=9 @soft=3");
  EXPECT_EQ(job({"--fill", "blue", "--size", "40", "--no-bold", "--fps", "10", "--font", "Other", "--pad", "2", "--set",
                 "@rotate=80"}),
            "vortex blue #00f 200 MainFontName=Other @rotate=77 MainPadding=5 MainDelay=10 "
            "MainFontSize=40 MainPadding=2 MainFontBold=0 MainAntialias=0 @frames=9 @soft=3 @rotate=80");
  // What is another effect's own is left out.
  EXPECT_EQ(job({"-e", "pinch"}),
            "pinch red  200 MainFontName=Any MainPadding=5 MainDelay=5 MainFontSize=30 MainFontBold=1 MainAntialias=0");

  const std::string saved = folder / "b.toml";
  const Arguments first =
      *Parse({"--look", look, "--size", "41", "--set", "@rotate=80", "--dither=stable", "--save-look", saved})
           .arguments;
  EXPECT_EQ(first.job.action, Job::Action::None);
  const std::string text = LookText(first.look);
  testing::WriteBytes(saved, {text.begin(), text.end()});
  const Job again = Parse({"Hi", "-o", "a.gif", "--look", saved}).arguments->job;
  EXPECT_EQ(Summary(again),
            "vortex red #00f 200 MainFontName=Any @rotate=80 MainPadding=5 MainDelay=5 "
            "MainFontSize=41 MainFontBold=1 MainAntialias=0 @frames=9 @soft=3 MainDither=1");
  EXPECT_EQ(again.dithering, Job::Dithering::Stable);
}

TEST(Looks, MistakesAreNamedByFileLineAndKey) {
  const TemporaryFolder folder;
  const struct {
    const char* text;
    Words says;
  } cases[] = {
      {"fill = 'red", {"line 1"}},
      {"size = 30\nbackgrund = 'red'", {"line 2", "'backgrund'", "'background'"}},
      {"size = 300", {"line 1", "--size 300", "4 to 144"}},
      {"size = [30]", {"line 1", "'size' takes one value"}},
      {"size = 3.5", {"line 1", "'size'", "whole number"}},
      {"bold = 1", {"line 1", "'bold'", "true or false"}},
      {"\n\nfill = 'texture:Nope'", {"line 3", "fill", "Nope"}},
      {"fill = 'texture:Marbel'", {"line 1", "did you mean 'Marble'?"}},
      {"fill = 'tile:Brick'", {"line 1", "did you mean 'Bricks'?"}},
      {"fill = 'gradient:red-crimsn'", {"line 1", "did you mean 'crimson'?"}},
      {"shadow = 'redd'", {"line 1", "shadow", "did you mean 'red'?"}},
      {"outline = 'redd'", {"line 1", "--outline", "did you mean 'red'?"}},
      {"dither = 'wild'", {"line 1", "--dither", "stable or ordered"}},
      {"effect = 'swirl'", {"line 1", "swirl"}},
      {"fill = 'image:a.png'", {"line 1", "--fill", "file beside the look"}},
      {"output = 'a.gif'", {"line 1", "'output' cannot be part of a look"}},
      {"text-file = 'a'", {"line 1", "'text-file' cannot be part"}},
      {"host = 'both'", {"line 1", "'host' cannot be part"}},
      {"look = 'neon'", {"line 1", "'look' cannot be part"}},
      {"text = 'Hi'", {"line 1", "'text'"}},
      {"set = 'a=b'", {"line 1", "'set'", "[set]"}},
      {"[set]\nMainFontSiz = 3", {"line 2", "MainFontSiz", "'MainFontSize'"}},
      {"[fill]\na = 3", {"line 1", "'fill'"}},
  };
  for (const auto& c : cases) {
    const std::string path = WriteLook(folder, c.text);
    const ParsedArguments parsed = Parse({"Hi", "-o", "a.gif", "--look", path});
    EXPECT_EQ(parsed.exitCode, 2) << c.text;
    EXPECT_EQ(parsed.error.rfind("the look '" + path + "', line ", 0), 0u) << parsed.error;
    for (const std::string& part : c.says)
      EXPECT_NE(parsed.error.find(part), std::string::npos) << parsed.error << " lacks " << part;
  }
  EXPECT_EQ(Parse({"Hi", "-o", "a.gif", "--look", "goldd"}).error,
            "there is no look 'goldd'; did you mean 'gold'? (see --list looks)");
  EXPECT_NE(Parse({"Hi", "-o", "a.gif", "--look", "/no/such.toml"}).error.find("cannot be read"), std::string::npos);
  // What only the run can tell has the line as well.
  const std::string path = WriteLook(folder, "effect = 'vortex'\n[set]\n'@rotate' = 9999");
  const Arguments late = *Parse({"Hi", "-o", "a.gif", "--look", path}).arguments;
  const std::string message = InOptionTerms(Render(late.job, {}).message, late);
  EXPECT_EQ(message.rfind("the look '" + path + "', line 3: '@rotate' takes a whole number", 0), 0u) << message;
}

}  // namespace
}  // namespace glyphmotion
