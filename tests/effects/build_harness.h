// SPDX-License-Identifier: MIT
// Builds for tests: through Render(), as everybody else builds.
#pragma once

#include <glyphmotion/render.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace glyphmotion::test {

struct BuiltFrame {
  int width = 0, height = 0, bits = 0, delay = 0, transparentIndex = -1;
  bool standAlone = false;
  std::vector<std::uint8_t> dib;  ///< the packed DIB's bytes
  friend bool operator==(const BuiltFrame& a, const BuiltFrame& b) { return a.dib == b.dib; }
};

struct Built {
  RenderResult result;
  std::vector<BuiltFrame> frames;
  std::vector<std::pair<std::int64_t, std::int64_t>> progress;  ///< while "Building", the clearing calls left out
  std::vector<int> Delays() const {
    std::vector<int> delays;
    for (const BuiltFrame& frame : frames) delays.push_back(frame.delay);
    return delays;
  }
  std::size_t Distinct() const {
    std::set<std::string> distinct;
    for (const BuiltFrame& frame : frames) distinct.emplace(frame.dib.begin(), frame.dib.end());
    return distinct.size();
  }
};

using Settings = std::vector<Job::Setting>;

/// A true-colour job: short text, small type, delay 4 and pause 100, so that frames are the effect's own pixels.
inline Job SmallJob(const std::string& effect, const Settings& settings = {}) {
  Job job;
  job.effect = effect;
  job.text = "Ab";
  job.paletteFormat = false;
  job.defaults = {{"MainFontSize", "16"},
                  {"MainDelay", "4"},
                  {"MainPause", "100"},
                  {"Truecolour", "1"},
                  {"MainFontName", "Liberation Sans"}};
  job.settings = settings;
  return job;
}

inline Built RunJob(const Job& job) {
  Built built;
  bool building = false;
  Sink sink;
  sink.stage = [&](const std::string& name) { building = name == "Building"; };
  sink.progress = [&](std::int64_t position, std::int64_t total) {
    if (building && total) built.progress.emplace_back(position, total);
  };
  sink.image = [&](const Image& image) {
    built.frames.push_back({image.width,
                            image.height,
                            image.bits,
                            image.delay,
                            image.transparentIndex,
                            image.standAlone,
                            {image.dib.begin(), image.dib.end()}});
    return true;
  };
  built.result = Render(job, sink);
  return built;
}

inline Built BuildWith(const std::string& effect, const Settings& settings = {}) {
  return RunJob(SmallJob(effect, settings));
}

/// The sample picture: the effect's test function.
inline Built SampleWith(const std::string& effect, const Settings& settings = {}) {
  Job job = SmallJob(effect, settings);
  job.action = Job::Action::Sample;
  return RunJob(job);
}

/// What differs from a run of `frames` frames of delay 4, of which those in `resting` pause for 100 more and the first
/// `steps` report progress (i, total); empty when nothing does.
inline std::string BadSchedule(const Built& built, std::size_t frames, const std::set<std::size_t>& resting,
                               std::size_t steps, std::int64_t total) {
  if (built.frames.size() != frames) return std::to_string(built.frames.size()) + " frames " + built.result.message;
  for (std::size_t i = 0; i < frames; ++i) {
    if (built.frames[i].delay != (resting.contains(i) ? 104 : 4)) return "delay of frame " + std::to_string(i);
  }
  if (built.progress.size() != steps) return std::to_string(built.progress.size()) + " steps";
  for (std::size_t i = 0; i < steps; ++i) {
    if (built.progress[i] != std::pair(static_cast<std::int64_t>(i), total)) return "step " + std::to_string(i);
  }
  return "";
}

/// Lets each allocation of the job fail in turn, every `stride`-th from the first on; returns the first n whose run
/// left blocks or locks behind or claimed success without all frames, or 0.
inline std::uint64_t FirstBadFailure(Job job, std::uint64_t stride = 1, std::uint64_t most = 100000) {
  const std::size_t frames = RunJob(job).frames.size();
  for (std::uint64_t n = 1; n <= most; n += stride) {
    job.failAllocation = n;
    const Built built = RunJob(job);
    const bool done = built.result.status == RenderStatus::Done;
    if (built.result.blocks || built.result.locks || (done && built.frames.size() != frames)) return n;
  }
  return 0;
}

/// A pixel of a 24-bit frame, 0x00BBGGRR.
inline std::uint32_t PixelOf(const BuiltFrame& frame, int x, int y) {
  const std::size_t stride =
      (static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.bits) + 31) / 32 * 4;
  const std::uint8_t* p = frame.dib.data() + 40 + stride * static_cast<std::size_t>(frame.height - 1 - y) +
                          static_cast<std::size_t>(x) * static_cast<std::size_t>(frame.bits / 8);
  return p[2] | std::uint32_t{p[1]} << 8 | std::uint32_t{p[0]} << 16;
}

}  // namespace glyphmotion::test
