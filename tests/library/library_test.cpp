// SPDX-License-Identifier: MIT
// The library as others embed it: files and memory, the fields of a job, pixels, and the C API.
#include <gtest/gtest.h>

#include <png.h>

#include <algorithm>
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
#include <sstream>
#include <thread>

#include "glyphmotion/glyphmotion.h"
#include "glyphmotion/render.h"
#include "host/host_helpers.h"
#include "host/program/program.h"

using namespace glyphmotion;
using namespace std::chrono_literals;

namespace {

using Folder = TemporaryFolder;

std::string BytesOf(const std::string& path) { return glyphmotion::testing::ReadText(path); }

std::string TextOf(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

Job SmallJob(const char* effect = "vortex") {
  Job job;
  job.text = "Ab";
  job.effect = effect;
  job.size = 20;
  job.frames = 4;
  return job;
}

using Words = std::vector<std::string>;
Words SmallWords(const char* effect = "vortex") { return {"Ab", "-e", effect, "-s", "20", "--frames", "4"}; }

// What the program writes for these words.
std::string ProgramBytes(const Folder& folder, Words words, const std::string& name) {
  words.insert(words.end(), {"-o", folder / name});
  EXPECT_EQ(RunWords(words), "");
  return BytesOf(folder / name);
}

}  // namespace

namespace {

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

namespace {

struct CJob {
  glyphmotion_job* job = glyphmotion_job_new();
  CJob() {
    for (const auto& [option, value] : {std::pair{"text", "Ab"}, {"effect", "vortex"}, {"size", "20"}, {"frames", "4"}})
      EXPECT_EQ(Set(option, value), GLYPHMOTION_OK);
  }
  ~CJob() { glyphmotion_job_free(job); }
  glyphmotion_status Set(const char* option, const char* value) { return glyphmotion_job_set(job, option, value); }
  std::string Error() const { return glyphmotion_job_error(job); }
  glyphmotion_status Memory(const char* format, std::string& bytes) {
    unsigned char* data = nullptr;
    std::size_t size = 0;
    const glyphmotion_status status = glyphmotion_render_to_memory(job, format, &data, &size);
    bytes.assign(reinterpret_cast<const char*>(data), size);
    glyphmotion_free(data);
    return status;
  }
};

}  // namespace

TEST(CApi, MakesTheProgramsBytes) {
  const Folder folder;
  CJob job;
  EXPECT_EQ(job.Set("fill", "texture:Marble"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("set", "@rotate=90"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("set", "MainPadding=3"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("delay", "80ms"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("look", "gold"), GLYPHMOTION_OK);
  EXPECT_EQ(glyphmotion_job_set_number(job.job, "size", 24), GLYPHMOTION_OK);
  EXPECT_EQ(glyphmotion_job_set_flag(job.job, "bold", 0), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("dither", "1"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("dither", nullptr), GLYPHMOTION_OK);
  Words words;
  std::istringstream line(
      "Ab -e vortex -s 24 --frames 4 --fill texture:Marble --set @rotate=90 --set MainPadding=3 --delay 80ms --no-bold "
      "--look gold");
  for (std::string word; line >> word;) words.push_back(word);
  glyphmotion_job* copy = glyphmotion_job_copy(job.job);
  for (const char* const* format = glyphmotion_formats(); *format; ++format) {
    const std::string wanted = ProgramBytes(folder, words, std::string("a.") + *format);
    std::string bytes;
    EXPECT_EQ(job.Memory(*format, bytes), GLYPHMOTION_OK) << job.Error();
    EXPECT_TRUE(bytes == wanted) << *format;
    const std::string path = folder / (std::string("c.") + *format);
    EXPECT_EQ(glyphmotion_render_to_file(copy, path.c_str()), GLYPHMOTION_OK) << glyphmotion_job_error(copy);
    EXPECT_TRUE(BytesOf(path) == wanted) << *format;
  }
  glyphmotion_job_free(copy);
}

// Frames one after the other are the uncompressed video, in which a frame that rests is repeated.
TEST(CApi, FramesAreWhatAViewerSees) {
  struct Seen {
    std::string bytes;
    int frames = 0;
  } seen;
  const auto keep = [](void* user, const glyphmotion_frame* frame) {
    Seen& all = *static_cast<Seen*>(user);
    EXPECT_EQ(glyphmotion_frame_number(frame), all.frames++);
    EXPECT_EQ(glyphmotion_frame_count(frame), 4);
    const std::size_t size = std::size_t{4} * glyphmotion_frame_width(frame) * glyphmotion_frame_height(frame);
    for (int shown = 0; shown < glyphmotion_frame_duration(frame); shown += 40)
      all.bytes.append(reinterpret_cast<const char*>(glyphmotion_frame_rgba(frame)), size);
    return 0;
  };
  CJob job;
  for (const char* option : {"alpha", "palette"}) {
    EXPECT_EQ(job.Set("alpha", nullptr), GLYPHMOTION_OK);
    EXPECT_EQ(job.Set(option, std::strcmp(option, "alpha") ? "windows16" : "1"), GLYPHMOTION_OK) << job.Error();
    seen = {};
    std::string video;
    ASSERT_EQ(job.Memory("rgba", video), GLYPHMOTION_OK) << job.Error();
    ASSERT_EQ(glyphmotion_render_frames(job.job, keep, &seen), GLYPHMOTION_OK) << job.Error();
    EXPECT_EQ(seen.frames, 4);
    EXPECT_TRUE(seen.bytes == video) << option;
  }
}

TEST(CApi, EveryWrongValueIsASentenceWithoutSwitches) {
  CJob none;
  glyphmotion_job_free(std::exchange(none.job, nullptr));
  std::string nothing;
  EXPECT_TRUE(none.Set("size", "20") == GLYPHMOTION_OUT_OF_MEMORY &&
              none.Memory("gif", nothing) == GLYPHMOTION_OUT_OF_MEMORY && none.Error().starts_with("out of memory"));
  EXPECT_TRUE(!glyphmotion_job_copy(nullptr) && !glyphmotion_job_note(nullptr, 0));
  int refused = 0;
  for (const char* const* option = glyphmotion_options(); *option; ++option) {
    for (const char* value : {"?", "-7", "none"}) {
      CJob job;
      if (!std::strcmp(*option, "text-file") || !std::strncmp(*option, "save-", 5) || !std::strcmp(*option, "settings"))
        continue;  // any name is allowed
      glyphmotion_status status = job.Set(*option, value);
      std::string bytes;
      if (status == GLYPHMOTION_OK) status = job.Memory("gif", bytes);
      refused += status != GLYPHMOTION_OK;
      EXPECT_EQ(status == GLYPHMOTION_OK, job.Error().empty()) << *option;
      EXPECT_EQ(job.Error().find("--"), std::string::npos) << job.Error();
      EXPECT_EQ(job.Error().find(" -o"), std::string::npos) << job.Error();
    }
  }
  EXPECT_GT(refused, 90);
  CJob job;
  EXPECT_EQ(job.Set("look", "gold"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("look", nullptr), GLYPHMOTION_OK);
  for (const char* absent : {"siz", "--size", "output", "list", "refuse", "no-bold", ""}) {
    EXPECT_EQ(job.Set(absent, "1"), GLYPHMOTION_BAD_OPTION) << absent;
    EXPECT_NE(job.Error().find("there is no option"), std::string::npos) << job.Error();
  }
  EXPECT_EQ(job.Set(nullptr, nullptr), GLYPHMOTION_BAD_OPTION);
  EXPECT_EQ(job.Set("size", "500"), GLYPHMOTION_BAD_OPTION);
  EXPECT_EQ(job.Error(), "size 500 is not allowed: it takes a whole number from 4 to 144");
  EXPECT_EQ(job.Set("delay", "85ms"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Error(), "");
  std::string bytes;
  EXPECT_EQ(job.Memory("gif", bytes), GLYPHMOTION_OK);
  EXPECT_STREQ(glyphmotion_job_note(job.job, 0), "delay 85ms becomes 90 ms, a whole number of the output's units");
  EXPECT_EQ(glyphmotion_job_note(job.job, 1), nullptr);
  EXPECT_EQ(glyphmotion_render_to_file(job.job, "/nowhere/a.gif"), GLYPHMOTION_FAILED);
  for (const char* path : {static_cast<const char*>(nullptr), "", "-", "a", "a.bmp"})
    EXPECT_EQ(glyphmotion_render_to_file(job.job, path), GLYPHMOTION_BAD_OPTION) << job.Error();
  EXPECT_EQ(job.Memory(nullptr, bytes), GLYPHMOTION_BAD_OPTION);
}

TEST(CApi, CallbacksAndOtherThreadsCancel) {
  CJob job;
  std::string bytes;
  const auto second = [](void* user, const char* stage, std::int64_t, std::int64_t) {
    EXPECT_NE(stage, nullptr);
    return ++*static_cast<int*>(user) == 2 ? 1 : 0;
  };
  int calls = 0;
  glyphmotion_job_on_progress(job.job, second, &calls);
  EXPECT_EQ(job.Memory("gif", bytes), GLYPHMOTION_CANCELLED);
  EXPECT_EQ(job.Error(), "the run was interrupted");
  EXPECT_TRUE(bytes.empty());
  glyphmotion_job_on_progress(job.job, nullptr, nullptr);
  glyphmotion_job_cancel(job.job);
  EXPECT_EQ(job.Memory("gif", bytes), GLYPHMOTION_CANCELLED);
  ASSERT_EQ(job.Memory("gif", bytes), GLYPHMOTION_OK) << job.Error();

  const auto stop = [](void* user, const glyphmotion_frame*) { return ++*static_cast<int*>(user) == 2 ? 1 : 0; };
  calls = 0;
  EXPECT_EQ(glyphmotion_render_frames(job.job, stop, &calls), GLYPHMOTION_CANCELLED);
  EXPECT_EQ(calls, 2);

  // Jobs side by side make the bytes of one alone.
  std::vector<std::string> all(3);
  std::vector<std::thread> threads;
  for (std::string& mine : all)
    threads.emplace_back([&mine] { EXPECT_EQ(CJob().Memory("gif", mine), GLYPHMOTION_OK); });
  for (std::thread& thread : threads) thread.join();
  for (const std::string& mine : all) EXPECT_TRUE(mine == bytes);
  EXPECT_STREQ(glyphmotion_version(), GLYPHMOTION_VERSION);
}
