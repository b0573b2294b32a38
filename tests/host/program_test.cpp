// SPDX-License-Identifier: MIT
// The program as people start it: exit codes, messages, files.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>

#include "host/host_helpers.h"

namespace glyphmotion {
namespace {

using testing::Bytes;
using testing::TemporaryFolder;

struct Outcome {
  int code;
  std::string output;  // both streams
};

Outcome Shell(const std::string& command) {
  std::FILE* pipe = popen(("exec 2>&1; " + command).c_str(), "r");
  Outcome outcome{-1, ""};
  for (int c; (c = std::fgetc(pipe)) != EOF;) outcome.output += static_cast<char>(c);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) outcome.code = WEXITSTATUS(status);
  return outcome;
}

Outcome StartAfter(const char* before, const std::string& arguments) {
  return Shell(before + ("'" GLYPHMOTION_PROGRAM "' " + arguments));
}
Outcome Start(const std::string& arguments) { return StartAfter("", arguments); }

const char* const kSmall = " Hi -e simple -s 20 --frames 6 ";

// The other tests run what it passes on.
TEST(Program, SaysWhereItLookedForItsSecondFile) {
  const TemporaryFolder folder;
  std::filesystem::copy_file(GLYPHMOTION_PROGRAM, folder / "glyphmotion");
  for (const char* words : {"edit --no-open", "batch jobs.jsonl", "Hi -o hi.WebM", "Hi -o - --format=avif"}) {
    const Outcome outcome = Shell("'" + folder / "glyphmotion" + "' " + words);
    EXPECT_EQ(outcome.code, 1) << words;
    EXPECT_NE(outcome.output.find("is missing in " + folder.path.string()), std::string::npos) << outcome.output;
  }
}

TEST(Program, WritesEachFormatAndSaysNothingOnAPipe) {
  const TemporaryFolder folder;
  const struct {
    const char *name, *magic;
  } cases[] = {{"a.gif", "GIF89a"}, {"a.png", "\x89PNG"}, {"a.webp", "RIFF"}, {"a.apng", "\x89PNG"}};
  for (const auto& c : cases) {
    const Outcome outcome = Start(kSmall + ("-o " + folder / c.name));
    EXPECT_EQ(outcome.code, 0) << outcome.output;
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(testing::ReadText(folder / c.name).rfind(c.magic, 0), 0u) << c.name;
  }
  EXPECT_EQ(folder.Entries(), 4u);
  for (int i = 0; i < 2; ++i)  // the second time it replaces the first
    EXPECT_EQ(Start(kSmall + ("--frames-as png -o " + folder / "frames")).code, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "frames/0005.png"));
  EXPECT_NE(testing::ReadText(folder / "frames/timing.json").find(R"({"file": "0005.png", "duration_ms": )"),
            std::string::npos);
  EXPECT_EQ(Start(kSmall + ("--sample -o " + folder / "sample.png")).code, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "sample.png"));
}

TEST(Program, PipesCarryTextsAndPictures) {
  const TemporaryFolder folder;
  for (const std::string format : {"gif", "png", "webp", "y4m", "rgba"}) {
    ASSERT_EQ(Start(kSmall + ("--start rest -o " + folder / "file --format " + format)).code, 0);
    const Outcome piped = Start(kSmall + ("--start rest -o - --format " + format + " > " + folder / "piped"));
    EXPECT_EQ(piped.code, 0) << piped.output;
    EXPECT_EQ(testing::ReadBytes(folder / "piped"), testing::ReadBytes(folder / "file")) << format;
  }
  const std::string rest = " -e simple -s 20 --frames 6 -o " + folder / "text.gif";
  ASSERT_EQ(Start("Hi" + rest).code, 0);
  const Bytes expected = testing::ReadBytes(folder / "text.gif");
  testing::WriteBytes(folder / "text", {'H', 'i', '\n'});
  for (const char* from : {" < ", " --text-file - < ", " --text-file "}) {
    std::filesystem::remove(folder / "text.gif");
    EXPECT_EQ(Start(rest + from + folder / "text").code, 0) << from;
    EXPECT_EQ(testing::ReadBytes(folder / "text.gif"), expected) << from;
  }
  const Outcome silent = Start(rest + " < /dev/null");
  EXPECT_EQ(silent.code, 2);
  EXPECT_NE(silent.output.find("error: there is no text"), std::string::npos) << silent.output;
  EXPECT_EQ(Start("Hi" + rest + " --start 99").code, 1);
}

