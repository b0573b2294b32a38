// SPDX-License-Identifier: MIT
#include "host/page/effect_pictures.h"

#include <algorithm>

#include "effects/effect_table.h"
#include "host/page/frames.h"
#include "host/page/scratch.h"

namespace glyphmotion {
namespace {

constexpr int kUnit = 10, kMostFrames = 40;
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

EffectPictures::EffectPictures(const PageServices& services, SendMessage send, std::string folder)
    : services_(services),
      send_(std::move(send)),
      folder_(std::move(folder)),
      thread_([this](const PictureWish& wish) { Make(wish); }) {}

void EffectPictures::Make(const PictureWish& wish) {
  const std::string document = folder_ + "/picture.gm4";
  std::string error;
  if (!WriteScratchFile(document, wish.document)) return;
  std::vector<std::string> words = {"--document", document, "-o", folder_ + "/picture.gif"};
  words.insert(words.end(), wish.options.begin(), wish.options.end());
  const std::optional<Job> job = services_.job(words, error);
  if (!job) return;
  const Size trial = SampleSize(SmallJob(*job, wish, kTrialSize));
  if (trial.width < 1) return;
  const double fit =
      std::min({static_cast<double>(wish.width) / trial.width, static_cast<double>(wish.height) / trial.height});
  FrameCollector frames(kUnit, kMostFrames);
  Sink sink;
  sink.task = [&](const Task& task) {
    frames.Begin(task.width, task.height);
    return true;
  };
  sink.image = [&](const Image& image) { return frames.Add(image); };
  sink.stop = &thread_.Cancelled();
  const int size = std::clamp(static_cast<int>(kTrialSize * fit), kSmallest, kLargest);
  const RenderResult result = Render(SmallJob(*job, wish, size), sink);
  if (result.status != RenderStatus::Done || thread_.Cancelled()) return;
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
  send_(std::move(message));
}

}  // namespace glyphmotion
