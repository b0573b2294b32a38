// SPDX-License-Identifier: MIT
// The library as others embed it: files and memory, the fields of a job, and pixels.
#include <gtest/gtest.h>

#include <png.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <locale>
#include <map>
#include <set>

#include "glyphmotion/glyphmotion.h"
#include "glyphmotion/render.h"
#include "library/program_bytes.h"

using namespace glyphmotion;
using namespace std::chrono_literals;

namespace {

Job SmallJob(const char* effect = "vortex") {
  Job job;
  job.text = "Ab";
  job.effect = effect;
  job.size = 20;
  job.frames = 4;
  return job;
}

Words SmallWords(const char* effect = "vortex") { return {"Ab", "-e", effect, "-s", "20", "--frames", "4"}; }

constexpr const char* kVariableFont = GLYPHMOTION_SOURCE_DIR "/tests/fonts/two_squares.ttf";

// Every option that a look may hold and an effect of SmallJob has; SmallJob's own values win over those here.
constexpr const char* kWholeLook = R"(# All of it
effect = "vortex"
font = ["No Such", "Liberation Serif"]
size = 31
pad = 3
space = 120
bold = false
italic = true
antialias = false
align = "right"
valign = "top"
height = 90
fit = "none"
line-space = 120
text-direction = "rtl"
emoji = "mono"
fps = 20
pause = "0.5s"
frames = 9
direction = "right"
softness = 3
still-text = true
fill = "texture:Marble"
shadow = "#0000ff"
background = "#eeeeee"
outline = "none"
palette = "custom"
colors = 90
dither = true
mask-background = true
loop = 3
start = "rest"
[set]
"@rotate" = 77
MainFontSize = 40
)";

}  // namespace

