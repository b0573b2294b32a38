// SPDX-License-Identifier: MIT
// The calls of a run, in order and with their values, as a host sees them.
#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "checksums/checksum_list.h"
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

std::string SumOf(const Calls& calls) {
  testing::Hash hash;
  const auto bytes = [&](const auto& data) {
    hash.Add({reinterpret_cast<const std::uint8_t*>(&data[0]), sizeof data});
  };
  for (const std::string& stage : calls.stages) hash.Add({stage[0]});
  bytes(calls.task.palette);
  hash.Add({calls.task.bitsPerPixel, calls.task.transparentIndex, static_cast<std::int64_t>(calls.background)});
  for (std::size_t i = 0; i < calls.images.size(); ++i) {
    hash.Add({calls.images[i].transparentIndex, calls.images[i].standAlone});
    hash.Add(calls.pixels[i]);
  }
  return hash.Text();
}

// Sixty-four choices of options before each background, with an automatic palette, and with one of fewer colours, the
// best one or another dither; build_options.txt keeps what a host gets.
TEST(BuildDriver, GivesTheCallsOfTheListForEveryChoiceOfOptions) {
  const auto bit = [](int number, int i) { return std::string(number >> i & 1 ? "1" : "0"); };
  const int limits[] = {256, 2, 3, 16, 40, 255};
  std::vector<std::string> rows;
  for (const char* background : {"#ffffff", "#204060", "gradient:#ff8000-#0000ff"}) {
    for (int i = 0; i < 128; ++i) {
      // Dither and true colour, which overrides most other options, are chosen now and then.
      Job job = PaletteJob({{"Truecolour", i < 64 && i % 7 == 6 ? "1" : "0"},
                            {"14", i < 64 ? bit(i, 0) : "1"},
                            {"15", i % 3 == 0 ? "1" : "0"},
                            {"19", bit(i, 1)},
                            {"35", bit(i, 2)},
                            {"21", bit(i, 3)},
                            {"22", bit(i, 4)},
                            {"MainAntialias", bit(i, 5)}});
      if (i < 64) job.settings.insert(job.settings.begin(), {"MainPalette", "5"});
      job.background = background;
      job.fill = i & 32 ? "gradient:#00ff00-#ff00ff" : "#000000";
      if (i >= 64) {
        job.palette = i % 4 ? Job::Palette::Best : Job::Palette::Automatic;
        job.colours = limits[i % 6];
        job.dithering = static_cast<Job::Dithering>(i / 3 % 3);
      }
      const Calls calls = Record(job);
      EXPECT_EQ(calls.result.status, RenderStatus::Done) << calls.result.message;
      rows.push_back(std::string(background) + "," + std::to_string(i) + "," + SumOf(calls));
    }
  }
  // A ramp of 253 greys and letters with none, one or two colours of their own: from 254 colours on there is no room
  // for the background any more.
  for (const char* fill : {"#808080", "#ff0000", "gradient:#ff0000-#0000ff"}) {
    for (const char* outline : {"#808080", "#00ff00"}) {
      for (const char* supercompress : {"0", "1"}) {
        Job job = PaletteJob(
            {{"22", "0"}, {"MainAntialias", "0"}, {"MainPadding", "120"}, {"14", "1"}, {"19", supercompress}});
        job.background = "gradient:#000000-#ffffff";
        job.fill = fill;
        job.outline = outline;
        rows.push_back(std::string(fill) + "," + outline + "," + supercompress + "," + SumOf(Record(job)));
      }
    }
  }
  testing::ExpectList("build_options.txt", rows);
}

TEST(BuildDriver, TheBestPaletteServesFewColoursAndNumbersOfColoursHaveBounds) {
  // The octree keeps these colours well, but not in four entries.
  for (const int colours : {256, 4}) {
    Job job = PaletteJob({{"14", "1"}});
    job.fill = "gradient:#00ff00-#ff00ff";
    job.colours = colours;
    const auto octree = Record(job).pixels;
    job.palette = Job::Palette::Best;
    const auto best = Record(job).pixels;
    job.palette = Job::Palette::Automatic;
    EXPECT_EQ(Record(job).pixels == octree, colours == 256);
    EXPECT_EQ(Record(job).pixels == best, colours == 4);
    // The entry for unchanged pixels is one of them.
    Job marked = PaletteJob({{"19", "1"}, {"MainPadding", "120"}});
    marked.background = "gradient:#00ff00-#ff00ff-#204060";
    marked.palette = Job::Palette::Best;
    marked.colours = colours;
    const Calls calls = Record(marked);
    ASSERT_EQ(calls.result.status, RenderStatus::Done) << calls.result.message;
    EXPECT_EQ(calls.images[1].transparentIndex, colours - 1);
  }
  Job wrong = PaletteJob();
  for (wrong.colours = 1; wrong.colours < 300; wrong.colours += 256)
    EXPECT_EQ(Record(wrong).result.status, RenderStatus::BadJob);
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

TEST(BuildDriver, ABuildWithAlphaNeedsNoIndexAndATestIsRenderedWithoutAlpha) {
  Job job = SmallJob("simple", {{"62", "1"}, {"22", "0"}});
  job.background = "#204060";
  for (const bool neutral : {false, true}) {
    job.settings.emplace_back("63", neutral ? "1" : "0");
    const Calls calls = Record(job);
    ASSERT_EQ(calls.images.size(), 1u) << calls.result.message;
    EXPECT_EQ(calls.pixels[0][14], 32) << "bits a pixel";
    EXPECT_EQ(calls.images[0].standAlone, 1u);
    EXPECT_EQ(calls.images[0].transparentIndex, 0);
    EXPECT_EQ(calls.task.transparentIndex, 0);
    EXPECT_EQ(calls.task.width, calls.pixels[0][4]);
    EXPECT_EQ(calls.task.height, calls.pixels[0][8]);
    EXPECT_EQ(calls.backgroundKind, 100u);
    EXPECT_EQ(calls.background, neutral ? 0x7F7F7Fu : 0x604020u);
  }
  job.action = Job::Action::Test;
  const Calls calls = Record(job);
  ASSERT_EQ(calls.result.status, RenderStatus::Done) << calls.result.message;
  EXPECT_NE(std::find(calls.names.begin(), calls.names.end(), "HostOpNewTestTask"), calls.names.end());
  EXPECT_EQ(calls.pixels[0][14], 24);
  EXPECT_EQ(calls.images[0].standAlone, 0u);
  EXPECT_EQ(calls.images[0].transparentIndex, -1);
  EXPECT_EQ(calls.background, 0x604020u);
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
