// SPDX-License-Identifier: MIT
// The animation of a document and small pictures of effects and looks.
#include "host/page/page_work.h"

#include <algorithm>
#include <chrono>

#include "effects/effect_table.h"
#include "host/encoders/encoders.h"
#include "host/encoders/out_of_memory.h"
#include "host/page/frames.h"
#include "host/page/scratch.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kGifUnit = 10;  // milliseconds

// The images of a run go to the page and, as the program would write them, into a file.
struct BuildSink {
  FrameCollector frames{kGifUnit};
  std::vector<std::uint8_t> gif;
  Output output = Output::Memory(gif);
  std::optional<Encoder> encoder;
  std::string error;

  bool Open(const Task& task) {
    frames.Begin(task.width, task.height);
    encoder = FindFormat(".gif")->open(output, {task.width, task.height, task.imageCount, kGifUnit, -1});
    return true;
  }
  bool Take(const Image& image) {
    if (!encoder || !frames.Add(image)) return false;
    error = encoder->add(image);
    return error.empty();
  }
  Sink SinkFor(const std::atomic<bool>& cancel) {
    Sink sink;
    sink.task = [this](const Task& task) { return Open(task); };
    sink.image = [this](const Image& image) { return Take(image); };
    sink.comment = [this](const std::string& text) {
      if (encoder && encoder->comment) encoder->comment(text);
    };
    sink.stop = &cancel;
    return sink;
  }
};

constexpr int kMostFrames = 40;
constexpr int kTrialSize = 28, kSmallest = 10, kLargest = 40;

// The sizes of one run, which is all that the trial is for.
struct Size {
  int width = 0, height = 0;
};

Job SmallJob(const Job& job, const PictureWish& wish, int size) {
  Job small = job;
  if (wish.look.empty()) small.effect = EffectRow(wish.effect).name;
  small.text = wish.text;
  small.paletteFormat = true;
  small.trueColourFormat = true;
  small.width = small.height = 0;
  for (const auto& [key, value] : std::initializer_list<Job::Setting>{{"MainFontSize", std::to_string(size)},
                                                                      {"MainPadding", "2"},
                                                                      {"Truecolour", "1"},
                                                                      {"MainPause", "40"},
                                                                      {"MainDelay", "4"}}) {
    small.settings.emplace_back(key, value);
  }
  return small;
}

Size SampleSize(const Job& job) {
  Job trial = job;
  trial.action = Job::Action::Sample;
  Size size;
  Sink sink;
  sink.image = [&size](const Image& image) {
    size = {image.width, image.height};
    return true;
  };
  Render(trial, sink);
  return size;
}

}  // namespace

std::optional<std::string> BuildDocument(const WorkPlace& place, const BuildOrder& order,
                                         const std::atomic<bool>& cancel) {
  const std::string document = place.folder + "/build.gm4", picture = place.folder + "/build.gif";
  const auto started = Clock::now();
  const auto fail = [&](const std::string& sentence) -> std::optional<std::string> {
    place.send({{{"type", "build"}, {"state", "failed"}, {"revision", order.revision}, {"message", sentence}}, {}});
    return std::nullopt;
  };
  place.send({{{"type", "build"}, {"state", "running"}, {"revision", order.revision}}, {}});
  std::string error;
  if (!WriteScratchFile(document, order.document))
    return fail("the folder '" + place.folder + "' cannot be written; is the disk full?");
  std::vector<std::string> words = {"--document", document, "-o", picture};
  words.insert(words.end(), order.words.begin(), order.words.end());
  const std::optional<Job> job = place.services.job(words, error);
  if (!job) return fail(error);
  BuildSink sink;
  const RenderResult result = Render(*job, sink.SinkFor(cancel));
  if (cancel || result.status == RenderStatus::Cancelled) return std::nullopt;
  if (result.status != RenderStatus::Done || !sink.encoder) {
    const std::string& reason = sink.error.empty() ? result.message : sink.error;
    return fail(reason.empty() ? kOutOfMemory : reason);
  }
  error = sink.encoder->finish();
  if (!error.empty()) return fail(error);
  const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started).count();
  PageMessage message{{{"type", "build"},
                       {"state", "done"},
                       {"revision", order.revision},
                       {"width", sink.frames.Width()},
                       {"height", sink.frames.Height()},
                       {"delays", sink.frames.Delays()},
                       {"format", sink.frames.IsIndexed() ? "indexed" : "rgba"},
                       {"bytes", sink.gif.size()},
                       {"notes", result.notes},
                       {"ms", taken}},
                      sink.frames.Take()};
  if (cancel) return std::nullopt;
  place.send(std::move(message));
  return std::string(sink.gif.begin(), sink.gif.end());
}

void MakePicture(const WorkPlace& place, const PictureWish& wish, const std::atomic<bool>& cancel) {
  const std::string document = place.folder + "/picture.gm4";
  std::string error;
  if (!WriteScratchFile(document, wish.document)) return;
  std::vector<std::string> words = {"--document", document, "-o", place.folder + "/picture.gif"};
  words.insert(words.end(), wish.options.begin(), wish.options.end());
  const std::optional<Job> job = place.services.job(words, error);
  if (!job) return;
  const Size trial = SampleSize(SmallJob(*job, wish, kTrialSize));
  if (trial.width < 1) return;
  const double fit =
      std::min({static_cast<double>(wish.width) / trial.width, static_cast<double>(wish.height) / trial.height});
  FrameCollector frames(kGifUnit, kMostFrames);
  Sink sink;
  sink.task = [&](const Task& task) {
    frames.Begin(task.width, task.height);
    return true;
  };
  sink.image = [&](const Image& image) { return frames.Add(image); };
  sink.stop = &cancel;
  const int size = std::clamp(static_cast<int>(kTrialSize * fit), kSmallest, kLargest);
  const RenderResult result = Render(SmallJob(*job, wish, size), sink);
  if (result.status != RenderStatus::Done || cancel) return;
  PageMessage message{{{"type", "thumb"},
                       {"key", wish.key},
                       {"width", frames.Width()},
                       {"height", frames.Height()},
                       {"delays", frames.Delays()},
                       {"format", frames.IsIndexed() ? "indexed" : "rgba"}},
                      frames.Take()};
  if (wish.look.empty()) {
    message.json["effect"] = wish.effect;
  } else {
    message.json["look"] = wish.look;
  }
  place.send(std::move(message));
}

}  // namespace glyphmotion
