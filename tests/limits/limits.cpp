// SPDX-License-Identifier: MIT
// How long a run at the dialog's limits leaves a person waiting: the longest time between two calls to the host, which
// show progress, and the time to end once it was asked to. Each effect draws 260 letters in size 144, with each of its
// numbers at its largest (--all: and its smallest), each check off and on, with slow materials, and with each palette.
//
//   limits [--effect NAME | --effect palettes] [--option PART] [--all] [--rows N] [--threads N]
//
// --option runs only what has the part in its name.
// Times are processor time, so that other programs do not count. Prints the slowest, and returns 1 if any is slower
// than kLongestSilence or kLongestEnd.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

#include "glyphmotion/render.h"

namespace glyphmotion {
namespace {

constexpr double kLongestSilence = 10, kLongestEnd = 0.05;  // seconds
constexpr double kShort = 0.3, kLong = 12;                  // of a run, before it is asked to end
constexpr int kFewCalls = 12;                               // which a short run waits for
constexpr std::size_t kLetters = 260;

double Now() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

struct Times {
  double silence = 0, end = 0;
  bool refused = false;  // memory does not hold the run
  std::string after;     // the stage of the longest silence
};

Times Measure(const Job& job, double seconds, int fewest) {
  Times times;
  const double begun = Now();
  double last = begun;
  std::string stage = "opening";
  std::atomic<int> calls{0};
  const auto hear = [&] {
    const double now = Now();
    if (now - last > times.silence) times.silence = now - last, times.after = stage;
    last = now;
    ++calls;
  };
  std::atomic<bool> stop{false}, done{false};
  std::atomic<double> stopped{0};
  std::thread watcher([&] {
    const auto goesOn = [&](double spent) { return spent < kLong && (spent < seconds || calls < fewest); };
    while (!done && goesOn(Now() - begun)) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    stopped = Now();
    stop = true;
  });
  Sink sink;
  sink.stop = &stop;
  sink.call = [&](const HostCallEvent&) { hear(); };
  sink.stage = [&](const std::string& text) { stage = text; };
  const RenderResult result = Render(job, sink);
  const double ended = Now();
  done = true;
  watcher.join();
  if (result.status == RenderStatus::Cancelled || stopped < ended) {
    times.end = std::max(0.0, ended - stopped);
    last = std::min(last, stopped.load());
    if (stopped - last > times.silence) times.silence = stopped - last, times.after = stage;
  }
  times.refused = result.status == RenderStatus::Failed;
  if (result.status == RenderStatus::BadJob) std::printf("not a job: %s\n", result.message.c_str());
  return times;
}

struct Row {
  std::string effect, option;
  Times times;
};

Job LargestJob(const std::string& effect) {
  Job job;
  job.effect = effect;
  job.text = std::string(kLetters, 'W');
  job.size = 144;
  job.trueColour = true;
  return job;
}

struct Wish {
  std::string effect, option;
  int threads = 1;
  bool all = false;
};

void TryJob(std::vector<Row>& rows, const Wish& wish, const Job& job, const std::string& option, double seconds,
            int fewest) {
  if (option.find(wish.option) == std::string::npos) return;
  Row row{*job.effect, option, Measure(job, seconds, fewest)};
  for (Job smaller = job; row.times.refused && smaller.text->size() > 16;) {
    smaller.text->resize(smaller.text->size() / 2);
    row.option = option + " with " + std::to_string(smaller.text->size()) + " letters";
    row.times = Measure(smaller, seconds, fewest);
  }
  rows.push_back(std::move(row));
}

std::vector<Row> TryEffect(const std::string& effect, const Wish& wish) {
  std::vector<Row> rows;
  Job plain = LargestJob(effect);
  plain.threads = wish.threads;
  TryJob(rows, wish, plain, "as it is", kShort, kFewCalls);
  const auto withSetting = [&](const std::string& key, const std::string& value, const std::string& name) {
    Job job = plain;
    job.settings.emplace_back(key, value);
    TryJob(rows, wish, job, name + " " + value, kShort, kFewCalls);
  };
  for (const ControlInfo& control : Controls()) {
    const bool common = control.key == "MainPadding" || control.key == "MainFontSpace";
    if ((!common && control.panel != effect) || (control.kind != "number" && control.kind != "check")) continue;
    const std::string name = control.key.empty() ? control.caption : control.key;
    const std::size_t comma = control.range.find(',');
    if (comma == std::string::npos) {
      for (const char* value : {"0", "1"}) withSetting(std::to_string(control.id), value, name);
    } else {
      if (wish.all) withSetting(std::to_string(control.id), control.range.substr(0, comma), name);
      withSetting(std::to_string(control.id),
                  control.range.substr(comma + 1, control.range.find(',', comma + 1) - comma - 1), name);
    }
  }
  for (const char* fill : {"texture:fractal5,size=1024", "texture:craters,craters=9999", "texture:perturbation",
                           "gradient:conical,#f00-#00f", "tile:#1"}) {
    Job job = plain;
    job.fill = fill;
    TryJob(rows, wish, job, fill, kShort, kFewCalls);
  }
  return rows;
}

// Few frames, so that the run comes to its later stages, and is asked to end in each of them.
std::vector<Row> TryPalettes(const Wish& wish) {
  std::vector<Row> rows;
  for (const Job::Palette palette : {Job::Palette::Custom, Job::Palette::Best, Job::Palette::Safe216}) {
    for (const bool dither : {false, true}) {
      for (const bool supercompress : {false, true}) {
        Job job = LargestJob("Vortex");
        job.threads = wish.threads;
        job.trueColour = false;
        job.trueColourFormat = false;
        job.frames = 2;
        job.palette = palette;
        job.dither = dither;
        job.dithering = supercompress ? Job::Dithering::Stable : Job::Dithering::Diffuse;
        job.supercompress = supercompress;
        for (const double seconds : {0.5, 1.5, 3.0, 6.0, kLong}) {
          const std::string option = "palette " + std::to_string(static_cast<int>(palette)) +
                                     (dither ? ", dither" : "") + (supercompress ? ", supercompress" : "") + ", " +
                                     std::to_string(seconds).substr(0, 4) + " s";
          TryJob(rows, wish, job, option, seconds, 0);
        }
      }
    }
  }
  return rows;
}

void Print(std::vector<Row> rows, std::size_t most, double Times::*time, const char* title) {
  std::stable_sort(rows.begin(), rows.end(), [&](const Row& a, const Row& b) { return a.times.*time > b.times.*time; });
  std::printf("\n| Effect | Option | %s |\n|---|---|---|\n", title);
  for (std::size_t i = 0; i < std::min(most, rows.size()); ++i)
    std::printf("| %s | %s | %.3f s%s |\n", rows[i].effect.c_str(), rows[i].option.c_str(), rows[i].times.*time,
                time == &Times::silence ? (", " + rows[i].times.after).c_str() : "");
}

int Run(int argc, char** argv) {
  CLI::App app;
  Wish wish;
  std::size_t most = 12;
  app.add_option("--effect", wish.effect);
  app.add_option("--option", wish.option);
  app.add_option("--rows", most);
  app.add_option("--threads", wish.threads);
  app.add_flag("--all", wish.all);
  CLI11_PARSE(app, argc, argv);
  std::vector<Row> rows;
  const auto add = [&](std::vector<Row> more) {
    rows.insert(rows.end(), more.begin(), more.end());
    for (const Row& row : more)
      std::fprintf(stderr, "%s, %s: %.3f s, %.3f s\n", row.effect.c_str(), row.option.c_str(), row.times.silence,
                   row.times.end);
  };
  for (const std::string& effect : EffectNames()) {
    if (wish.effect.empty() || wish.effect == effect) add(TryEffect(effect, wish));
  }
  if (wish.effect.empty() || wish.effect == "palettes") add(TryPalettes(wish));
  Print(rows, most, &Times::silence, "Longest time between two calls");
  Print(rows, most, &Times::end, "Time to end");
  const auto isSlow = [](const Row& row) { return row.times.silence > kLongestSilence || row.times.end > kLongestEnd; };
  const auto slow = std::count_if(rows.begin(), rows.end(), isSlow);
  std::printf("\n%zu runs, %td too slow\n", rows.size(), slow);
  return slow ? 1 : 0;
}

}  // namespace
}  // namespace glyphmotion

int main(int argc, char** argv) { return glyphmotion::Run(argc, argv); }
