// SPDX-License-Identifier: MIT
// The calls of a run, in order and with their values, as a host sees them.
#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "effects/build_harness.h"
#include "glyphmotion/host_contract.h"
#include "image/best_palette.h"
#include "image/fixed_palettes.h"
#include "image/quantise.h"
#include "image/random_images.h"
#include "image/remap.h"

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

// --- The plain twin of what becomes of the frames: one step after the other, one pixel at a time ---

struct Choice {
  bool trueColour, custom, dither, supercompress, transparent, maskBackground;
  Colour background;
  bool best = false;
  int colours = 256;
  Dithering dithering = Dithering::Diffuse;
};

struct PlainRun {
  std::vector<std::string> stages = {"Building"};
  Palette palette{};
  int depth = 0, taskIndex = 0, hostBackground = 0;
  int quantised = 0;  ///< colours that the quantiser gave
  std::vector<PackedDib> images;
  std::vector<int> indices;  ///< transparent ones
};

// An index wherever `other` has a value; of which only the bits of a colour count, or all.
void Paint(const PackedDib& image, const PackedDib& other, std::uint32_t value, std::uint32_t bits, int index) {
  const DibView to(image), from(other);
  for (int y = 0; y < to.Height(); ++y) {
    for (int x = 0; x < to.Width(); ++x) {
      if ((from.GetPixel(x, y) & bits) == (value & bits)) to.SetPixel(x, y, static_cast<std::uint32_t>(index));
    }
  }
}

// 1 where two pictures of one size agree.
PackedDib Agreement(const PackedDib& a, const PackedDib& b) {
  const DibView first(a), second(b);
  PackedDib same = BlankDib(first.Width(), first.Height(), nullptr, 8);
  for (int y = 0; y < first.Height(); ++y) {
    for (int x = 0; x < first.Width(); ++x) {
      DibView(same).SetPixel(x, y, first.GetPixel(x, y) == second.GetPixel(x, y));
    }
  }
  return same;
}

// The palette that is made for the frames; the number of its entries without the reserved one.
int PlainPalette(const std::vector<PackedDib>& frames, bool wants255, bool reserves, const Choice& choice,
                 PlainRun& run) {
  TestFrames list;
  for (const PackedDib& frame : frames) list.Append(DuplicateDib(frame));
  int n = choice.colours - wants255;
  const Rgb background = RgbOf(choice.background);
  if (choice.best) {
    const bool hides = choice.maskBackground && (!choice.dither || choice.dithering == Dithering::Ordered);
    EXPECT_TRUE(BestPalette(list.list, hides ? std::optional(background) : std::nullopt, n, run.palette));
  } else {
    EXPECT_TRUE(QuantiseFrames(list.list, n, run.palette));
  }
  EXPECT_LE(n, choice.colours - wants255);
  run.quantised = n;
  const auto end = run.palette.begin() + n;
  const bool has = choice.best && std::find(run.palette.begin(), end, background) != end;
  if (!choice.maskBackground && !has) {
    const bool room = n < choice.colours - (choice.best ? 0 : 2);
    const int at = room ? n : NearestColour(background.red, background.green, background.blue, run.palette, n);
    run.palette[static_cast<std::size_t>(at)] = background;
    n += room;
  }
  SortPaletteByBrightness(run.palette, n);
  if (reserves) run.palette[static_cast<std::size_t>(n)] = background;
  for (run.depth = choice.best || choice.colours < 256 ? 2 : 1; n + reserves > 1 << run.depth;) ++run.depth;
  return n;
}

