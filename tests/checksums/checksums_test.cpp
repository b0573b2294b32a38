// SPDX-License-Identifier: MIT
// The bytes of every effect under two dozen sets of options, for a palette host and a true-colour host, and those of
// the GIF file. checksums.txt keeps them, a row each: effect, options, frames of the palette host, GIF file, frames of
// the true-colour host, or "-" where all options are about palettes. Faster, threaded or rewritten code has to give the
// same list: two threads make all of it, other numbers of threads a seventh each.
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <set>

#include "checksums/checksum_list.h"
#include "glyphmotion/render.h"
#include "host/encoders/encoders.h"
#include "host/host_helpers.h"

namespace glyphmotion {
namespace {

using testing::Hash;
using testing::ReadBytes;
using testing::TemporaryFolder;
using Settings = std::vector<Job::Setting>;

// What there is for palette formats beside the settings.
struct PaletteOptions {
  Job::Palette palette = Job::Palette::Dialog;
  int colours = 256;
  Job::Dithering dithering = Job::Dithering::Diffuse;
  int loss = 0;
};

struct OptionSet {
  const char* name;
  const char* text;
  const char *fill, *shadow, *background, *outline;
  Settings settings;
  std::optional<PaletteOptions> palettes = {};
};

const std::vector<OptionSet>& OptionSets() {
  static const std::vector<OptionSet> sets = {
      {"plain", "Ag3", "", "", "", "", {}},
      {"colours", "Ag3", "#c01020", "#404080", "#ffffe0", "#0080ff", {}},
      {"no-outline", "Sale!", "#ffffff", "", "#102040", "", {{"@outlineenable", "0"}}},
      {"no-shadow", "Sale!", "", "", "", "", {{"@shadowenable", "0"}, {"MainFontBold", "0"}}},
      {"gradient",
       "Rag",
       "gradient:conical,#ff0000-#0040ff,rotation=33,mid=40",
       "",
       "gradient:linear,#000000-#00ff88",
       "",
       {}},
      {"fountain", "Rag", "fountain:Sunrise", "", "", "", {{"MainDither", "1"}}},
      {"marble", "Rag", "texture:Marble", "", "", "", {{"MainFontItalic", "1"}}},
      {"fractal", "Rag", "", "texture:fractal3,size=64", "texture:fractal5", "", {}},
      {"tile", "Rag", "tile:tlmplgm4.mtx#2", "", "tile:tlmplgm4.mtx#5", "", {}},
      {"bubbles",
       "Ox",
       "texture:perturbation,bubbles=20,noise=0.6",
       "gradient:rectangular,#400000-#ff8000",
       "",
       "",
       {}},
      {"transparent", "Thin ij", "", "", "", "", {{"MainTransparent", "1"}, {"@shadowenable", "0"}}},
      {"dither", "Ag3", "gradient:elliptical,#203040-#f0f0c0,cx=10,cy=-20,pad=5", "", "", "", {{"MainDither", "1"}}},
      {"supercompress", "Ag3", "fountain:Ocean", "", "", "", {{"MainSupercompress", "1"}}},
      {"safe216", "Ag3", "fountain:Fire", "", "", "", {{"14", "0"}, {"MainPalette", "6"}, {"MainDither", "1"}}},
      {"mask-background", "Ag3", "fountain:Dusk", "", "#00ff00", "", {{"MainMaskBackground", "1"}}},
      {"hard-edges", "Ag3", "", "", "", "", {{"MainAntialias", "0"}}},
      {"spaced", "Wide", "", "", "", "", {{"MainFontSpace", "130"}, {"MainPadding", "9"}}},
      {"accents", "\u00c4\u00e9\u0142", "fountain:Ice", "", "", "", {}},
      {"greek-cyrillic", "\u03a9\u03bb\u0416\u044f", "", "", "", "", {{"MainFontName", "Liberation Serif"}}},
      {"alpha", "Ag3", "", "", "", "", {{"MainAlphaTrans", "1"}, {"UseAlphaGreyBack", "0"}}},
      {"cjk", "\u6f22\u5b57\u304b\ud55c", "", "", "", "", {{"MainFontName", "WenQuanYi Zen Hei"}}},
      {"best",
       "Ag3",
       "fountain:Sunrise",
       "",
       "",
       "",
       {{"MainDither", "1"}},
       PaletteOptions{Job::Palette::Best, 256, Job::Dithering::Stable, 20}},
      {"few-colours",
       "Ag3",
       "fountain:Ocean",
       "",
       "",
       "",
       {{"MainDither", "1"}},
       PaletteOptions{Job::Palette::Dialog, 40, Job::Dithering::Ordered, 120}},
  };
  return sets;
}

// A run whose job leaves out what the effect does not have, as an effect without a fill.
RenderResult RenderWhatApplies(Job job, const Sink& sink) {
  for (;;) {
    RenderResult result = Render(job, sink);
    if (result.status != RenderStatus::BadJob) return result;
    const auto lacks = [&](const std::string& what) {
      return result.message.find(" has no " + what) != std::string::npos;
    };
    const std::size_t before = job.settings.size();
    std::erase_if(job.settings, [&](const auto& setting) { return lacks("option '" + setting.first); });
    std::string* role = lacks("fill")         ? &job.fill
                        : lacks("shadow")     ? &job.shadow
                        : lacks("background") ? &job.background
                                              : nullptr;
    if (role) role->clear();
    if (!role && job.settings.size() == before) return result;
  }
}

Job JobOf(const std::string& effect, const OptionSet& set, bool palette) {
  Job job;
  job.effect = effect;
  job.text = set.text;
  job.fill = set.fill;
  job.shadow = set.shadow;
  job.background = set.background;
  job.outline = set.outline;
  job.paletteFormat = palette;
  job.trueColourFormat = !palette;
  job.settings = {{"MainFontName", "Liberation Sans"}, {"MainFontSize", "26"}, {"@frames", "7"}};
  // A palette host offers no alpha plane; a true-colour host offers nothing of palettes.
  for (const Job::Setting& setting : set.settings) {
    static const std::set<std::string> onlyPalette = {"MainDither",  "MainSupercompress",  "14",
                                                      "MainPalette", "MainMaskBackground", "MainTransparent"};
    const bool alpha = setting.first.find("Alpha") != std::string::npos;
    if (palette ? !alpha : !onlyPalette.contains(setting.first)) job.settings.push_back(setting);
  }
  if (set.palettes) {
    job.palette = set.palettes->palette;
    job.colours = set.palettes->colours;
    job.dithering = set.palettes->dithering;
  }
  if (palette) job.defaults = {{"10", "0"}, {"14", set.name == std::string("safe216") ? "0" : "1"}};
  return job;
}

struct Sums {
  std::string frames, file;
};

Sums SumsOf(const std::string& effect, const OptionSet& set, bool palette, int threads, const std::string& file) {
  Hash frames;
  std::string error;
  Output output = palette ? Output::File(file, error) : Output();
  std::optional<Encoder> encoder;
  Sink sink;
  sink.task = [&](const Task& task) {
    frames.Add({task.width, task.height, task.depth, task.imageCount, task.transparentIndex});
    frames.Add(task.palette);
    if (palette)
      encoder = FindFormat(".gif")->open(output, {.width = task.width,
                                                  .height = task.height,
                                                  .imageCount = task.imageCount,
                                                  .threads = threads,
                                                  .loss = set.palettes ? set.palettes->loss : 0});
    return true;
  };
  sink.image = [&](const Image& image) {
    frames.Add({image.number, image.delay, image.transparentIndex, image.standAlone});
    frames.Add(image.dib);
    return !encoder || encoder->add(image).empty();
  };
  Job job = JobOf(effect, set, palette);
  job.threads = threads;
  const RenderResult result = RenderWhatApplies(std::move(job), sink);
  EXPECT_EQ(result.status, RenderStatus::Done) << effect << " " << set.name << ": " << result.message;
  EXPECT_EQ(result.blocks + result.locks, 0u) << effect << " " << set.name;
  Hash bytes;
  if (encoder) {
    EXPECT_EQ(encoder->finish(), "");
    EXPECT_EQ(output.Keep(), "");
    bytes.Add(ReadBytes(file));
  }
  return {frames.Text(), bytes.Text()};
}

std::string RowOf(const std::string& effect, const OptionSet& set, int threads, const TemporaryFolder& folder) {
  const Sums palette = SumsOf(effect, set, true, threads, folder / "sums.gif");
  const std::string trueColour = set.palettes ? "-" : SumsOf(effect, set, false, threads, {}).frames;
  return effect + "," + set.name + "," + palette.frames + "," + palette.file + "," + trueColour;
}

// A row for each effect and set of options, in the order of the file.
std::vector<std::string> AllSums() {
  const TemporaryFolder folder;
  std::vector<std::string> rows;
  for (const std::string& effect : EffectNames()) {
    for (const OptionSet& set : OptionSets()) {
      rows.push_back(RowOf(effect, set, 2, folder));
      const auto others = std::to_array({1, 3, 8});
      if (const std::size_t share = rows.size() % 7; share < others.size()) {
        EXPECT_EQ(RowOf(effect, set, others[share], folder), rows.back()) << others[share] << " threads";
      }
    }
  }
  return rows;
}

TEST(Checksums, EveryEffectGivesTheBytesOfTheList) { testing::ExpectList("checksums.txt", AllSums()); }

}  // namespace
}  // namespace glyphmotion
