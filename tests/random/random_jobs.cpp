// SPDX-License-Identifier: MIT
// Jobs by number: each seed is one job over all effects, options, materials and formats. Its file is decoded by another
// decoder than ours and compared with the frames that the engine handed over. Prints one checksum an effect, which is
// the same on every machine and at any number of threads.
//
//   random_jobs [--first N] [--count N] [--threads N] [--expect FILE] [--describe]
//
// The exit code is 1 if any job failed, or a checksum is not that of FILE, which another build has printed; each
// failure names its number. --describe prints the jobs instead.
#include <CLI/CLI.hpp>
#include <array>
#include <atomic>
#include <cstdio>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "glyphmotion/render.h"
#include "host/decoders.h"
#include "host/encoders/dib_reader.h"
#include "host/encoders/encoders.h"
#include "materials/gradient_text.h"
#include "materials/texture_text.h"
#include "random/avif_decoder.h"

namespace glyphmotion {
namespace {

using testing::Bytes;

// SplitMix64 (Steele, Lea and Flood 2014): any seed is a good one.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t Next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15u;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
    z = (z ^ z >> 27) * 0x94D049BB133111EBu;
    return z ^ z >> 31;
  }
  long From(long first, long last) {
    return first + static_cast<long>(Next() % static_cast<std::uint64_t>(last - first + 1));
  }
  bool Once(long in) { return From(1, in) == 1; }
  template <typename T, std::size_t N>
  const T& Of(const std::array<T, N>& list) {
    return list[static_cast<std::size_t>(From(0, N - 1))];
  }
  const std::string& Of(const std::vector<std::string>& list) {
    return list[static_cast<std::size_t>(From(0, static_cast<long>(list.size()) - 1))];
  }

 private:
  std::uint64_t state_;
};

struct RandomJob {
  Job job;
  std::string extension;
  int effort = 6;
};

std::string Colour(Random& random) {
  char text[8];
  std::snprintf(text, sizeof text, "#%06lx", random.From(0, 0xFFFFFF));
  return text;
}

std::string Number(Random& random, const char* key, long first, long last) {
  return std::string(",") + key + "=" + std::to_string(random.From(first, last));
}

// Draws of a list come in its order; those of operands in whatever order a compiler likes.
std::string Joined(std::initializer_list<std::string> parts) {
  std::string text;
  for (const std::string& part : parts) text += part;
  return text;
}

std::string Material(Random& random) {
  static constexpr std::array<const char*, 4> shapes = {"linear", "conical", "elliptical", "rectangular"};
  static constexpr std::array<const char*, 6> types = {"fractal2", "fractal3", "fractal4",
                                                       "fractal5", "craters",  "perturbation"};
  static const std::vector<std::string> fountains = FountainNames(), textures = TextureNames();
  switch (random.From(0, 8)) {
    case 0:
      return Joined({"gradient:", random.Of(shapes), ",", Colour(random), "-", Colour(random),
                     Number(random, "rotation", -360, 360), Number(random, "pad", 0, 45), Number(random, "mid", 1, 99),
                     Number(random, "cx", -50, 50), Number(random, "cy", -50, 50)});
    case 1:
      return "fountain:" + random.Of(fountains);
    case 2: {
      std::string text = "fountain:" + Colour(random);
      for (long i = random.From(0, 5); i > 0; --i) {
        text += "," + Colour(random);
        if (random.Once(2)) text += "@" + std::to_string(random.From(0, 255));
      }
      return Joined({text, ",", Colour(random), ",", random.Of(shapes), random.Once(2) ? ",loop=1" : ""});
    }
    case 3:
      return "texture:" + random.Of(textures);
    case 4:
      return Joined({"texture:", random.Of(types), Number(random, "seed1", 0, 99999), ",fore1=", Colour(random),
                     Number(random, "craters", 0, 40), Number(random, "bubbles", 0, 30)});
    case 5:
      return "tile:tlmplgm4.mtx#" + std::to_string(random.From(1, 12));
    default:
      return Colour(random);
  }
}

// A value of the control's range, at its ends more often than elsewhere. Empty: leave it.
std::string ValueFor(Random& random, const ControlInfo& control) {
  if (control.kind == "check") return random.Once(2) ? "1" : "0";
  if (control.kind == "colour") return Colour(random);
  if (control.kind == "material") return Material(random);
  if (const auto dash = control.kind.find(" 0-"); dash != std::string::npos)
    return std::to_string(random.From(0, std::stol(control.kind.substr(dash + 3))));
  long first = 0, last = 0;
  if (control.kind != "number" || std::sscanf(control.range.c_str(), "%ld,%ld", &first, &last) != 2) return {};
  const bool isCount = control.key.ends_with("Frames");
  // An iris needs a frame for each of its fills.
  if (isCount) return std::to_string(random.From(control.panel.ends_with("Iris") ? 5 : first, 12));
  if (random.Once(6)) return std::to_string(random.Once(2) ? first : last);
  return std::to_string(random.From(first, last));
}