PlainRun RunPlainly(const std::vector<PackedDib>& frames, Choice choice) {
  PlainRun run;
  const bool wanted = choice.supercompress && !choice.trueColour;
  const bool supercompress = wanted && frames.size() > 1;
  if (wanted || choice.background == kNoColour) choice.transparent = choice.maskBackground = false;
  choice.maskBackground |= choice.transparent;
  int count = 256, index = -1;
  LoadFixedPalette(&run.palette, &run.depth, 5);
  std::vector<PackedDib> dithered;
  if ((choice.custom || choice.best) && !choice.trueColour) {
    run.stages.emplace_back("Quantizing");
    const bool reserves = supercompress || choice.maskBackground;
    count = index = PlainPalette(frames, wanted || choice.maskBackground, reserves, choice, run);
  }
  if (supercompress) run.stages.emplace_back("Supercompressing");
  run.stages.emplace_back("Remapping");
  for (std::size_t i = 0; i < frames.size(); ++i) {
    run.indices.push_back(choice.transparent || (supercompress && i > 0) ? index : -1);
    if (choice.trueColour) {
      run.images.push_back(DuplicateDib(frames[i]));
      continue;
    }
    ColourMatcher matcher(run.palette, run.depth, count, {});
    PackedDib image = RemapImage(frames[i], matcher);
    if (choice.dither) {
      image = choice.dithering == Dithering::Ordered ? DitherOrdered(frames[i], matcher)
              : choice.dithering == Dithering::Stable && i > 0
                  ? DitherStable(frames[i], frames[i - 1], dithered[i - 1], matcher)
                  : DitherImage(frames[i], matcher);
      dithered.push_back(DuplicateDib(image));
    }
    const bool hides = supercompress ? i == 0 : choice.maskBackground && index != -1;
    if (hides) Paint(image, frames[i], choice.background, 0xFFFFFF, index);
    if (supercompress && i > 0) Paint(image, Agreement(frames[i - 1], frames[i]), 1, 0xFF, index);
    run.images.push_back(std::move(image));
  }
  const Rgb background = RgbOf(choice.background);
  run.hostBackground =
      index != -1 ? index : NearestColour(background.red, background.green, background.blue, run.palette, count);
  run.taskIndex = choice.transparent ? index : 0;
  return run;
}

PackedDib DibOf(const std::vector<std::uint8_t>& bytes) {
  PackedDib dib(AllocateBlock(bytes.size()));
  const LockedBlock<std::uint8_t> lock(dib.Handle());
  std::copy(bytes.begin(), bytes.end(), lock.get());
  return dib;
}

Settings SettingsOf(const Choice& choice) {
  const auto check = [](bool on) { return std::string(on ? "1" : "0"); };
  return {{"MainPalette", "5"},
          {"Truecolour", check(choice.trueColour)},
          {"14", check(choice.custom)},
          {"15", check(choice.dither)},
          {"19", check(choice.supercompress)},
          {"35", check(choice.transparent)},
          {"21", check(choice.maskBackground)}};
}

// Runs a job in true colour for its frames, then with the choice; the plain twin of the latter.
PlainRun ExpectPlainRun(Job job, const Choice& choice) {
  job.settings.emplace_back("Truecolour", "1");
  std::vector<PackedDib> frames;
  for (const auto& bytes : Record(job).pixels) frames.push_back(DibOf(bytes));
  for (const Job::Setting& setting : SettingsOf(choice)) job.settings.push_back(setting);
  if (choice.best) job.palette = Job::Palette::Best;
  job.colours = choice.colours;
  job.dithering = static_cast<Job::Dithering>(choice.dithering);
  const Calls calls = Record(job);
  PlainRun plain = RunPlainly(frames, choice);
  EXPECT_EQ(calls.result.status, RenderStatus::Done) << calls.result.message;
  EXPECT_EQ(calls.stages, plain.stages);
  EXPECT_EQ(calls.task.bitsPerPixel, static_cast<std::uint32_t>(plain.depth));
  EXPECT_EQ(std::memcmp(calls.task.palette, plain.palette.data(), sizeof calls.task.palette), 0);
  EXPECT_EQ(calls.task.transparentIndex, plain.taskIndex);
  EXPECT_EQ(calls.background, static_cast<std::uint64_t>(plain.hostBackground));
  EXPECT_EQ(calls.images.size(), plain.images.size());
  for (std::size_t i = 0; i < std::min(calls.images.size(), plain.images.size()); ++i) {
    EXPECT_EQ(Difference(DibOf(calls.pixels[i]), plain.images[i]), "") << "image " << i;
    EXPECT_EQ(calls.images[i].transparentIndex, plain.indices[i]);
  }
  return plain;
}