TEST(Program, HelpManualAndCompletionsKnowTheEffectsAndOptions) {
  const struct {
    const char *words, *says;
    int code = 0;
  } rows[] = {{"help", "--fill M"},
              {"help vortex", "@rotate"},
              {"help Background-Iris", ": "},
              {"help materials", "gradient:red-gold"},
              {"help hosts", "--record"},
              {"help batch", "--shard I/N"},
              {"--list effects --json", R"({"name":"vortex","summary":")"},
              {"--list keys --json", R"("control":null,)"},
              {"--list palettes --json", R"({"name":"bw","number":0,"title":")"},
              {"--list looms --json", R"({"error":"--list looms is not allowed)", 2},
              {"man", ".TH GLYPHMOTION"},
              {"completion bash", "--effect"},
              {"completion zsh", "#compdef"},
              {"completion fish", "-l effect"},
              {"help vortx", "did you mean 'vortex'", 2},
              {"completion csh", "bash, zsh or fish", 2}};
  for (const auto& row : rows) {
    const Outcome outcome = Start(row.words);
    EXPECT_EQ(outcome.code, row.code) << row.words;
    EXPECT_NE(outcome.output.find(row.says), std::string::npos) << outcome.output;
  }
}

// All pixels that FFmpeg shows, in red, green and blue.
Bytes Decoded(const std::string& path) {
  const std::string raw = path + ".raw";
  EXPECT_EQ(Shell("ffmpeg -v error -y -i '" + path + "' -fps_mode passthrough -f rawvideo -pix_fmt rgb24 '" + raw + "'")
                .output,
            "");
  return testing::ReadBytes(raw);
}

TEST(Program, WhatIsWrittenPlaysInAnotherProgram) {
  if (Shell("command -v ffmpeg").code != 0) GTEST_SKIP() << "ffmpeg is not installed";
  const TemporaryFolder folder;
  const std::string words = "Hi -e vortex -s 31 --frames 6 --delay 90 --pause 90 --background navy -o " + folder / "";
  ASSERT_EQ(Start(words + "a.rgba").code, 0);
  Bytes shown;  // seven frames: the last one rests, and is repeated
  const Bytes rgba = testing::ReadBytes(folder / "a.rgba");
  for (std::size_t i = 0; i < rgba.size(); ++i)
    if (i % 4 != 3) shown.push_back(rgba[i]);
  const struct {
    const char *name, *file;
    double most;  // mean difference
  } rows[] = {{"frames --frames-as png", "frames/frames.ffconcat", 0},
              {"a.avif", "a.avif", 0},
              {"b.avif --lossy 60", "b.avif", 4},
              {"c.avif --effort 3", "c.avif", 0},
              {"d.avif --effort 0 --lossy 99", "d.avif", 2},
              {"a.y4m", "a.y4m", 2},
              {"a.webm", "a.webm", 6}};
  for (const auto& row : rows) {
    const Outcome outcome = Start(words + row.name);
    if (outcome.output.find("was built without") != std::string::npos) continue;
    ASSERT_EQ(outcome.code, 0) << outcome.output;
    const Bytes pixels = Decoded(folder / row.file);
    ASSERT_EQ(pixels.size(), shown.size() / 7 * (row.name == std::string("a.y4m") ? 7 : 6)) << row.name;
    double sum = 0;
    for (std::size_t i = 0; i < pixels.size(); ++i) sum += std::abs(pixels[i] - shown[i]);
    EXPECT_LE(sum / static_cast<double>(pixels.size()), row.most) << row.name;
    const Outcome probe =
        Shell("ffprobe -v error -show_entries format=duration -of csv=p=0 '" + folder / row.file + "'");
    EXPECT_NEAR(std::atof(probe.output.c_str()), 0.63, 0.1) << row.name << probe.output;
  }
}

