// SPDX-License-Identifier: MIT
// The program as people start it: exit codes, messages, files.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>

#include "host/host_helpers.h"

namespace glyphmotion {
namespace {

using testing::Bytes;
using testing::TemporaryFolder;

struct Outcome {
  int code;
  std::string output;  // both streams
};

Outcome Run(const std::string& arguments) {
  std::FILE* pipe = popen((std::string("'" GLYPHMOTION_PROGRAM "' ") + arguments + " 2>&1").c_str(), "r");
  Outcome outcome{-1, ""};
  for (int c; (c = std::fgetc(pipe)) != EOF;) outcome.output += static_cast<char>(c);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) outcome.code = WEXITSTATUS(status);
  return outcome;
}

const char* const kSmall = " Hi -e simple -s 20 --frames 6 ";

TEST(Program, WritesEachFormatAndSaysNothingOnAPipe) {
  const TemporaryFolder folder;
  const struct { const char *name, *magic; } cases[] = {{"a.gif", "GIF89a"}, {"a.png", "\x89PNG"}, {"a.webp", "RIFF"}};
  for (const auto& c : cases) {
    const Outcome outcome = Run(kSmall + ("-o " + folder / c.name));
    EXPECT_EQ(outcome.code, 0) << outcome.output;
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(testing::ReadText(folder / c.name).rfind(c.magic, 0), 0u) << c.name;
  }
  EXPECT_EQ(folder.Entries(), 3u);
  EXPECT_EQ(Run(kSmall + ("--frames-as png -o " + folder / "frames")).code, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "frames/0005.png"));
  EXPECT_EQ(Run(kSmall + ("--sample -o " + folder / "sample.png")).code, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "sample.png"));
}

TEST(Program, AFailedRunLeavesTheOldFileAndNothingElse) {
  const TemporaryFolder folder;
  const std::string target = folder / "a.gif";
  const Bytes old = {1, 2, 3};
  testing::WriteBytes(target, old);
  const struct {
    const char* arguments;
    int code;
  } cases[] = {{"--refuse task", 1}, {"--refuse image:2", 1},     {"--fail-allocation 3", 1}, {"-s 3", 2},
               {"-e nothing", 2},    {"--set MainFontSize=x", 2}, {"--record /dev/null/x", 1}};
  for (const auto& c : cases) {
    const Outcome outcome = Run(kSmall + ("-o " + target + " ") + c.arguments);
    EXPECT_EQ(outcome.code, c.code) << c.arguments << ": " << outcome.output;
    EXPECT_EQ(outcome.output.rfind("glyphmotion: error: ", 0), 0u) << outcome.output;
    EXPECT_EQ(outcome.output.find('\n'), outcome.output.size() - 1) << "one line: " << outcome.output;
    EXPECT_EQ(testing::ReadBytes(target), old) << c.arguments;
    EXPECT_EQ(folder.Entries(), 1u) << c.arguments;
  }
  EXPECT_EQ(Run(kSmall + ("-o " + folder / "no/a.gif")).code, 1);
}

TEST(Program, RecordsEveryCallAndEndsWithEmptyCounters) {
  const TemporaryFolder folder;
  for (const char* failure : {"", "--refuse task", "--refuse image:2", "--fail-allocation 9"}) {
    Run(kSmall + ("--record " + folder / "r ") + failure);
    const std::string calls = testing::ReadText(folder / "r/calls.jsonl");
    ASSERT_GT(calls.size(), 24u);
    EXPECT_EQ(calls.substr(calls.size() - 24), "\n{\"blocks\":0,\"locks\":0}\n") << failure;
  }
  EXPECT_EQ(Run(kSmall + ("--record " + folder / "r")).code, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "r/0005.dib"));
}

TEST(Program, TheSameJobGivesTheSameBytes) {
  const TemporaryFolder folder;
  for (const char* name : {"a.gif", "b.gif"}) Run(kSmall + ("-o " + folder / name));
  EXPECT_EQ(testing::ReadBytes(folder / "a.gif"), testing::ReadBytes(folder / "b.gif"));
}

}  // namespace
}  // namespace glyphmotion
