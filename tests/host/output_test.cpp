// SPDX-License-Identifier: MIT
// Files that appear whole or not at all, and the recorder's.
#include <gtest/gtest.h>

#include "glyphmotion/host_contract.h"
#include "host/encoders/output_file.h"
#include "host/host_helpers.h"
#include "host/recording/recorder.h"

namespace glyphmotion {
namespace {

using testing::Bytes;
using testing::TemporaryFolder;

TEST(Output, AFileAppearsOnlyWhenKept) {
  const TemporaryFolder folder;
  const std::string target = folder / "a.gif";
  const Bytes old = {1, 2, 3}, fresh = {9, 8};
  std::string error;
  {
    Output output = Output::File(target, error);
    ASSERT_TRUE(output) << error;
    EXPECT_TRUE(output.Write(fresh));
    EXPECT_FALSE(std::filesystem::exists(target));
  }
  EXPECT_EQ(folder.Entries(), 0u) << "nothing is left of what was not kept";
  testing::WriteBytes(target, old);
  {
    Output output = Output::File(target, error);
    output.Write(fresh);
  }
  EXPECT_EQ(testing::ReadBytes(target), old);
  Output output = Output::File(target, error);
  output.Write(fresh);
  EXPECT_EQ(output.Keep(), "");
  EXPECT_EQ(testing::ReadBytes(target), fresh);
  EXPECT_EQ(folder.Entries(), 1u);
}

TEST(Output, AFolderIsReplacedOnlyIfItHoldsPictures) {
  const TemporaryFolder folder;
  const std::string target = folder / "frames";
  for (int round = 0; round < 2; ++round) {
    std::string error;
    Output output = Output::Folder(target + (round ? "/" : ""), error);
    ASSERT_TRUE(output) << error;
    output.WriteMember(round ? "0000.png" : "0007.png", Bytes{5});
    EXPECT_EQ(output.Keep(), "");
  }
  EXPECT_TRUE(std::filesystem::exists(target + "/0000.png"));
  EXPECT_FALSE(std::filesystem::exists(target + "/0007.png")) << "of the run before";
  EXPECT_EQ(folder.Entries(), 1u);
  testing::WriteBytes(target + "/letter.txt", {1});
  std::string error;
  EXPECT_FALSE(Output::Folder(target, error));
  EXPECT_NE(error.find("letter.txt"), std::string::npos);
}

TEST(Output, WhatCannotBeWrittenIsSaidAtOnce) {
  const TemporaryFolder folder;
  for (const std::string& target : {folder / "no/such/a.gif", folder.path.string(), std::string("/dev/null")}) {
    std::string error;
    EXPECT_FALSE(Output::File(target, error));
    EXPECT_NE(error.find(target), std::string::npos) << error;
  }
  testing::WriteBytes(folder / "file", {1});
  std::string error;
  EXPECT_FALSE(Output::Folder(folder / "file", error));
  EXPECT_NE(error.find("file"), std::string::npos);
}

TEST(Output, ALinkIsFollowedEvenToAFileThatIsNotThereYet) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink("second", folder / "first");
  std::filesystem::create_symlink("real.gif", folder / "second");
  std::filesystem::create_symlink("loop", folder / "loop");
  std::string error;
  Output output = Output::File(folder / "first", error);
  ASSERT_TRUE(output) << error;
  EXPECT_TRUE(output.Write(Bytes{1, 2}));
  EXPECT_EQ(output.Keep(), "");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "first") && std::filesystem::is_symlink(folder / "second"));
  EXPECT_EQ(testing::ReadBytes(folder / "real.gif"), (Bytes{1, 2}));
  EXPECT_FALSE(Output::File(folder / "loop", error));
  EXPECT_NE(error.find("link"), std::string::npos) << error;
}

HostCallEvent Event(std::uint32_t operation, const char* name, std::uint64_t a, std::uint64_t b) {
  HostCallEvent event;
  event.operation = operation;
  event.name = name;
  event.a = a;
  event.b = b;
  return event;
}

TEST(Recorder, LinesHaveTheirExactForm) {
  EXPECT_EQ(CallLine(Event(HostOpProgress, "HostOpProgress", 3, 64), ""),
            R"({"op":13,"name":"HostOpProgress","a":3,"b":64})");
  EXPECT_EQ(CallLine(Event(HostOpSetBackground, "HostOpSetBackground", 100, static_cast<std::uint64_t>(-1)), ""),
            R"({"op":15,"name":"HostOpSetBackground","a":100,"b":-1})");
  HostCallEvent text = Event(HostOpStatusText, "HostOpStatusText", 0, 0x7fff12345678);
  text.text = "Building";
  EXPECT_EQ(CallLine(text, ""), R"({"op":10,"name":"HostOpStatusText","a":0,"b":0,"text":"Building"})");
  Bytes record(20);
  for (std::size_t i = 0; i < record.size(); ++i) record[i] = static_cast<std::uint8_t>(i + 0xA0);
  HostCallEvent image = Event(HostOpAddImage, "HostOpAddImage", 0, 0x7fff12345678);
  image.record = record;
  EXPECT_EQ(
      CallLine(image, "0003.dib"),
      R"({"op":2,"name":"HostOpAddImage","a":0,"b":0,"record":"a0a1a2a3a4a5a6a70000000000000000b0b1b2b3","image":"0003.dib"})");
}

TEST(Recorder, WritesCallsImagesAndTheCounters) {
  const TemporaryFolder folder;
  const std::string target = folder / "a/b";
  std::string error;
  std::filesystem::create_directories(target);
  testing::WriteBytes(target + "/0099.dib", {1});
  {
    Recorder recorder(target, error);
    ASSERT_EQ(error, "");
    HostImageRecord record{};
    record.number = 12;
    const Bytes dib = {1, 2, 3};
    HostCallEvent event = Event(HostOpAddImage, "HostOpAddImage", 0, 1);
    event.record = {reinterpret_cast<const std::uint8_t*>(&record), sizeof record};
    event.image = dib;
    recorder.Call(event);
    RenderResult result;
    result.locks = 2;
    EXPECT_EQ(recorder.End(result), "");
    EXPECT_EQ(testing::ReadBytes(target + "/0012.dib"), dib);
  }
  const std::string calls = testing::ReadText(target + "/calls.jsonl");
  EXPECT_EQ(calls.substr(calls.size() - 24), "\n{\"blocks\":0,\"locks\":2}\n");
  EXPECT_NE(calls.find(R"("image":"0012.dib"})"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(target + "/0099.dib")) << "an image of an earlier recording";
  testing::WriteBytes(folder / "file", {1});
  Recorder refused(folder / "file", error);
  EXPECT_NE(error.find("file"), std::string::npos);
}

}  // namespace
}  // namespace glyphmotion