TEST(Program, EffortTradesTimeForSize) {
  const TemporaryFolder folder;
  for (const std::string format : {"gif", "png", "webp"}) {
    std::vector<std::uintmax_t> sizes;
    for (const char* effort : {"0", "6", "9"}) {
      const std::string name = folder / (effort + ("." + format));
      ASSERT_EQ(Start("Effort -e vortex -s 40 --frames 6 --effort " + (effort + (" -o " + name))).code, 0);
      sizes.push_back(std::filesystem::file_size(name));
    }
    EXPECT_GT(sizes[0], sizes[1]) << format;
    EXPECT_GE(sizes[1], sizes[2]) << format;
    ASSERT_EQ(Start("Effort -e vortex -s 40 --frames 6 -o " + folder / ("usual." + format)).code, 0);
    EXPECT_EQ(std::filesystem::file_size(folder / ("usual." + format)), sizes[1]) << format;
  }
}

TEST(Program, ADocumentOfAFormatWithAllColoursServesAPaletteFormatToo) {
  const TemporaryFolder folder;
  const std::string document = folder / "a.gm4";
  ASSERT_EQ(Start(kSmall + ("--alpha --save-document " + document + " -o " + folder / "a.png")).code, 0);
  const Outcome outcome = Start("--document " + document + " -o " + folder / "a.gif");
  EXPECT_EQ(outcome.code, 0) << outcome.output;
}

TEST(Program, ARefusedOptionIsNamedAsItWasTyped) {
  const TemporaryFolder folder;
  const std::string output = " -o " + folder / "a.gif";
  const std::pair<const char*, const char*> cases[] = {
      {"-e vortex --direction 3", "error: --direction takes left, right, or an index from 0 to 1, not '3'"},
      {"-e vortex --direction up", "error: --direction takes left, right, or an index from 0 to 1, not 'up'"},
      {"-e vortex --set @rotat=1", "error: the effect Vortex has no option '@rotat'; its options are "},
      {"--background '#ff000080'",
       "error: the background '#ff000080' has an alpha value, which is not possible here; write #RRGGBB"},
      {"-e radar --frames 8", "error: the effect Radar has no option --frames"},
      {"-e pinch --softness 3", "error: the effect Pinch has no option --softness"},
      {"--set FastRemap=7", "error: FastRemap takes 0 or 1, not '7'"}};
  for (const auto& [words, says] : cases) {
    const Outcome outcome = Start("Hi " + (words + output));
    EXPECT_EQ(outcome.code, 2);
    EXPECT_NE(outcome.output.find(says), std::string::npos) << outcome.output;
  }
}

TEST(Program, AFailedRunLeavesTheOldFileAndNothingElse) {
  const TemporaryFolder folder;
  const std::string target = folder / "a.gif";
  const Bytes old = {1, 2, 3};
  testing::WriteBytes(target, old);
  const struct {
    const char* arguments;
    int code;
  } cases[] = {{"--refuse task", 1}, {"--refuse image:2", 1},     {"-s 3", 2},
               {"-e nothing", 2},    {"--set MainFontSize=x", 2}, {"--record /dev/null/x", 1}};
  for (const auto& c : cases) {
    const Outcome outcome = Start(kSmall + ("-o " + target + " ") + c.arguments);
    EXPECT_EQ(outcome.code, c.code) << c.arguments << ": " << outcome.output;
    EXPECT_EQ(outcome.output.rfind("glyphmotion: error: ", 0), 0u) << outcome.output;
    EXPECT_EQ(outcome.output.find('\n'), outcome.output.size() - 1) << "one line: " << outcome.output;
    EXPECT_EQ(testing::ReadBytes(target), old) << c.arguments;
    EXPECT_EQ(folder.Entries(), 1u) << c.arguments;
  }
  EXPECT_EQ(Start(kSmall + ("-o " + folder / "no/a.gif")).code, 1);
}