// Each field is set to what is not its default, so a field that nobody reads shows.
TEST(Library, EveryFieldMeansTheProgramsOption) {
  const Folder folder;
  const std::string look = folder / "look.toml";
  std::ofstream(look) << kWholeLook;
  std::set<std::string> options = {"text",     "text-file",     "format", "fps",  "document",
                                   "settings", "save-document", "effect", "size", "frames"};
  struct Row {
    const char* name;
    std::function<void(Job&)> set;
    Words words;
    const char* effect = "vortex";
  };
  const Row rows[] = {
      {"a.gif", [](Job& job) { job.font = "Liberation Serif"; }, {"--font", "Liberation Serif"}},
      {"a.gif",
       [](Job& job) { job.pad = 9, job.space = 130, job.bold = false; },
       {"--pad", "9", "--space", "130", "--no-bold"}},
      {"a.gif", [](Job& job) { job.italic = true, job.antialias = false; }, {"--italic", "--no-antialias"}},
      {"a.gif",
       [](Job& job) { job.delay = 80ms, job.pause = 500ms; },
       {"--delay", "80ms", "--pause", "0.5s"},
       "simple"},
      {"a.png", [](Job& job) { job.delay = 85ms, job.pause = 501ms; }, {"--delay", "85", "--pause", "501"}, "simple"},
      {"a.gif", [](Job& job) { job.frames = 7, job.seed = 4711; }, {"--seed", "4711", "--set", "@frames=7"}, "cubist"},
      {"a.gif",
       [](Job& job) { job.direction = "right", job.stillText = true; },
       {"--direction", "right", "--still-text"}},
      {"a.gif", [](Job& job) { job.softness = 9, job.comment = true; }, {"--softness", "9", "--add-comment"}},
      {"a.gif", [](Job& job) { job.dither = true, job.supercompress = true; }, {"--dither", "--supercompress"}},
      {"a.gif", [](Job& job) { job.transparent = true; }, {"--transparent"}},
      {"a.gif", [](Job& job) { job.maskBackground = true; }, {"--mask-background"}},
      {"a.webp", [](Job& job) { job.alpha = true, job.alphaBackground = true; }, {"--alpha", "--alpha-background"}},
      {"a.gif", [](Job& job) { job.loops = 3, job.start = 2; }, {"--loop", "3", "--start", "3"}},
      {"a.png", [](Job& job) { job.start = Job::kRest; }, {"--start", "rest"}, "simple"},
      {"a.gif",
       [](Job& job) { job.fill = "texture:Marble", job.shadow = "none"; },
       {"--fill", "texture:Marble", "--shadow", "none"}},
      {"a.png", [](Job& job) { job.action = Job::Action::Sample; }, {"--sample"}},
      {"a.gif", [](Job& job) { job.action = Job::Action::Sample; }, {"--sample"}},
      {"a.y4m", [](Job&) {}, {}},
      {"a.gif",
       [](Job& job) { job.width = 200, job.height = 50, job.fit = Job::Fit::None; },
       {"--width", "200", "--height", "50", "--fit", "none"}},
      {"a.gif",
       [](Job& job) { job.height = 60, job.align = Job::Align::Right, job.verticalAlign = Job::VerticalAlign::Bottom; },
       {"--height", "60", "--align", "right", "--valign", "bottom"}},
      {"a.gif",
       [](Job& job) { job.text = "Ab!\nc", job.textDirection = Job::TextDirection::RightToLeft, job.lineSpace = 80; },
       {"--text-direction", "rtl", "--line-space", "80"}},
      {"a.gif", [](Job& job) { job.text = "A❤️", job.colourEmoji = false; }, {"--emoji", "mono"}},
      {"a.gif",
       [](Job& job) { job.font = "DejaVu Sans Condensed Oblique"; },
       {"--font", "DejaVu Sans Condensed Oblique", "--no-bold"}},
      {"a.gif",
       [](Job& job) {
         job.fontFile = kVariableFont, job.fontVariation = {{"wght", 650}}, job.threads = 1;
       },
       {"--font-file", kVariableFont, "--font-variation", "wght=650", "--threads", "1"}},
      {"a.gif",
       [](Job& job) { job.background = "#102030", job.outline = "red"; },
       {"--background", "#102030", "--outline", "red"}},
      {"a.gif",
       [](Job& job) {
         job.palette = Job::Palette::Best, job.colours = 9, job.dither = true, job.dithering = Job::Dithering::Ordered;
       },
       {"--palette", "best", "--colors", "9", "--dither=ordered"}},
      {"a.png", [](Job& job) { job.palette = Job::Palette::Grey256; }, {"--palette", "gray256"}},
      {"a.gif", [](Job& job) { job.palette = Job::Palette::BlackAndWhite; }, {"--palette", "bw"}},
      {"a.gif", [](Job& job) { job.lossy = 60, job.effort = 9; }, {"--lossy", "60", "--effort", "9"}},
      {"a.webp", [](Job& job) { job.lossy = 60, job.trueColour = true; }, {"--lossy", "60", "--true-color"}},
      {"a.gif", [](Job& job) { job.maxBytes = 2500; }, {"--max-bytes", "2500"}},
      {"a.png",
       [](Job& job) {
         job.settings = {{"@rotate", "90"}};
       },
       {"--set", "@rotate=90"}},
      {"a.webp", [](Job& job) { EXPECT_EQ(ApplyLook(job, "gold"), ""); }, {"--look", "gold"}},
      {"a.gif", [&](Job& job) { EXPECT_EQ(ApplyLook(job, look), ""); }, {"--look", look}},
  };
  for (const Row& row : rows) {
    Job job = SmallJob(row.effect);
    row.set(job);
    Words words = SmallWords(row.effect);
    words[0] = *job.text;
    for (const std::string& word : row.words) {
      if (word.starts_with("--")) options.insert(word.substr(word.starts_with("--no-") ? 5 : 2, word.find('=') - 2));
    }
    words.insert(words.end(), row.words.begin(), row.words.end());
    const std::string wanted = ProgramBytes(folder, words, row.name);
    const std::string format = std::filesystem::path(row.name).extension().string().substr(1);
    const RenderedBytes memory = RenderToMemory(job, format);
    SCOPED_TRACE(::testing::PrintToString(words));
    EXPECT_EQ(memory.result.message, "");
    EXPECT_TRUE(TextOf(memory.bytes) == wanted && !wanted.empty());
    EXPECT_EQ(RenderToFile(job, folder / ("library" + std::string(row.name))).status, RenderStatus::Done);
    EXPECT_TRUE(BytesOf(folder / ("library" + std::string(row.name))) == wanted);
  }
  for (const char* const* option = glyphmotion_options(); *option; ++option)
    EXPECT_TRUE(options.contains(*option)) << *option << " has no field, or no row above";
}

