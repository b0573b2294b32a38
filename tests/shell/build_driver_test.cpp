// SPDX-License-Identifier: MIT
// The calls of a run, in order and with their values, as a host sees them.
#include <gtest/gtest.h>

#include <cstring>

#include "effects/build_harness.h"
#include "glyphmotion/host_contract.h"

namespace glyphmotion::test {
namespace {

struct Calls {
  RenderResult result;
  std::vector<std::string> names;  ///< runs of progress folded into one
  std::vector<std::string> stages;
  HostTaskRecord task{};
  std::vector<HostImageRecord> images;
  std::vector<std::vector<std::uint8_t>> pixels;
  std::uint64_t backgroundKind = 0, background = 0, endedWith = 99;
};

Calls Record(const Job& job) {
  Calls calls;
  Sink sink;
  sink.call = [&](const HostCallEvent& event) {
    const std::string name = event.name;
    if (name != "HostOpProgress" || calls.names.empty() || calls.names.back() != name) calls.names.push_back(name);
    if (event.operation == HostOpStatusText) calls.stages.emplace_back(event.text);
    if (event.operation == HostOpNewTask || event.operation == HostOpNewTestTask)
      std::memcpy(&calls.task, event.record.data(), sizeof calls.task);
    if (event.operation == HostOpAddImage) {
      std::memcpy(&calls.images.emplace_back(), event.record.data(), sizeof(HostImageRecord));
      calls.pixels.emplace_back(event.image.begin(), event.image.end());
    }
    if (event.operation == HostOpSetBackground) {
      calls.backgroundKind = event.a;
      calls.background = event.b;
    }
    if (event.operation == HostOpEndTask) calls.endedWith = event.a;
  };
  calls.result = Render(job, sink);
  return calls;
}

Job PaletteJob(const Settings& settings = {}) {
  Job job = SmallJob("simple", settings);
  job.paletteFormat = true;
  job.defaults.back() = {"MainFontName", "Liberation Sans"};
  job.defaults.emplace_back("Truecolour", "0");
  job.settings.insert(job.settings.begin(), {"Style000Frames", "3"});
  return job;
}

TEST(BuildDriver, CallsComeInOrderWithTrueValues) {
  Job job = PaletteJob({{"20", "1"}});
  const Calls calls = Record(job);
  ASSERT_EQ(calls.result.status, RenderStatus::Done) << calls.result.message;
  const std::vector<std::string> expected = {
      "HostOpGetFileDialogSize", "HostOpBeforeWork", "HostOpProgress",   "HostOpStatusText",    "HostOpProgress",
      "HostOpStatusText",        "HostOpProgress",   "HostOpNewTask",    "HostOpSetBackground", "HostOpAddImage",
      "HostOpAddImage",          "HostOpAddImage",   "HostOpAddComment", "HostOpEndTask"};
  EXPECT_EQ(calls.names, expected);
  EXPECT_EQ(calls.stages, (std::vector<std::string>{"Building", "Remapping"}));
  EXPECT_EQ(calls.task.size, 1080u);
  EXPECT_EQ(calls.task.version, 0x1000u);
  EXPECT_EQ(calls.task.bitsPerPixel, 8u);
  EXPECT_EQ(calls.task.imageCount, 3u);
  EXPECT_EQ(calls.task.transparentIndex, 0) << "Transparent is off";
  EXPECT_EQ(calls.task.palette[3 * 255], 255);
  ASSERT_EQ(calls.images.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(calls.images[i].size, 112u);
    EXPECT_EQ(calls.images[i].number, i);
    EXPECT_EQ(calls.images[i].standAlone, 0u);
    EXPECT_EQ(calls.images[i].transparentIndex, -1);
    EXPECT_EQ(calls.pixels[i][14], 8) << "bits a pixel";
  }
  EXPECT_EQ(calls.backgroundKind, 101u);
  EXPECT_EQ(calls.background, 255u) << "white is the last entry of the default palette";
  EXPECT_EQ(calls.endedWith, 1u);
  EXPECT_EQ(calls.result.blocks, 0u);
  EXPECT_EQ(calls.result.locks, 0u);
}

TEST(BuildDriver, FixedPalettesGiveTheirDepthsAlsoToTrueColourTasks) {
  const unsigned depths[] = {1, 4, 5, 6, 7, 8, 8, 8, 8};
  for (int palette = 0; palette < 9; ++palette) {
    const Calls calls = Record(PaletteJob({{"MainPalette", std::to_string(palette)}}));
    EXPECT_EQ(calls.task.bitsPerPixel, depths[palette]) << calls.result.message;
    const unsigned stored = depths[palette] == 1 ? 1 : depths[palette] <= 4 ? 4 : 8;
    EXPECT_EQ(calls.pixels[0][14], stored);
    Job trueColour = PaletteJob({{"MainPalette", std::to_string(palette)}, {"Truecolour", "1"}});
    const Calls other = Record(trueColour);
    EXPECT_EQ(other.task.bitsPerPixel, depths[palette]);
    EXPECT_EQ(other.pixels[0][14], 24);
  }
}

TEST(BuildDriver, CustomPalettesReserveOneEntryForTheBackground) {
  const Calls masked = Record(PaletteJob({{"14", "1"}, {"35", "1"}}));
  ASSERT_EQ(masked.result.status, RenderStatus::Done) << masked.result.message;
  EXPECT_EQ(masked.stages, (std::vector<std::string>{"Building", "Quantizing", "Remapping"}));
  const int index = masked.task.transparentIndex;
  ASSERT_GT(index, 1);
  EXPECT_EQ(masked.background, static_cast<std::uint64_t>(index));
  for (const HostImageRecord& image : masked.images) {
    EXPECT_EQ(image.transparentIndex, index);
    EXPECT_EQ(image.standAlone, 1u);
  }
  EXPECT_EQ(masked.task.palette[3 * index], 255) << "the background is white";
  EXPECT_EQ(masked.pixels[0][40 + 1024], index) << "a corner shows the background";
  EXPECT_EQ(masked.task.bitsPerPixel, [&] {
    unsigned depth = 1;
    while (1 << depth < index + 1) ++depth;
    return depth;
  }());
}

TEST(BuildDriver, SupercompressMarksUnchangedPixels) {
  const Calls calls = Record(PaletteJob({{"14", "1"}, {"19", "1"}, {"35", "1"}}));
  ASSERT_EQ(calls.result.status, RenderStatus::Done) << calls.result.message;
  EXPECT_EQ(calls.stages, (std::vector<std::string>{"Building", "Quantizing", "Supercompressing", "Remapping"}));
  EXPECT_EQ(calls.images[0].transparentIndex, -1);
  EXPECT_GT(calls.images[1].transparentIndex, 0);
  EXPECT_EQ(calls.images[1].standAlone, 0u) << "Supercompress puts Transparent out of force";
  // A single frame has nothing to be compared with.
  const Calls single = Record(PaletteJob({{"14", "1"}, {"19", "1"}, {"22", "0"}}));
  EXPECT_EQ(single.stages, (std::vector<std::string>{"Building", "Quantizing", "Remapping"}));
  EXPECT_EQ(single.images[0].transparentIndex, -1);
}

TEST(BuildDriver, ATestOpensATestTaskAndRendersWithoutAlpha) {
  Job job = SmallJob("simple", {{"62", "1"}, {"22", "0"}});
  job.action = Job::Action::Test;
  job.saveDocumentFile.clear();
  const Calls calls = Record(job);
  ASSERT_EQ(calls.result.status, RenderStatus::Done) << calls.result.message;
  EXPECT_NE(std::find(calls.names.begin(), calls.names.end(), "HostOpNewTestTask"), calls.names.end());
  EXPECT_EQ(calls.pixels[0][14], 24) << "a Test renders without alpha";
  EXPECT_EQ(calls.images[0].standAlone, 0u);
}

TEST(BuildDriver, RefusalsSayWhatHappenedAndLeaveNothing) {
  Job job = PaletteJob();
  job.refuseTask = true;
  Calls calls = Record(job);
  EXPECT_EQ(calls.result.dialogMessages, std::vector<std::string>{"Error creating new task."});
  EXPECT_EQ(calls.result.status, RenderStatus::Failed);
  EXPECT_EQ(calls.result.blocks + calls.result.locks, 0u);

  job.refuseTask = false;
  job.refuseImage = 2;
  calls = Record(job);
  EXPECT_EQ(calls.result.dialogMessages,
            std::vector<std::string>{"There has been an error adding an image to the current file object."});
  EXPECT_EQ(calls.endedWith, 0u);
  EXPECT_EQ(calls.names.back(), "HostOpEndTask");
  EXPECT_EQ(calls.result.blocks + calls.result.locks, 0u);
}

TEST(BuildDriver, HostsThatAreTooOldOrMissingAreRefused) {
  HostCallTable table{};
  table.version = 0x0FFF;
  EXPECT_EQ(PLUGIN16DoBuild(nullptr, &table), 0);
  EXPECT_EQ(PLUGIN16DoBuild(nullptr, nullptr), 0);
  table.version = 0x2000;
  EXPECT_EQ(PLUGIN16DoBuild(nullptr, &table), 1) << "a table without a function ends the dialog with a message";
  std::vector<unsigned char> bytes(400, 0xAA);
  auto* info = reinterpret_cast<PluginInfoRecord*>(bytes.data());
  info->size = 400;
  EXPECT_EQ(PLUGIN16GetPluginParams(info), 1);
  EXPECT_STREQ(info->name, "Glyphmotion #4");
  EXPECT_EQ(info->size, 400u);
  EXPECT_EQ(info->version, 0x1000u);
  EXPECT_EQ(bytes[399], 0);
}

}  // namespace
}  // namespace glyphmotion::test