TEST(BuildDriver, EveryChoiceOfOptionsGivesThePlainRun) {
  const std::pair<const char*, Colour> backgrounds[] = {
      {"#ffffff", 0xFFFFFF}, {"#204060", 0x604020}, {"gradient:#ff8000-#0000ff", kNoColour}};
  const auto bit = [](int number, int i) { return (number >> i & 1) != 0; };
  for (const auto& [material, colour] : backgrounds) {
    for (int i = 0; i < 64; ++i) {
      // Dither and true colour, which overrides most other options, are chosen now and then.
      const Choice choice = {i % 7 == 6, bit(i, 0), i % 3 == 0, bit(i, 1), bit(i, 2), bit(i, 3), colour};
      Job job = PaletteJob({{"22", bit(i, 4) ? "1" : "0"}, {"MainAntialias", bit(i, 5) ? "1" : "0"}});
      job.background = material;
      job.fill = bit(i, 5) ? "gradient:#00ff00-#ff00ff" : "#000000";
      ExpectPlainRun(job, choice);
      ASSERT_FALSE(HasFailure()) << material << ", choice " << i;
    }
  }
}

TEST(BuildDriver, BestPalettesFewerColoursAndOtherDithersGiveThePlainRun) {
  const std::pair<const char*, Colour> backgrounds[] = {
      {"#ffffff", 0xFFFFFF}, {"#204060", 0x604020}, {"gradient:#ff8000-#0000ff", kNoColour}};
  const int limits[] = {256, 2, 3, 16, 40, 255};
  const auto bit = [](int number, int i) { return (number >> i & 1) != 0; };
  for (int i = 0; i < 96; ++i) {
    const auto& [material, colour] = backgrounds[i % 3];
    Choice choice = {false, true, i % 5 < 3, bit(i, 0), bit(i, 1), bit(i, 2), colour};
    choice.best = i % 4 != 0;
    choice.colours = limits[i % 6];
    choice.dithering = static_cast<Dithering>(i % 5 % 3);
    Job job = PaletteJob({{"22", i % 7 ? "1" : "0"}, {"MainAntialias", bit(i, 4) ? "1" : "0"}});
    job.background = material;
    job.fill = bit(i, 3) ? "gradient:#00ff00-#ff00ff" : "#000000";
    ExpectPlainRun(job, choice);
    ASSERT_FALSE(HasFailure()) << material << ", choice " << i;
  }
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
  }
  Job wrong = PaletteJob();
  for (wrong.colours = 1; wrong.colours < 300; wrong.colours += 256)
    EXPECT_EQ(Record(wrong).result.status, RenderStatus::BadJob);
}

// A ramp of 253 greys, and letters with none, one or two colours of their own, or with more than any palette holds:
// from 254 colours on there is no room for the background any more. A single frame has nothing to supercompress and
// yet gets one colour less for it.
TEST(BuildDriver, AFullPaletteGivesItsNearestEntryToTheBackground) {
  const struct {
    const char *fill, *outline, *antialias;
    int least, most;
  } letters[] = {{"#808080", "#808080", "0", 253, 253},
                 {"#ff0000", "#808080", "0", 254, 254},
                 {"#ff0000", "#00ff00", "0", 255, 255},
                 {"gradient:#ff0000-#0000ff", "#00ff00", "1", 33, 252}};
  for (const auto& row : letters) {
    for (const bool supercompress : {false, true}) {
      Job job = PaletteJob({{"22", "0"}, {"MainAntialias", row.antialias}, {"MainPadding", "120"}});
      job.background = "gradient:#000000-#ffffff";
      job.fill = row.fill;
      job.outline = row.outline;
      const Choice choice = {false, true, false, supercompress, false, false, kNoColour};
      const int quantised = ExpectPlainRun(job, choice).quantised;
      EXPECT_TRUE(quantised >= row.least && quantised <= row.most) << quantised;
    }
  }
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