TEST(Library, MessagesNameTheFieldAndNoSwitch) {
  const Folder folder;
  const struct {
    std::function<void(Job&)> set;
    const char *format, *part;
  } rows[] = {
      {[](Job& job) { job.size = 500; }, "gif", "size takes a whole number from 4 to 144, not '500'"},
      {[](Job& job) { job.frames = 1; }, "gif", "frames takes"},
      {[](Job& job) { job.delay = std::chrono::seconds(1); }, "gif", "from 1 to 25, not '100', in 1/100 s"},
      {[](Job& job) { job.effect = "vortx"; }, "gif", "the effects are Background Hyperspace"},
      {[](Job& job) { job.font = "No Such"; }, "gif", "there is no font 'No Such'"},
      {[](Job& job) { job.fill = "texture:Nothing"; }, "gif", "there is no texture 'Nothing'"},
      {[](Job& job) { job.effect = "ripple", job.shadow = "#fff"; }, "gif", "Ripple has no shadow; leave it out"},
      {[](Job& job) { job.background = "#ff000080"; }, "gif", "the background '#ff000080' has an alpha"},
      {[](Job& job) {
         job.fontVariation = {{"wght", 500}};
       },
       "gif", "is not variable; choose one that is"},
      {[](Job& job) { job.start = 99; }, "gif", "there is no such frame to start with; the animation has 4 frames"},
      {[](Job& job) {
         job.settings = {{"nokey", "1"}};
       },
       "gif", "there is no key 'nokey'"},
      {[](Job& job) {
         job.settings = {{"9999", "1"}};
       },
       "gif", "there is no control 9999"},
      {[](Job& job) { job.fill = "image:/nowhere.png"; }, "gif", "'/nowhere.png' cannot be read"},
      {[](Job& job) { job.start = -7; }, "gif", "start takes a frame's number from 0, or kRest, not '-7'"},
      {[](Job& job) { job.lossy = 3; }, "png", "lossy is for gif, webp, avif and webm"},
      {[](Job& job) { job.lossy = 101; }, "webp", "lossy takes a whole number from 0 to 100, not '101'"},
      {[](Job& job) { job.maxBytes = 9; }, "webp", "maxBytes is for gif; leave it out"},
      {[](Job& job) { job.maxBytes = 9; }, "gif", "no file of 9 bytes was reached"},
      {[](Job& job) { job.effort = 10; }, "gif", "effort takes a whole number from 0 to 9"},
      {[](Job& job) { job.loops = -1; }, "gif", "loops takes a whole number from 0 to 65535"},
      {[](Job&) {}, "bmp", "there is no format 'bmp'; use gif, png"},
  };
  for (const auto& row : rows) {
    Job job = SmallJob();
    row.set(job);
    const RenderedBytes memory = RenderToMemory(job, row.format);
    EXPECT_NE(memory.result.status, RenderStatus::Done) << row.part;
    EXPECT_TRUE(memory.bytes.empty());
    EXPECT_NE(memory.result.message.find(row.part), std::string::npos) << memory.result.message;
    EXPECT_EQ(memory.result.message.find("--"), std::string::npos) << memory.result.message;
  }
  Job open;
  EXPECT_EQ(ApplyLook(open, "goldd"), "there is no look 'goldd'; did you mean 'gold'?");
  EXPECT_TRUE(open.fill.empty());
  EXPECT_EQ(RenderToFile(SmallJob(), folder / "a.bmp").status, RenderStatus::BadJob);
  EXPECT_EQ(RenderToFile(SmallJob(), folder / "none/a.gif").status, RenderStatus::Failed);
  Sink sink;
  sink.image = [](const Image& image) { return image.number < 2; };
  const RenderResult ended = RenderToFile(SmallJob(), folder / "ended.gif", sink);
  EXPECT_TRUE(ended.status == RenderStatus::Failed && ended.message == "the sink ended the run") << ended.message;
  std::atomic<bool> stop = true;
  sink.stop = &stop;
  EXPECT_EQ(RenderToFile(SmallJob(), folder / "stopped.gif", sink).status, RenderStatus::Cancelled);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path));
}

// What --list controls says of a number is what the dialog takes; the range of Delay depends on the host.
TEST(Library, EveryNumberOfTheDialogIsTakenAtBothEndsAndRefusedOnePast) {
  const auto status = [](const std::string& panel, std::vector<Job::Setting> settings) {
    Job job;
    job.effect = panel.empty() ? "vortex" : panel;
    job.settings = std::move(settings);
    job.action = Job::Action::None;
    return Render(job, {}).status;
  };
  std::map<std::string, std::vector<Job::Setting>> first, last;  // by panel
  for (const ControlInfo& control : Controls()) {
    long low = 0, high = 0;
    if (control.kind != "number" || std::sscanf(control.range.c_str(), "%ld,%ld", &low, &high) != 2) continue;
    if (control.key == "MainDelay") continue;
    const std::string id = std::to_string(control.id);
    first[control.panel].emplace_back(id, std::to_string(low));
    last[control.panel].emplace_back(id, std::to_string(high));
    for (const long value : {low - 1, high + 1})
      EXPECT_EQ(status(control.panel, {{id, std::to_string(value)}}), RenderStatus::BadJob) << id << " " << value;
  }
  EXPECT_EQ(first.size(), EffectNames().size() + 1);
  for (const auto* ends : {&first, &last}) {
    for (const auto& [panel, settings] : *ends) EXPECT_EQ(status(panel, settings), RenderStatus::Done) << panel;
  }
}