TEST(Program, RecordsEveryCallAndEndsWithEmptyCounters) {
  const TemporaryFolder folder;
  for (const char* failure : {"", "--refuse task", "--refuse image:2", "--fail-allocation 9"}) {
    Start(kSmall + ("--record " + folder / "r ") + failure);
    const std::string calls = testing::ReadText(folder / "r/calls.jsonl");
    ASSERT_GT(calls.size(), 24u);
    EXPECT_EQ(calls.substr(calls.size() - 24), "\n{\"blocks\":0,\"locks\":0}\n") << failure;
  }
  EXPECT_EQ(Start(kSmall + ("--record " + folder / "r")).code, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "r/0005.dib"));
}

TEST(Program, ADocumentSavedAgainIsTheSameDocument) {
  const TemporaryFolder folder;
  const std::string first = folder / "first.gm4", second = folder / "second.gm4";
  const std::string options =
      kSmall + std::string("--fill texture:fractal3,seed=5 --shadow 'gradient:conical,#000-#fff'");
  ASSERT_EQ(Start(options + " --save-document " + first).code, 0);
  ASSERT_EQ(Start("--document " + first + " --save-document " + second).code, 0);
  EXPECT_EQ(testing::ReadText(first), testing::ReadText(second));
  EXPECT_NE(testing::ReadText(first).find("SPNBTN57=20"), std::string::npos);
  // What a line of a document would drop.
  ASSERT_EQ(Start("' =) a' -s 12 -e fuse --frames 2 -o " + folder / "a.rgba --save-document " + first).code, 0);
  ASSERT_EQ(Start("--document " + first + " -o " + folder / "b.rgba").code, 0);
  EXPECT_TRUE(testing::ReadBytes(folder / "a.rgba") == testing::ReadBytes(folder / "b.rgba"));
}

TEST(Program, APipeThatClosesLeavesTheWholeFileAndNothingElse) {
  const TemporaryFolder folder;
  const std::string command =
      "'" GLYPHMOTION_PROGRAM "' Hi -s 60 --progress -o '" + (folder / "a.gif") + "' 2>&1 | head -c 3 >/dev/null";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(folder.Entries(), 1u);
  EXPECT_TRUE(std::filesystem::exists(folder / "a.gif"));
  EXPECT_EQ(Start("--list keys | head -n 1").output, "AddDescriptiveCommentBlock      switch  20    1\n");
  EXPECT_EQ(Start("--list keys 2>&1 >/dev/full").code, 1);
}

TEST(Program, ASettingsFileOfAnotherKindIsKept) {
  const TemporaryFolder folder;
  testing::WriteBytes(folder / "letter.txt", {'D', 'e', 'a', 'r'});
  for (const std::string& name : {folder / "letter.txt", folder.path.string()}) {
    const Outcome outcome = Start(kSmall + ("-o " + folder / "a.gif --settings ") + name);
    EXPECT_EQ(outcome.code, 2);
    EXPECT_NE(outcome.output.find("'" + name + "'"), std::string::npos) << outcome.output;
  }
  EXPECT_EQ(testing::ReadText(folder / "letter.txt"), "Dear");
  for (int run = 0; run < 2; ++run)  // made, then read
    EXPECT_EQ(Start(kSmall + ("-o " + folder / "a.gif --settings " + folder / "a.ini")).code, 0);
  EXPECT_GT(std::filesystem::file_size(folder / "a.ini"), 1000u);
}