void ChooseText(Random& random, Job& job) {
  static const std::vector<std::string> texts = {"A",    "Hi",     "Größe", "i.k",       "Sale!\n50 %", "Ωλ Жя",
                                                 "—",    "W W",    "mm",    "office",    "éàü",         "8888",
                                                 "שלום", "مرحبا",  "नमस्ते",  "❤️ Hi", "fjord",       "a\u0301b",
                                                 "\tx",  "  gap ", "@@",    "Q\nq\nQ",   "tiny",        "日本"};
  static const std::vector<std::string> fonts = {"Liberation Sans", "Liberation Serif", "Liberation Mono",
                                                 "DejaVu Sans"};
  job.text = random.Of(texts);
  job.settings.emplace_back("MainFontName", random.Of(fonts));
  job.settings.emplace_back("MainFontSize", std::to_string(random.Once(10) ? random.From(40, 72) : random.From(4, 30)));
  for (const char* key : {"MainFontBold", "MainFontItalic", "MainAntialias", "MainRolling"}) {
    if (random.Once(4)) job.settings.emplace_back(key, random.Once(2) ? "1" : "0");
  }
  if (random.Once(4)) job.settings.emplace_back("MainPadding", std::to_string(random.From(0, 30)));
  if (random.Once(4)) job.settings.emplace_back("MainFontSpace", std::to_string(random.From(50, 150)));
  job.align = static_cast<Job::Align>(random.From(0, 3));
}

void ChooseColours(Random& random, Job& job) {
  const auto sometimes = [&](const char* key, long in) {
    if (random.Once(in)) job.settings.emplace_back(key, "1");
  };
  if (!job.paletteFormat) {
    job.settings.emplace_back("Truecolour", random.Once(3) ? "0" : "1");
    sometimes("MainAlphaTrans", 3);
    sometimes("UseAlphaGreyBack", 4);
  } else if (random.Once(3)) {
    job.settings.emplace_back("14", "0");
    job.settings.emplace_back("MainPalette", std::to_string(random.From(0, 8)));
  } else {
    job.settings.emplace_back("14", "1");
  }
  sometimes("MainDither", 3);
  sometimes("MainMaskBackground", 4);
  if (job.paletteFormat) sometimes("MainTransparent", 4), sometimes("MainSupercompress", 4);
}

// What the dialog does not have.
void ChooseRun(Random& random, RandomJob& made) {
  Job& job = made.job;
  made.effort = static_cast<int>(random.From(0, 9));
  job.threads = static_cast<int>(random.From(1, 3));
  if (job.paletteFormat) {
    if (random.Once(2)) job.palette = random.Once(2) ? Job::Palette::Best : Job::Palette::Automatic;
    if (random.Once(3)) job.colours = static_cast<int>(random.From(2, 256));
    job.dithering = static_cast<Job::Dithering>(random.From(0, 2));
  }
  if (random.Once(4)) job.lineSpace = static_cast<int>(random.From(10, 500));
  job.textDirection = static_cast<Job::TextDirection>(random.From(0, 2));
  job.colourEmoji = random.Once(2);
  if (!random.Once(5)) return;
  job.fit = Job::Fit::None;
  job.width = static_cast<int>(random.From(0, 200));
  job.height = static_cast<int>(random.From(0, 90));
  job.verticalAlign = static_cast<Job::VerticalAlign>(random.From(0, 2));
}

RandomJob JobOf(std::uint64_t seed) {
  static const std::vector<std::string> effects = EffectNames();
  static const std::vector<ControlInfo> controls = Controls();
  Random random(seed);
  RandomJob made;
  static constexpr std::array<const char*, 6> formats = {".gif", ".gif", ".gif", ".png", ".webp", ".avif"};
  made.extension = random.Of(formats);
  if (FindFormat(made.extension)->lacks) made.extension = ".png";
  Job& job = made.job;
  job.paletteFormat = FindFormat(made.extension)->paletteFormat;
  job.trueColourFormat = !job.paletteFormat;
  job.effect = effects[seed % effects.size()];
  ChooseText(random, job);
  ChooseColours(random, job);
  ChooseRun(random, made);
  job.settings.emplace_back("MainDelay", std::to_string(random.From(1, 25)));
  if (random.Once(2)) job.settings.emplace_back("MainPause", std::to_string(random.From(1, 300)));
  for (const ControlInfo& control : controls) {
    const bool isCount = control.key.ends_with("Frames");
    if (control.panel != *job.effect || (!isCount && !random.Once(2))) continue;
    const std::string value = ValueFor(random, control);
    if (!value.empty()) job.settings.emplace_back(std::to_string(control.id), value);
  }
  return made;
}