// What an application makes of its own numbers: 1.234,5.
struct Commas : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Library, AnApplicationsLocaleAndTimeZoneChangeNoByte) {
  const Folder folder;
  const auto made = [&] {
    Words words = SmallWords();
    for (const char* word : {"--fill", "texture:fractal3,size=9,red=0/1/.5/1,power2=3.25", "--width", "1200",
                             "--height", "40", "--font-file", kVariableFont, "--font-variation", "wght=650.5"})
      words.emplace_back(word);
    const std::string look = folder / "l.toml", document = folder / "d.gm4", settings = folder / "s.ini";
    words.insert(words.end(), {"--save-look", look, "--save-document", document, "--settings", settings});
    Words all = {ProgramBytes(folder, words, "a.gif")};
    for (const std::string& file : {look, document, settings}) all.push_back(BytesOf(file));
    all.push_back(ProgramBytes(folder, {"Ab", "--look", look, "--font-file", kVariableFont}, "b.gif"));
    std::filesystem::remove(settings);
    return all;
  };
  setenv("SOURCE_DATE_EPOCH", "1000000000", 1);  // settings say when they were saved
  const Words before = made();
  const std::locale own = std::locale::global(std::locale(std::locale(), new Commas));
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // where it is installed
  setenv("TZ", "Asia/Kathmandu", 1);
  tzset();
  const Words after = made();
  unsetenv("SOURCE_DATE_EPOCH");
  unsetenv("TZ");
  tzset();
  std::setlocale(LC_ALL, "C");
  std::locale::global(own);
  for (std::size_t i = 0; i < before.size(); ++i) EXPECT_TRUE(after[i] == before[i]) << i << "\n" << after[1];
}

// The functions agree with each other at every depth, and with libpng about where the top left is.
TEST(Library, ImageGivesRowsPaletteAndPixels) {
  const struct {
    std::vector<Job::Setting> settings;
    bool palette;
    int bits;
  } rows[] = {{{{"MainPalette", "0"}, {"14", "0"}}, true, 1},
              {{{"MainPalette", "1"}, {"14", "0"}}, true, 4},
              {{{"MainTransparent", "1"}}, true, 8},
              {{{"Truecolour", "1"}}, false, 24},
              {{{"Truecolour", "1"}, {"MainAlphaTrans", "1"}}, false, 32}};
  for (const auto& row : rows) {
    Job job = SmallJob();
    job.paletteFormat = row.palette;
    job.trueColourFormat = !row.palette;
    job.settings = row.settings;
    int images = 0;
    Sink sink;
    sink.image = [&](const Image& image) {
      ++images;
      EXPECT_EQ(image.bits, row.bits);
      EXPECT_EQ(image.DelayMilliseconds(), image.delay * (row.palette ? 10 : 1));
      const std::vector<std::uint8_t> rgba = image.Rgba(), indices = image.Indices(), palette = image.Palette();
      EXPECT_EQ(rgba.size(), std::size_t{4} * image.width * image.height);
      EXPECT_EQ(palette.size(), image.bits > 8 ? 0 : std::size_t{3} << image.bits);
      EXPECT_TRUE(image.Row(-1).empty() && image.Row(image.height).empty());
      bool equal = true;
      for (int y = 0; y < image.height; ++y) {
        const auto stored = image.Row(y);
        for (int x = 0; x < image.width; ++x) {
          const std::size_t at = static_cast<std::size_t>(y) * image.width + x;
          const std::uint8_t* pixel = &rgba[at * 4];
          if (image.bits > 8) {
            const std::uint8_t* bgr = &stored[static_cast<std::size_t>(x) * image.bits / 8];
            equal &= pixel[0] == bgr[2] && pixel[1] == bgr[1] && pixel[2] == bgr[0];
            equal &= pixel[3] == (image.bits == 32 ? bgr[3] : 255);
          } else {
            const int shift = 8 - image.bits - x * image.bits % 8;
            const int index = stored[static_cast<std::size_t>(x) * image.bits / 8] >> shift & ((1 << image.bits) - 1);
            equal &= index == indices[at] && std::memcmp(pixel, &palette[index * 3], 3) == 0;
            equal &= pixel[3] == (index == image.transparentIndex ? 0 : 255);
          }
        }
      }
      EXPECT_TRUE(equal) << row.bits;
      return true;
    };
    EXPECT_EQ(Render(job, sink).message, "");
    EXPECT_EQ(images, 4) << row.bits;
  }

  Job job = SmallJob();
  job.action = Job::Action::Sample;
  std::vector<std::uint8_t> seen;
  Sink sink;
  sink.image = [&](const Image& image) {
    seen = image.Rgba();
    return true;
  };
  const RenderedBytes file = RenderToMemory(job, "png", sink);
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  ASSERT_TRUE(png_image_begin_read_from_memory(&png, file.bytes.data(), file.bytes.size()));
  png.format = PNG_FORMAT_RGBA;
  std::vector<std::uint8_t> decoded(PNG_IMAGE_SIZE(png));
  ASSERT_TRUE(png_image_finish_read(&png, nullptr, decoded.data(), 0, nullptr));
  EXPECT_TRUE(decoded == seen);
}
