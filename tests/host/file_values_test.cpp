// SPDX-License-Identifier: MIT
// What a run makes of its files and what they get back: times, the comment, notes.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/host_helpers.h"
#include "host/program/command_line.h"
#include "platform/text_engine.h"

namespace glyphmotion {
namespace {

using testing::ReadText;
using testing::TemporaryFolder;
using Words = std::vector<std::string>;

struct Ran {
  RenderResult result;
  int shortest = 0, longest = 0;  // delays, in the output's unit
  bool comment = false;
  std::string notes;
};

/// Runs the job that the program makes of these words; no output file is written.
Ran RunWords(const Words& words, bool refuse = false) {
  Ran ran;
  const ParsedArguments parsed =
      ParseArguments(words, {EffectNames(), PaletteNames(), Keys(), Controls(), HasFontFamily, FontNames, {}});
  if (!parsed.arguments) {
    ADD_FAILURE() << parsed.error;
    return ran;
  }
  std::vector<int> delays;
  Sink sink;
  sink.image = [&](const Image& image) {
    delays.push_back(image.delay);
    return !refuse || image.number < 2;
  };
  sink.comment = [&](const std::string&) { ran.comment = true; };
  ran.result = Render(parsed.arguments->job, sink);
  if (!delays.empty()) {
    ran.shortest = *std::min_element(delays.begin(), delays.end());
    ran.longest = *std::max_element(delays.begin(), delays.end());
  }
  for (const std::string& note : ran.result.notes) ran.notes += InOptionTerms(note, *parsed.arguments) + "\n";
  return ran;
}

/// What a document or a settings file says: "ms|delay|pause|comment", without "ms|" where it has no unit.
std::string TimesIn(const std::string& path) {
  const std::string text = "\n" + ReadText(path);
  std::string found = text.find("\n;Times are in milliseconds\n") != std::string::npos ? "ms" : "";
  const std::pair<const char*, const char*> places[] = {{"\nSPNBTN11=", "\nMainDelay = "},
                                                        {"\nSPNBTN23=", "\nMainPause = "},
                                                        {"\nCHKBOX20=", "\nAddDescriptiveCommentBlock = "}};
  for (const auto& [line, setting] : places) {
    for (const std::string start : {line, setting}) {
      const std::size_t at = text.find(start);
      if (at == std::string::npos) continue;
      const std::size_t value = at + start.size();
      found += (found.empty() ? "" : "|") + text.substr(value, text.find('\n', value) - value);
    }
  }
  return found;
}

const std::string kUnit = ";Times are in milliseconds";

TEST(FileValues, ATimeStaysATimeAndDefaultsHoldOnlyWhereNoFileSpeaks) {
  const TemporaryFolder folder;
  const std::string head = ";Glyphmotion 4 Plugin, Tessaloom\n", end = ";End of document\n", ini = "[PlugIn]\n";
  const struct {
    const char* what;
    std::string settings, document;
    const char* output;
    Words options;
    int delay, rest;  // of the frames; rest: Delay + Pause
    bool comment;
    const char* saved;  // in the document and in the settings file
  } rows[] = {
      {"nothing, palette", "", "", "a.gif", {}, 4, 104, false, "4|100|1"},
      {"nothing, milliseconds", "", "", "a.webp", {}, 40, 1040, false, "4|100|1"},
      {"document", "", "SPNBTN11=11\nSPNBTN23=250\nCHKBOX20=1\n", "a.gif", {}, 11, 261, true, "11|250|1"},
      {"document to ms", "", "SPNBTN11=11\nSPNBTN23=250\n", "a.webp", {}, 110, 2610, false, "11|250|1"},
      {"settings", "MainDelay = 7\nMainPause = 50\nAddDesc = 1\n", "", "a.gif", {}, 7, 57, true, "7|50|1"},
      {"settings to ms", "MainDelay = 7\nMainPause = 50\nAddDesc = 0\n", "", "a.png", {}, 70, 570, false, "7|50|0"},
      {"one over the other", "MainDelay = 7\nMainPause = 50\n", "SPNBTN11=9\n", "a.gif", {}, 9, 59, false, "9|50|1"},
      {"ms to palette", "", kUnit + "\nSPNBTN11=115\nSPNBTN23=2500\n", "a.gif", {}, 12, 262, false, "ms|115|2500|1"},
      {"ms settings", kUnit + "\nMainDelay = 80\n", "", "a.webp", {}, 80, 1080, false, "ms|80|1000|1"},
      {"option in ms", "", "SPNBTN11=11\nSPNBTN23=250\n", "a.webp", {"--delay", "15"}, 15, 2515, false, "ms|15|2500|1"},
      {"cs", "", kUnit + "\nSPNBTN11=115\nSPNBTN23=2500\n", "a.gif", {"--delay", "3"}, 3, 253, false, "ms|30|2500|1"},
      {"set", "", "SPNBTN11=11\n", "a.gif", {"--set", "11=5", "--add-comment"}, 5, 105, true, "5|100|1"},
      {"the default", "", "", "a.gif", {"--set", "AddDescriptiveCommentBlock=0"}, 4, 104, false, "4|100|0"},
      {"too long", "", "SPNBTN11=40\nSPNBTN23=2000\n", "a.webp", {}, 250, 10250, false, "40|2000|1"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const std::string settings = folder / "s.ini", document = folder / "d.gm4", saved = folder / "saved.gm4";
    std::filesystem::remove(settings);
    const auto write = [](const std::string& path, const std::string& text) {
      testing::WriteBytes(path, {text.begin(), text.end()});
    };
    if (!row.settings.empty()) write(settings, ini + row.settings);
    write(document, head + row.document + end);
    Words words = {"Hi", "-e", "simple", "-s", "16", "--frames", "6", "-o", folder / row.output};
    if (!row.document.empty()) words.insert(words.end(), {"--document", document});
    words.insert(words.end(), row.options.begin(), row.options.end());
    words.insert(words.end(), {"--settings", settings, "--save-document", saved});
    const Ran ran = RunWords(words);
    ASSERT_EQ(ran.result.status, RenderStatus::Done) << ran.result.message;
    EXPECT_EQ(ran.shortest, row.delay);
    EXPECT_EQ(ran.longest, row.rest);
    EXPECT_EQ(ran.comment, row.comment);
    EXPECT_EQ(TimesIn(saved), row.saved);
    EXPECT_EQ(ran.notes.empty(), std::string(row.what) != "too long") << ran.notes;
    EXPECT_EQ(TimesIn(settings), row.saved);
    // What was saved is the same run again.
    const Ran again = RunWords({"--document", saved, "-o", folder / row.output});
    EXPECT_EQ(again.shortest, ran.shortest);
    EXPECT_EQ(again.longest, ran.longest);
  }
}

TEST(FileValues, ADocumentsOwnPaletteIsKept) {
  const TemporaryFolder folder;
  const std::string document = folder / "d.gm4";
  const Words small = {"Hi", "-e", "simple", "-s", "16", "--frames", "4", "--palette", "bw"};
  Words words = small;
  words.insert(words.end(), {"--save-document", document});
  ASSERT_EQ(RunWords(words).result.status, RenderStatus::Done);
  RunWords({"--document", document, "-o", folder / "a.gif", "--save-document", folder / "e.gm4"});
  EXPECT_NE(ReadText(folder / "e.gm4").find("CHKBOX14=0\n"), std::string::npos);
}

TEST(FileValues, WhatChangesNothingIsNotedOnce) {
  const TemporaryFolder folder;
  const std::string cut = folder / "cut.gm4", font = folder / "font.gm4";
  const std::string head = ";Glyphmotion 4 Plugin, Tessaloom\n";
  testing::WriteBytes(cut, {head.begin(), head.end()});
  const std::string other = head + "FNTBOX53=No Such Family\n;End of document\n";
  testing::WriteBytes(font, {other.begin(), other.end()});
  const struct {
    Words words;
    const char* says;  // empty: no note
  } rows[] = {
      {{"-e", "simple", "--still-text"}, ""},
      {{"-e", "vortex", "--still-text"}, "--still-text changes nothing in the effect Vortex"},
      {{"-e", "vortex", "--pause", "20"}, ""},
      {{"-e", "radar", "--pause", "20"}, "--pause changes nothing in the effect Radar"},
      {{"-e", "vortex", "--set", "Style008Rotate=90"}, ""},
      {{"-e", "simple", "--set", "Style008Rotate=90"}, "'Style008Rotate' changes nothing in the effect Simple"},
      {{"-e", "simple", "--set", "MainFitToText=0"}, "'MainFitToText' changes nothing in a run"},
      {{"-e", "simple", "--set", "FastRemap=1"}, ""},
      {{"-e", "simple", "--delay", "2"}, ""},
      {{"-e", "simple", "--delay", "1"}, "10 ms or less"},
      {{"-e", "simple", "--document", cut}, "incomplete"},
      {{"-e", "simple", "--document", font}, "'No Such Family' is not installed"},
      {{"caf\xE9", "-e", "simple"}, "not valid UTF-8"},
      {{"a\xF4\x8F\xBF\xB0"
        "b",
        "-e", "simple"},
       "U+10FFF0"},
  };
  for (const auto& row : rows) {
    Words words = row.words;
    if (words[0] == "-e") words.insert(words.begin(), "Hi");
    words.insert(words.end(), {"-s", "16", "-o", folder / "a.gif"});
    const Ran ran = RunWords(words);
    SCOPED_TRACE(::testing::PrintToString(row.words));
    EXPECT_EQ(ran.result.status, RenderStatus::Done) << ran.result.message;
    EXPECT_EQ(std::count(ran.notes.begin(), ran.notes.end(), '\n'), *row.says ? 1 : 0) << ran.notes;
    EXPECT_NE(ran.notes.find(row.says), std::string::npos) << ran.notes;
  }
}

TEST(FileValues, EveryEffectKnowsWhetherItRestsAndKeepsTextStill) {
  const auto delaysOf = [](const std::string& effect, const char* key, const char* value) {
    std::vector<int> delays;
    Job job;
    job.text = "i";
    job.effect = effect;
    job.settings = {{"MainFontSize", "12"}, {key, value}};
    Sink sink;
    sink.image = [&](const Image& image) {
      delays.push_back(image.delay);
      return true;
    };
    const RenderResult result = Render(job, sink);
    return std::pair(delays, !result.notes.empty() && result.notes[0].find("changes nothing") != std::string::npos);
  };
  std::size_t moving = 0;
  for (const std::string& effect : EffectNames()) {
    const auto one = delaysOf(effect, "MainPause", "1"), long_ = delaysOf(effect, "MainPause", "300");
    EXPECT_EQ(one.first == long_.first, long_.second) << effect << ": the note on Pause";
    const auto still = delaysOf(effect, "MainRolling", "0"), rolling = delaysOf(effect, "MainRolling", "1");
    EXPECT_EQ(still.first == rolling.first, still.second) << effect << ": the note on Animated";
    moving += still.second;
  }
  EXPECT_EQ(moving, EffectNames().size() - 1) << "all but Simple";
}

TEST(FileValues, OnlyAcceptedImagesCount) {
  const Ran refused = RunWords({"Hi", "-e", "simple", "-s", "16", "--test-run"}, true);
  EXPECT_EQ(refused.result.status, RenderStatus::Failed);
  EXPECT_EQ(refused.result.images, 2);
}

TEST(FileValues, EachLineBreakBeginsALineAndANulIsRefused) {
  const auto heightOf = [](const std::string& text, int lineSpace = 100) {
    Job job;
    job.text = text;
    job.lineSpace = lineSpace;
    job.action = Job::Action::Sample;
    int height = 0;
    Sink sink;
    sink.image = [&](const Image& image) { return (height = image.height) > 0; };
    const RenderResult result = Render(job, sink);
    EXPECT_EQ(result.status == RenderStatus::Done, height > 0) << result.message;
    return height ? std::to_string(height) : result.message;
  };
  const int one = std::stoi(heightOf("a")), two = std::stoi(heightOf("a\nb")), cell = two - one;
  EXPECT_GT(cell, 20);
  for (const char* text : {"a\r\nb", "a\rb", "a\n",
                           "a\xE2\x80\xA8"
                           "b"})
    EXPECT_EQ(heightOf(text), std::to_string(two));
  EXPECT_EQ(heightOf("a\n\nb\n"), std::to_string(one + 3 * cell));
  EXPECT_EQ(heightOf("a\nb", 150), std::to_string(one + cell * 3 / 2));
  EXPECT_EQ(heightOf(std::string("a\0b", 3)).rfind("the text has a NUL", 0), 0u);
  EXPECT_NE(heightOf(std::string(4097, 'x')).find("at most 4096"), std::string::npos);
  EXPECT_NE(heightOf("a", 5).find("it takes 10 to 500"), std::string::npos);
}

}  // namespace
}  // namespace glyphmotion