std::string Describe(std::uint64_t seed, const RandomJob& made) {
  std::string text = std::to_string(seed) + " " + made.extension + " '" + *made.job.text + "' " + *made.job.effect;
  for (const auto& [key, value] : made.job.settings) text += " " + key + "=" + value;
  for (const int number : {made.effort, made.job.threads, static_cast<int>(made.job.palette), made.job.colours,
                           static_cast<int>(made.job.dithering), made.job.lineSpace, made.job.width, made.job.height})
    text += " " + std::to_string(number);
  return text;
}

// What a viewer sees and for how long, in units of the format; equal pictures in a row are one. Pixels that cannot be
// seen have no colour.
struct Show {
  std::vector<std::pair<Bytes, long>> pictures;

  void Add(Bytes rgba, long time) {
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
      if (rgba[i + 3] == 0) rgba[i] = rgba[i + 1] = rgba[i + 2] = 0;
    }
    if (!pictures.empty() && pictures.back().first == rgba) {
      pictures.back().second += time;
    } else {
      pictures.emplace_back(rgba, time);
    }
  }
};

// The frames as the engine means them: indices that are transparent show what was there before.
class Meant {
 public:
  Show show;
  long leastDelay = 0;  // of the format
  std::uint64_t hash = 14695981039346656037u;

  void Open(int width, int height) {
    width_ = static_cast<std::size_t>(width);
    screen_.assign(4 * width_ * static_cast<std::size_t>(height), 0);
  }
  void Add(const Image& image) {
    const DibPixels dib = ReadDib(image.dib);
    Bytes rgba;
    UnpackRgba(dib, image.transparentIndex, rgba);
    if (image.standAlone) std::fill(screen_.begin(), screen_.end(), std::uint8_t{0});
    const std::size_t row = 4 * static_cast<std::size_t>(dib.width);
    for (std::size_t y = 0; y < static_cast<std::size_t>(dib.height); ++y) {
      for (std::size_t x = 0; x < row; x += 4) {
        const std::uint8_t* from = &rgba[y * row + x];
        if (image.transparentIndex < 0 || from[3]) std::copy_n(from, 4, &screen_[4 * width_ * y + x]);
      }
    }
    show.Add(screen_, std::max(leastDelay, long{image.delay}));
    for (const std::uint8_t byte : image.dib) hash = (hash ^ byte) * 1099511628211u;
    hash = (hash ^ static_cast<std::uint64_t>(image.delay)) * 1099511628211u;
  }

 private:
  std::size_t width_ = 0;
  Bytes screen_;
};

Show Decode(const std::string& extension, const Bytes& file) {
  Show show;
  if (extension == ".gif") {
    const testing::DecodedGif gif = testing::DecodeGif(file);
    for (std::size_t i = 0; i < gif.screens.size(); ++i) {
      const auto* bytes = reinterpret_cast<const std::uint8_t*>(gif.screens[i].data());
      show.Add(Bytes(bytes, bytes + 4 * gif.screens[i].size()), gif.delays[i]);
    }
    return show;
  }
  if (extension == ".png" && !testing::HasFrames(file)) {
    int width = 0, height = 0;
    show.Add(testing::DecodePng(file, width, height), 0);
    return show;
  }
  const testing::Shown shown = extension == ".png"    ? testing::DecodeApng(file)
                               : extension == ".avif" ? testing::DecodeAvif(file)
                                                      : testing::DecodeWebp(file);
  for (std::size_t i = 0; i < shown.screens.size(); ++i) show.Add(shown.screens[i], shown.delays[i]);
  return show;
}

// Empty, or what differs. A GIF shows a frame with 256 colours of its own and a transparent index in two images.
std::string Difference(const Show& meant, const Show& seen) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < meant.pictures.size(); ++i, ++at) {
    const auto& [picture, time] = meant.pictures[i];
    long shown = 0;
    if (at + 1 < seen.pictures.size() && picture != seen.pictures[at].first) shown = seen.pictures[at++].second;
    if (at >= seen.pictures.size() || picture != seen.pictures[at].first)
      return "picture " + std::to_string(i) + " of " + std::to_string(meant.pictures.size()) + " differs";
    shown += seen.pictures[at].second;
    if (meant.pictures.size() > 1 && shown != time)
      return "picture " + std::to_string(i) + " is shown for " + std::to_string(shown) + ", not " +
             std::to_string(time);
  }
  return at == seen.pictures.size() ? "" : "there are more pictures than frames";
}