TEST(Program, MessagesAndExitCodesNameTheCause) {
  const TemporaryFolder folder;
  const std::string out = "-o " + folder / "a.gif ", empty = folder / "fonts.conf";
  testing::WriteBytes(empty, {'<', 'f', 'o', 'n', 't', 'c', 'o', 'n', 'f', 'i', 'g', '/', '>'});
  const struct {
    std::string arguments;
    int code;
    const char* says;
  } cases[] = {
      {"Hi -e ripple --shadow '#fff' " + out, 2, "Ripple has no shadow; leave it out"},
      {"Hi -e ripple --shadow none -s 20 " + out, 0, ""},
      {"'' --test-run", 1, "the text is empty"},
      {"Hi --save-document " + folder / "no/a.gm4", 1, "cannot be written"},
      {"Hi --fill texture:fractal2 --fail-allocation 34 -e breaker " + out, 1, "error"},
      {"swatch '#fff' -o " + folder / "no/a.png", 1, "no/a.png' cannot be written"},
      {"swatch '#fff' -o " + folder / "a.gif", 2, "unknown file type for a swatch"},
      {"Hi -o " + folder / "a.gm4", 2, "write --save-document in place of -o"},
      {"swatch", 2, "swatch needs a material; write swatch MATERIAL"},
      {"swatch tomato", 2, "swatch needs an output; write swatch MATERIAL"},
      {"swatch tomato " + out + "--width 0", 2, "--width 0 is not allowed: it takes a whole number from 1 to 8192"},
      {"swatch plaid -o " + folder / "a.png", 2, "'plaid' is not a fill; write #RRGGBB"},
      {"swatch tomato -o " + folder / "a.png", 0, ""},
      {"batch a b", 2, "unexpected argument 'b'; batch takes one file of jobs"},
      {"batch a -e vortex", 2, "'-e' cannot be used here; batch takes one file of jobs"},
      {"batch /dev/null --out /proc/none", 1, "the folder '/proc/none' cannot be created"},
      {"gallery", 2, "gallery needs a folder; write gallery FOLDER"},
      {"gallery " + folder / "none --look goldd", 2,
       "there is no look 'goldd'; did you mean 'gold'? (see --list looks)"},
      {std::string(240, 'W') + " -s 144 --still-text -e simple -o " + folder / "a.webp", 1, "at most 16383 pixels"},
      {"Hi --sample --alpha -o " + folder / "a.png", 2, "leave --alpha out"},
      {"Hi --sample --transparent " + out, 2, "leave --transparent out"},
      {"Hi -e vortex --still-text " + out, 0, "glyphmotion: note: --still-text changes nothing"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Start(c.arguments);
    EXPECT_EQ(outcome.code, c.code) << c.arguments;
    EXPECT_NE(outcome.output.find(c.says), std::string::npos) << outcome.output;
  }
  setenv("FONTCONFIG_FILE", empty.c_str(), 1);
  for (const std::string& arguments : {"Hi " + out, std::string("--list fonts"), "gallery " + folder / "page/one"})
    EXPECT_NE(Start(arguments).output.find("no font is installed"), std::string::npos) << arguments;
  EXPECT_FALSE(std::filesystem::exists(folder / "page")) << "a gallery without a picture leaves no folder";
  unsetenv("FONTCONFIG_FILE");
}

// Pipes without a writer, devices, folders and what is too large: one sentence, at once. `timeout` ends with 124 what
// waits.
TEST(Program, OnlyRegularFilesOfASensibleSizeAreReadAndWritten) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(folder / "folder");
  testing::WriteBytes(folder / "huge", {});
  std::filesystem::resize_file(folder / "huge", std::uintmax_t{5} << 30);
  const std::vector<std::string> paths = {folder / "pipe", folder / "folder", folder / "huge", "/dev/zero"};
  const char* const options[] = {"--save-document ", "--save-look ", "-o ",          "--settings ",
                                 "--document ",      "--look ",      "--font-file ", "--text-file ",
                                 "--fill image:",    "--fill mtrl:", "--fill tile:"};
  for (std::size_t i = 0; i < std::size(options); ++i) {
    const std::string option = options[i];
    for (const std::string& path : std::span(paths).first(i < 3 ? 2 : paths.size())) {
      std::string tail = option.ends_with("tile:") ? "#1" : option == "-o " ? " --format gif" : "";
      if (i >= 3) tail += " -o " + folder / "a.gif";
      const char* text = option == "--text-file " ? "" : "Hi ";
      const Outcome outcome =
          StartAfter("timeout 20 ", std::string(" -e simple -s 20 --frames 6 ") + text + option + path + tail);
      EXPECT_TRUE(outcome.code == 1 || outcome.code == 2) << option << path << ": " << outcome.output;
      EXPECT_EQ(outcome.output.rfind("glyphmotion: error: ", 0), 0u) << outcome.output;
      EXPECT_NE(outcome.output.find("'" + path + "'"), std::string::npos) << outcome.output;
      EXPECT_EQ(outcome.output.find('\n'), outcome.output.size() - 1) << outcome.output;
    }
  }
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  EXPECT_LT(usage.ru_maxrss, 1 << 20) << "kilobytes: nothing reads all of a huge file";
  EXPECT_EQ(folder.Entries(), 3u);
}

