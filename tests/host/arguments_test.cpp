// SPDX-License-Identifier: MIT
#include "host/program/command_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "host/encoders/frame_order.h"
#include "host/options/looks.h"
#include "host/options/option_table.h"
#include "host/render/job_fields.h"

namespace glyphmotion {
namespace {

using Words = std::vector<std::string>;

Catalogue SmallCatalogue() {
  Catalogue catalogue;
  catalogue.effects = {"Background Hyperspace", "Simple", "Vortex"};
  catalogue.palettes = Words(9, "palette");
  catalogue.keys = {{"MainFontSize", "number", "56", 57}, {"FastRemap", "switch", "0", 0}};
  catalogue.controls = {{440, "number", "Rotate", "0..720", "Style008Rotate", "Vortex", {}}};
  catalogue.fonts = [] { return Words{"Liberation Sans", "Liberation Serif"}; };
  catalogue.hasFont = [](const std::string& name) { return name == "Liberation Sans"; };
  catalogue.readLook = ReadLook;
  return catalogue;
}

ParsedArguments Parse(const Words& words, std::optional<std::string> piped = {}) {
  Catalogue catalogue = SmallCatalogue();
  catalogue.input = [&](bool) { return piped; };
  return ParseArguments(words, catalogue);
}

// The final value, by precedence.
std::string Final(const Job& job, const std::string& key) {
  std::string value = "unset";
  const Job whole = WithFieldsAsSettings(job);
  for (const auto* list : {&whole.defaults, &whole.settings})
    for (const auto& [name, text] : *list)
      if (name == key) value = text;
  return value;
}

TEST(Arguments, FormatsDecideWhatTheHostClaimsAndTheDefaults) {
  const struct {
    Words words;
    bool palette, trueColour;
    const char *delay, *pause, *custom, *trueColourCheck;
  } cases[] = {
      {{"Hi", "-o", "a.gif"}, true, false, "4", "100", "1", "unset"},
      {{"Hi", "-o", "a.PNG"}, false, true, "40", "1000", "1", "1"},
      {{"Hi", "-o", "a.webp"}, false, true, "40", "1000", "1", "1"},
      {{"Hi", "-o", "frames", "--frames-as", "png"}, false, true, "40", "1000", "1", "1"},
      {{"Hi", "--record", "calls"}, true, false, "4", "100", "1", "unset"},
      {{"Hi", "-o", "a.gif", "--host", "both"}, true, true, "4", "100", "1", "0"},
      {{"Hi", "--record", "r", "--host", "truecolor"}, false, true, "40", "1000", "1", "1"},
      {{"Hi", "-o", "a.png", "--palette", "safe216"}, false, true, "40", "1000", "0", "0"},
      {{"Hi", "-o", "a.gif", "--delay", "7", "--set", "MainFontSize=9"}, true, false, "7", "100", "1", "unset"},
  };
  for (const auto& c : cases) {
    const ParsedArguments parsed = Parse(c.words);
    ASSERT_TRUE(parsed.arguments) << parsed.error;
    const Job& job = parsed.arguments->job;
    SCOPED_TRACE(::testing::PrintToString(c.words));
    EXPECT_EQ(job.paletteFormat, c.palette);
    EXPECT_EQ(job.trueColourFormat, c.trueColour);
    EXPECT_EQ(Final(job, "MainDelay"), c.delay);
    EXPECT_EQ(Final(job, "MainPause"), c.pause);
    EXPECT_EQ(Final(job, "14"), c.custom);
    EXPECT_EQ(Final(job, "Truecolour"), c.trueColourCheck);
    EXPECT_EQ(Final(job, "AddDescriptiveCommentBlock"), "0");
  }
}

TEST(Arguments, EachOptionReachesItsControl) {
  const struct {
    Words words;
    const char *key, *value;
  } cases[] = {
      {{"-s", "72"}, "MainFontSize", "72"},
      {{"--pad", "0"}, "MainPadding", "0"},
      {{"--space=150"}, "MainFontSpace", "150"},
      {{"--pause", "10000"}, "MainPause", "10000"},
      {{"--frames", "8"}, "@frames", "8"},
      {{"--bold"}, "MainFontBold", "1"},
      {{"--no-bold"}, "MainFontBold", "0"},
      {{"--italic"}, "MainFontItalic", "1"},
      {{"--no-antialias"}, "MainAntialias", "0"},
      {{"--still-text"}, "MainRolling", "0"},
      {{"--dither"}, "MainDither", "1"},
      {{"--dither=stable"}, "MainDither", "1"},
      {{"--supercompress"}, "MainSupercompress", "1"},
      {{"--transparent"}, "MainTransparent", "1"},
      {{"--mask-background"}, "MainMaskBackground", "1"},
      {{"--add-comment"}, "AddDescriptiveCommentBlock", "1"},
      {{"--font", "Liberation Sans"}, "MainFontName", "Liberation Sans"},
      {{"--palette", "gray256"}, "MainPalette", "8"},
      {{"--palette", "3"}, "MainPalette", "3"},
      {{"--set", "440=12", "--set", "440=13"}, "440", "13"},
      {{"--size", "20", "--set", "MainFontSize=30"}, "MainFontSize", "30"},
      {{"--set", "MainFontSize=30", "--size", "20"}, "MainFontSize", "30"},
      {{"--set", "FastRemap="}, "FastRemap", ""},
      {{"--set", "@rotate=90"}, "@rotate", "90"},
      {{"--direction", "left"}, "@scroll", "left"},
      {{"--direction", "3"}, "@scroll", "3"},
      {{"--delay", "80ms"}, "MainDelay", "8"},
      {{"--delay", "8cs"}, "MainDelay", "8"},
      {{"--delay", "0.05s"}, "MainDelay", "5"},
      {{"--pause", "2.5s"}, "MainPause", "250"},
      {{"--fps", "20"}, "MainDelay", "5"},
      {{"--fps", "20", "-o", "a.png"}, "MainDelay", "50"},
      {{"--delay", "8cs", "-o", "a.png"}, "MainDelay", "80"},
  };
  for (const auto& c : cases) {
    Words words = c.words;
    words.push_back("Hi");
    if (std::find(words.begin(), words.end(), "-o") == words.end()) words.insert(words.end(), {"-o", "a.gif"});
    const ParsedArguments parsed = Parse(words);
    ASSERT_TRUE(parsed.arguments) << parsed.error;
    EXPECT_EQ(Final(parsed.arguments->job, c.key), c.value) << ::testing::PrintToString(c.words);
  }
  const auto alpha = Parse({"Hi", "-o", "a.png", "--alpha", "--alpha-background", "--true-color"}).arguments;
  ASSERT_TRUE(alpha);
  EXPECT_EQ(Final(alpha->job, "MainAlphaTrans") + Final(alpha->job, "UseAlphaGreyBack"), "11");
}

TEST(Arguments, TheRestOfTheJob) {
  const auto a = Parse({"-e", "Background Hyperspace", "--fill", "#102030", "--outline", "#ffffff", "--shadow",
                        "mtrl:x.mtrl", "--refuse", "task", "--refuse", "image:3", "--fail-allocation", "12",
                        "--test-run", "-q", "--no-progress", "--", "--text that begins with dashes"})
                     .arguments;
  ASSERT_TRUE(a);
  EXPECT_EQ(a->job.text, "--text that begins with dashes");
  EXPECT_EQ(a->job.effect, "background-hyperspace");
  EXPECT_EQ(a->job.fill + a->job.outline + a->job.shadow, "#102030#ffffffmtrl:x.mtrl");
  EXPECT_TRUE(a->job.refuseTask);
  EXPECT_EQ(a->job.refuseImage, 3);
  EXPECT_EQ(a->job.failAllocation, 12u);
  EXPECT_EQ(a->job.action, Job::Action::Test);
  EXPECT_TRUE(a->quiet);
  EXPECT_EQ(a->progress, false);
  EXPECT_EQ(Parse({"-", "-o", "a.gif"}).arguments->job.text, "-");
  EXPECT_EQ(Parse({"-", "-o", "a.gif"}, "Piped\n").arguments->job.text, "Piped");
  EXPECT_EQ(Parse({"-", "-o", "a.gif"}, "").exitCode, 2);
  EXPECT_EQ(Parse({"--set", "MainText=x", "-o", "a.gif"}).exitCode, 2) << "not in this catalogue";
  const auto piped = Parse({"-o", "-", "--format", "y4m", "--start", "rest"}, "Piped\r\n").arguments;
  ASSERT_TRUE(piped);
  EXPECT_EQ(piped->job.text, "Piped");
  EXPECT_EQ(piped->extension + piped->output, ".y4m-");
  EXPECT_EQ(piped->job.start, FrameOrder::kRest);
  EXPECT_EQ(Parse({"Hi", "-o", "a.x", "--format", "gif"}).arguments->extension, ".gif");
  EXPECT_EQ(Parse({"--save-document", "a.GM4"}).arguments->job.action, Job::Action::None);
  EXPECT_EQ(Parse({"Hi", "--sample", "-o", "a.png"}).arguments->job.action, Job::Action::Sample);
  EXPECT_EQ(Parse({"--list", "keys"}).arguments->list, ListKind::Keys);
}

TEST(Arguments, OptionsThatChangeNothingBesideOthersAreNoted) {
  const auto notes = [](Words words) { return Parse(words).arguments->notes; };
  using Notes = std::vector<std::string>;
  EXPECT_EQ(notes({"Hi", "-o", "a.gif", "--transparent", "--palette", "safe216"}),
            Notes{"--transparent changes nothing together with a fixed --palette; leave one of them out"});
  EXPECT_EQ(notes({"Hi", "-o", "a.gif", "--transparent", "--supercompress"}).size(), 1u);
  EXPECT_EQ(notes({"Hi", "-o", "a.gif", "--colors", "5", "--palette", "bw"}).size(), 1u);
  EXPECT_EQ(notes({"Hi", "-o", "a.gif", "--fps", "30"}), Notes{"--fps 30 becomes 33.3: a frame takes 3/100 s"});
  EXPECT_EQ(notes({"Hi", "-o", "a.gif", "--delay", "85ms"}).size(), 1u);
  EXPECT_EQ(notes({"Hi", "-o", "a.png", "--dither", "--palette", "bw", "--alpha", "--true-color"}).size(), 4u);
  for (const Words& meant : {Words{"Hi", "-o", "a.gif", "--transparent", "--palette", "custom", "--dither"},
                             Words{"Hi", "-o", "a.gif", "--transparent", "--palette", "auto", "--colors", "5"},
                             Words{"Hi", "-o", "a.png", "--fps", "25", "--pause", "85ms"},
                             Words{"Hi", "-o", "a.png", "--palette", "bw", "--dither"}})
    EXPECT_EQ(notes(meant), Notes{});
}

TEST(Arguments, BadUsageIsOneSentenceThatNamesTheValueAndWhatIsAllowed) {
  const struct {
    Words words;
    Words says;
  } cases[] = {
      {{"Hi"}, {"-o"}},
      {{"Hi", "-o", "noextension"}, {"noextension"}},
      {{"", "-o", "a.gif"}, {"empty"}},
      {{std::string(4097, 'x'), "-o", "a.gif"}, {"4097", "4096"}},
      {{"Hi", "-o", "a.gif", "-f", "Arial", "--font-file", "x.ttf"}, {"cannot be used together"}},
      {{"Hi", "-o", "a.gif", "-e", "vortx"}, {"vortx", "'vortex'", "--list effects"}},
      {{"Hi", "-o", "a.gif", "-f", "Liberation Sanz"}, {"Liberation Sanz", "'Liberation Sans'", "--list fonts"}},
      {{"Hi", "-o", "a.gif", "--palette", "9"}, {"9", "custom", "gray256"}},
      {{"Hi", "-o", "a.gif", "--delay", "0"}, {"--delay", "1 to 25"}},
      {{"Hi", "-o", "a.gif", "--delay", "26"}, {"--delay", "26", "1 to 25"}},
      {{"Hi", "-o", "a.png", "--delay", "251"}, {"--delay", "1 to 250"}},
      {{"Hi", "-o", "a.gif", "--pause", "10001"}, {"--pause", "10000"}},
      {{"Hi", "-o", "a.gif", "--", "there"}, {"there", "quotation"}},
      {{"Hi", "-o", "a.gif", "--fill", "#12345"}, {"--fill", "#12345", "#RRGGBB"}},
      {{"Hi", "-o", "a.gif", "--fill", "none"}, {"--fill", "none"}},
      {{"Hi", "-o", "a.gif", "--outline", "gradient:red-blue"}, {"gradient:red-blue", "#RRGGBB", "none"}},
      {{"Hi", "-o", "a.y4m", "--effort", "3"}, {"--effort", "compressed"}},
      {{"Hi", "-o", "a.y4m", "--alpha"}, {"--alpha", "background"}},
      {{"Hi", "-o", "a.apng", "--lossy", "3"}, {"--lossy", ".webp"}},
      {{"Hi", "-o", "-", "--format", "gif", "--json"}, {"--json", "-o -"}},
      {{"Hi", "-o", "a.gif", "--delay", "1.5"}, {"1.5", "80ms", "10 to 250 ms"}},
      {{"Hi", "-o", "a.gif", "--delay", "260ms"}, {"260ms", "10 to 250 ms"}},
      {{"Hi", "-o", "a.gif", "--fps", "3"}, {"--fps 3", "4 to 100"}},
      {{"Hi", "-o", "a.gif", "--fps", "9", "--delay", "9"}, {"--fps", "--delay", "leave one out"}},
      {{"-o", "a.gif"}, {"no text", "quotation", "--text-file"}},
      {{"Hi", "--text-file", "x", "-o", "a.gif"}, {"--text-file", "leave one out"}},
      {{"Hi", "-o", "-"}, {"-o -", "--format"}},
      {{"Hi", "--format", "gif"}, {"--format", "-o"}},
      {{"Hi", "-o", "x", "--format", "gif", "--frames-as", "png"}, {"--format", "--frames-as"}},
      {{"Hi", "-o", "a.y4m", "--loop", "2"}, {"--loop", ".gif"}},
      {{"Hi", "-o", "a.gif", "--start", "2", "--sample"}, {"--start", "--sample"}},
      {{"Hi", "--record", "r", "--loop", "2"}, {"--loop", "-o"}},
      {{"Hi", "-o", "a.gif", "--set", "MainFontSiz=3"}, {"MainFontSiz", "'MainFontSize'"}},
      {{"Hi", "-o", "a.gif", "--set", "441=3"}, {"441", "--list controls"}},
      {{"Hi", "-o", "a.gif", "--true-color"}, {"--true-color", ".png"}},
      {{"Hi", "-o", "a.gif", "--alpha"}, {"--alpha", "--transparent"}},
      {{"Hi", "-o", "a.png", "--transparent"}, {"--transparent", "--alpha"}},
      {{"Hi", "-o", "a.png", "--lossy", "5"}, {".gif, .webp"}},
      {{"Hi", "-o", "a.webp", "--lossy", "101"}, {"0 to 100"}},
      {{"Hi", "-o", "a.gif", "--lossy", "201"}, {"0 to 200"}},
      {{"Hi", "-o", "a.png", "--max-bytes", "9999"}, {".gif"}},
      {{"Hi", "-o", "a.gif", "--max-bytes", "9999", "--sample"}, {"--sample"}},
      {{"Hi", "-o", "a.gif", "--sizes", "9"}, {"--sizes", "'--size'"}},
      {{"Hi", "there", "-o", "a.gif"}, {"there", "quotation"}},
      {{"Hi", "-o", "a.gif", "-s", "9", "-s", "8"}, {"--size is given more than once"}},
      {{"Hi", "--width", "-o", "a.gif"}, {"--width needs a value", "'-o' follows"}},
      {{"Hi", "-o", "a.gif", "-s", "--no-bold"}, {"--size needs a value", "'--no-bold' follows"}},
      {{"Hi", "-o", "a.gif", "--no-bold="}, {"'--no-bold=' has an empty value"}},
      {{"", "-o", "a.png", "--sample"}, {"empty"}},
      {{"Hi", "-o", "a.gif", "--fit", "none"}, {"--fit", "--width or --height"}},
      {{"Hi", "-o", "a.gif", "--width", "9", "--valign", "top"}, {"--valign", "--height"}},
  };
  for (const auto& c : cases) {
    const ParsedArguments parsed = Parse(c.words);
    SCOPED_TRACE(::testing::PrintToString(c.words) + " -> " + parsed.error);
    EXPECT_FALSE(parsed.arguments);
    EXPECT_EQ(parsed.exitCode, 2);
    EXPECT_EQ(parsed.error.find('\n'), std::string::npos);
    for (const std::string& part : c.says) EXPECT_NE(parsed.error.find(part), std::string::npos) << part;
  }
}

// What no row of the table can tell: a wrong value of each option whose values are names, files or materials. Of the
// empty ones any value may be right until the run tries it.
const std::map<std::string, std::string> kWrongNames = {{"--output", "a.bmp"},
                                                        {"--text-file", "/no/such"},
                                                        {"--font", "No Font"},
                                                        {"--font-file", ""},
                                                        {"--font-variation", "wght"},
                                                        {"--effect", "vortx"},
                                                        {"--delay", "4min"},
                                                        {"--pause", "-1s"},
                                                        {"--fill", "reddish"},
                                                        {"--shadow", "reddish"},
                                                        {"--background", "none"},
                                                        {"--outline", "#11223344"},
                                                        {"--palette", "red"},
                                                        {"--set", "MainFontSize"},
                                                        {"--look", "/no/such.toml"},
                                                        {"--save-look", ""},
                                                        {"--document", "/no/such.gm4"},
                                                        {"--save-document", ""},
                                                        {"--settings", "/no/such/a"},
                                                        {"--record", ""},
                                                        {"--refuse", "images"}};

// The values that the row of an option excludes.
Words WrongValues(const OptionRow& row) {
  Words wrong;
  if (row.form) wrong.emplace_back();
  if (row.minimum < row.maximum) {
    for (const long number : {row.minimum - 1, row.maximum + 1}) wrong.push_back(std::to_string(number));
    wrong.insert(wrong.end(), {"12px", "1.5", "99999999999999999999"});
  } else if (!row.form || *row.words) {
    wrong.emplace_back("maybe");
  } else if (const std::string& name = kWrongNames.at(LongName(row)); !name.empty()) {
    wrong.push_back(name);
  }
  return wrong;
}

TEST(Arguments, EachWrongValueOfEachOptionIsOneSentenceWithWhatIsAllowed) {
  for (const OptionRow& row : OptionRows()) {
    const std::string name = LongName(row);
    if (row.form) {
      EXPECT_EQ(Parse({"Hi", name}).error, name + " needs a value after it; see --help");
    }
    for (const std::string& value : WrongValues(row)) {
      Words words = {"Hi", name + "=" + value};
      if (row.form) words = {"Hi", name, value};
      if (name == "--text-file") words.erase(words.begin());
      if (name != "--output") words.insert(words.end(), {"-o", "a.gif"});
      const ParsedArguments parsed = Parse(words);
      const std::string& says = parsed.error;
      SCOPED_TRACE(::testing::PrintToString(words) + " -> " + says);
      EXPECT_EQ(parsed.exitCode, 2);
      EXPECT_TRUE(!parsed.arguments && !says.empty() && says.find('\n') == std::string::npos && says.back() != '.');
      EXPECT_NE(says.find(value.empty() ? name : value), std::string::npos);
      if (value.empty()) continue;
      for (const std::string& word : WordsOf(row)) EXPECT_NE(says.find(word), std::string::npos) << word;
      if (row.minimum < row.maximum) {
        EXPECT_NE(says.find(std::to_string(row.minimum) + " to " + std::to_string(row.maximum)), std::string::npos);
      }
    }
  }
}

TEST(Arguments, HelpNamesEveryOptionButThoseForHosts) {
  const ParsedArguments parsed = Parse({"--help"});
  EXPECT_EQ(parsed.exitCode, 0);
  for (const OptionRow& row : OptionRows()) {
    const bool shown = parsed.text.find(LongName(row)) != std::string::npos;
    EXPECT_EQ(shown, std::string(row.group) != kHostGroup) << row.names;
    EXPECT_EQ(FindOption(LongName(row)), &row);
  }
  EXPECT_EQ(Parse({"--version"}).text.rfind("glyphmotion ", 0), 0u);
}

}  // namespace
}  // namespace glyphmotion