struct Outcome {
  std::string trouble;
  std::uint64_t hash = 0;
};

Outcome Run(const RandomJob& made, const std::string& path) {
  Meant meant;
  meant.leastDelay = made.extension == ".avif";
  std::string error, refused;
  Output output = Output::File(path, error);
  if (!output) return {error, 0};
  std::optional<Encoder> encoder;
  Sink sink;
  sink.task = [&](const Task& task) {
    meant.Open(task.width, task.height);
    encoder = FindFormat(made.extension)
                  ->open(output, {task.width, task.height, task.imageCount, made.job.paletteFormat ? 10 : 1, -1, 0,
                                  made.job.threads, 0, made.effort});
    return true;
  };
  sink.image = [&](const Image& image) {
    meant.Add(image);
    refused = encoder->add(image);
    return refused.empty();
  };
  const RenderResult result = Render(made.job, sink);
  if (result.status != RenderStatus::Done) return {"not done: " + result.message + refused, 0};
  if (result.blocks + result.locks) return {"blocks or locks are left", 0};
  if (!encoder) return {"no task", 0};
  if (error = encoder->finish(); error.empty()) error = output.Keep();
  if (!error.empty()) return {error, 0};
  return {Difference(meant.show, Decode(made.extension, testing::ReadBytes(path))), meant.hash};
}

// Seeds are taken in turn by all threads. A sum over jobs does not depend on their order.
int RunAll(std::uint64_t first, std::uint64_t count, unsigned threads, const std::string& expected) {
  const testing::TemporaryFolder folder;
  std::atomic<std::uint64_t> next = first;
  std::mutex mutex;
  std::map<std::string, std::uint64_t> sums;
  std::uint64_t failed = 0;
  const auto work = [&](unsigned number) {
    const std::string path = folder / ("job" + std::to_string(number));
    for (std::uint64_t seed; (seed = next++) < first + count;) {
      const RandomJob made = JobOf(seed);
      const Outcome outcome = Run(made, path);
      const std::lock_guard lock(mutex);
      sums[*made.job.effect] += outcome.hash;
      if (outcome.trouble.empty()) continue;
      ++failed;
      std::fprintf(stderr, "job %s\n  %s\n", Describe(seed, made).c_str(), outcome.trouble.c_str());
    }
  };
  {
    std::vector<std::jthread> team;
    for (unsigned i = 1; i < threads; ++i) team.emplace_back(work, i);
    work(0);
  }
  std::string lines;
  for (const auto& [effect, sum] : sums) {
    char line[64];
    std::snprintf(line, sizeof line, "%s %016llx\n", effect.c_str(), static_cast<unsigned long long>(sum));
    lines += line;
    if (expected.empty() || expected.find(line) != std::string::npos) continue;
    ++failed;
    std::fprintf(stderr, "%s: the checksum is another one\n", effect.c_str());
  }
  std::fputs(lines.c_str(), stdout);
  std::fprintf(stderr, "%llu jobs, %llu failed\n", static_cast<unsigned long long>(count),
               static_cast<unsigned long long>(failed));
  return failed || ::testing::Test::HasFailure() ? 1 : 0;
}

}  // namespace
}  // namespace glyphmotion

int main(int argc, char** argv) {
  using namespace glyphmotion;
  ::testing::InitGoogleTest(&argc, argv);
  CLI::App app("Random jobs against other decoders");
  std::uint64_t first = 0, count = 1000;
  unsigned threads = std::max(1u, std::thread::hardware_concurrency());
  bool describe = false;
  std::string expected;
  app.add_option("--first", first, "Number of the first job");
  app.add_option("--count", count, "How many jobs");
  app.add_option("--threads", threads, "How many at once")->check(CLI::Range(1u, 256u));
  app.add_option("--expect", expected, "Checksums that another build has printed")->check(CLI::ExistingFile);
  app.add_flag("--describe", describe, "Print the jobs instead of running them");
  CLI11_PARSE(app, argc, argv);
  if (!describe) return RunAll(first, count, threads, expected.empty() ? "" : glyphmotion::testing::ReadText(expected));
  for (std::uint64_t seed = first; seed < first + count; ++seed) std::puts(Describe(seed, JobOf(seed)).c_str());
}