TEST(Program, SignalsEndItWithTheirCodesAndLeaveNothing) {
  const TemporaryFolder folder;
  const std::pair<const char*, int> cases[] = {{"INT", 130}, {"TERM", 143}, {"HUP", 129}};
  for (const auto& [name, code] : cases) {
    const Outcome outcome =
        Shell("cd " + folder.path.string() +
              "; '" GLYPHMOTION_PROGRAM
              "' -q 'Signals that end it' -e vortex -s 144 --frames 400 -o a.gif & p=$!; sleep 0.4; kill -" +
              name + " $p; wait $p");
    EXPECT_EQ(outcome.code, code) << name << ": " << outcome.output;
    EXPECT_EQ(outcome.output, "glyphmotion: error: interrupted; nothing was written\n");
    EXPECT_EQ(folder.Entries(), 0u);
    // Waiting for a reader that has stopped reading.
    const Outcome stuck = Shell("cd " + folder.path.string() +
                                "; mkfifo p; sleep 5 <p >&- 2>&- & exec 3>p; head -c 65536 /dev/zero >&3; "
                                "'" GLYPHMOTION_PROGRAM "' --list keys >&3 & p=$!; sleep 0.4; kill -" +
                                name + " $p; wait $p; c=$?; kill %1; rm p; exit $c");
    EXPECT_EQ(stuck.code, code) << name << ": " << stuck.output;
  }
}

TEST(Program, ClosedStreamsDoNotGetTheirNumbersInTheFile) {
  const TemporaryFolder folder;
  ASSERT_EQ(Start(kSmall + ("-o " + folder / "open.gif")).code, 0);
  for (const char* closed : {"<&-", ">&-", "2>&-", "<&- >&- 2>&-"}) {
    const Outcome outcome = Shell(std::string("exec '" GLYPHMOTION_PROGRAM "'") + kSmall + "--progress -o " +
                                  folder / "closed.gif" + " " + closed);
    EXPECT_EQ(outcome.code, 0) << closed;
    EXPECT_EQ(testing::ReadBytes(folder / "closed.gif"), testing::ReadBytes(folder / "open.gif")) << closed;
  }
}

TEST(Program, WhatCannotBeWrittenIsNamedInOneSentenceAndNothingElseIsLeft) {
  const TemporaryFolder folder;
  testing::WriteBytes(folder / "fixed.gif", {1});
  chmod((folder / "fixed.gif").c_str(), 0444);
  const std::string big = "'Hello there' -e gumdrops -s 90 --frames 4 -o ", small = "Hi -s 12 --test-run ";
  const struct {
    std::string arguments, name;
    const char* says;
  } cases[] = {{big, "fixed.gif", "read-only"},
               {big, "new.gif", "ulimit -f"},
               {big, "new.png", "ulimit -f"},
               {"--frames-as png " + big, "frames", "ulimit -f"},
               {"swatch texture:Marble -o ", "new.png", "ulimit -f"},
               {small + "--settings ", "new.ini", "free disk space"},
               {small + "--save-document ", "new.gm4", "free disk space"}};
  for (const auto& c : cases) {
    const std::string path = folder / c.name, before = c.says[0] == 'r' ? "" : "ulimit -f 1; ";
    const Outcome outcome = StartAfter(before.c_str(), c.arguments + path);
    EXPECT_EQ(outcome.code, 1) << c.name << outcome.output;
    EXPECT_NE(outcome.output.find(c.says), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("'" + path + "'"), std::string::npos) << outcome.output;
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1) << outcome.output;
    EXPECT_EQ(folder.Entries(), 1u) << c.name;
  }
  const std::string longest = std::string(251, 'n') + ".gif";
  for (int round = 0; round < 2; ++round) EXPECT_EQ(Start(kSmall + ("-o " + folder / longest)).code, 0);
  EXPECT_EQ(folder.Entries(), 2u);
  EXPECT_EQ(Start("Hi -q -s 16 -e vortex --still-text -o " + folder / "quiet.gif").output, "");
}

}  // namespace
}  // namespace glyphmotion
