// SPDX-License-Identifier: MIT
#include "host/page/live_build.h"

#include "host/encoders/encoders.h"
#include "host/encoders/out_of_memory.h"
#include "host/page/frames.h"
#include "host/page/scratch.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPause = std::chrono::milliseconds(300);
constexpr int kGifUnit = 10;  // milliseconds

// The images of a run go to the page and, as the program would write them, into a file.
struct BuildSink {
  FrameCollector frames{kGifUnit};
  Output output;
  std::optional<Encoder> encoder;
  std::string error;
  Json background = nullptr;

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

}  // namespace

LiveBuild::LiveBuild(const PageServices& services, SendMessage send, std::string folder)
    : services_(services),
      send_(std::move(send)),
      folder_(std::move(folder)),
      thread_([this](const Wanted& wanted) { Build(wanted); }) {}

void LiveBuild::Request(Wanted wanted, bool hasText) {
  std::deque<Wanted> wishes;
  if (hasText) wishes.push_back(std::move(wanted));
  const std::lock_guard<std::mutex> lock(mutex_);
  thread_.Set(std::move(wishes), finishedRevision_ < 0 ? Clock::time_point{} : Clock::now() + kPause);
}

std::optional<std::string> LiveBuild::GifOf(int revision) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (revision != finishedRevision_) return std::nullopt;
  return finished_;
}

void LiveBuild::Build(const Wanted& wanted) {
  const std::string document = folder_ + "/build.gm4", picture = folder_ + "/build.gif";
  const auto started = Clock::now();
  const auto fail = [&](const std::string& sentence) {
    send_({{{"type", "build"}, {"state", "failed"}, {"revision", wanted.revision}, {"message", sentence}}, {}});
  };
  send_({{{"type", "build"}, {"state", "running"}, {"revision", wanted.revision}}, {}});
  std::string error;
  if (!WriteScratchFile(document, wanted.document))
    return fail("the folder '" + folder_ + "' cannot be written; is the disk full?");
  std::vector<std::string> words = {"--document", document, "-o", picture};
  words.insert(words.end(), wanted.words.begin(), wanted.words.end());
  const std::optional<Job> job = services_.job(words, error);
  if (!job) return fail(error);
  BuildSink sink;
  sink.output = Output::File(picture, error);
  if (!error.empty()) return fail(error);
  const RenderResult result = Render(*job, sink.SinkFor(thread_.Cancelled()));
  if (thread_.Cancelled() || result.status == RenderStatus::Cancelled) return;
  if (result.status != RenderStatus::Done || !sink.encoder) {
    const std::string& reason = sink.error.empty() ? result.message : sink.error;
    return fail(reason.empty() ? kOutOfMemory : reason);
  }
  error = sink.encoder->finish();
  if (error.empty()) error = sink.output.Keep();
  std::optional<std::string> gif = error.empty() ? ReadWholeFile(picture) : std::nullopt;
  if (!gif) return fail(error.empty() ? "the picture could not be kept" : error);
  const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started).count();
  PageMessage message{{{"type", "build"},
                       {"state", "done"},
                       {"revision", wanted.revision},
                       {"width", sink.frames.Width()},
                       {"height", sink.frames.Height()},
                       {"delays", sink.frames.Delays()},
                       {"format", sink.frames.IsIndexed() ? "indexed" : "rgba"},
                       {"bytes", gif->size()},
                       {"notes", result.notes},
                       {"ms", taken}},
                      sink.frames.Take()};
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    finishedRevision_ = wanted.revision;
    finished_ = std::move(*gif);
    if (thread_.Cancelled()) return;
  }
  send_(std::move(message));
}

}  // namespace glyphmotion
