// SPDX-License-Identifier: MIT
#include "host/program/program.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>

#include "glyphmotion/render.h"
#include "host/encoders/encoders.h"
#include "host/encoders/output_file.h"
#include "host/program/arguments.h"
#include "host/program/edit.h"
#include "host/program/gallery.h"
#include "host/program/image_loader.h"
#include "host/program/lists.h"
#include "host/program/progress.h"
#include "host/program/sample_picture.h"
#include "host/program/swatch.h"
#include "host/recording/recorder.h"
#include "materials/material_text.h"
#include "platform/text_engine.h"

namespace glyphmotion {
namespace {

// Set by signal handlers.
std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

int Fail(const std::string& sentence, int code = kExitFailed) {
  std::string line = sentence;
  std::replace(line.begin(), line.end(), '\n', ' ');
  std::fprintf(stderr, "glyphmotion: error: %s\n", line.c_str());
  return code;
}

Catalogue LibraryCatalogue() { return {EffectNames(), PaletteNames(), Keys(), Controls(), HasFontFamily, FontNames}; }

// Everything that takes part in one run.
struct Run {
  const Arguments& arguments;
  Output output;
  std::optional<Encoder> encoder;
  std::optional<Recorder> recorder;
  ProgressBar bar;
  std::string error;  // why an image was refused
  int width = 0, height = 0;

  explicit Run(const Arguments& given)
      : arguments(given), bar(!given.quiet && given.progress.value_or(ErrorsGoToTerminal())) {}
};

bool OpenEncoder(Run& run, int width, int height, int count) {
  run.width = width;
  run.height = height;
  if (!run.output) return true;
  const int unit = run.arguments.job.paletteFormat ? 10 : 1;
  run.encoder =
      FindFormat(run.arguments.extension)->open(run.output, {width, height, count, unit, run.arguments.lossyQuality});
  return true;
}

// A palette format takes the sample in a palette of its own.
std::string AddSample(Run& run, Image image) {
  PackedDib reduced;
  if (FindFormat(run.arguments.extension)->paletteFormat) {
    reduced = ReduceToPalette(image.dib);
    if (!reduced) return "memory is out; try a smaller size";
  }
  const LockedBlock<DibHeader> bytes(reduced.Handle());
  if (bytes) image.dib = {reinterpret_cast<const std::uint8_t*>(bytes.get()), BlockSize(reduced.Handle())};
  return run.encoder->add(image);
}

bool AddImage(Run& run, const Image& image) {
  if (image.sample) OpenEncoder(run, image.width, image.height, 1);
  if (!run.encoder) return true;
  run.error = image.sample ? AddSample(run, image) : run.encoder->add(image);
  return run.error.empty();
}

Sink SinkOf(Run& run) {
  Sink sink;
  sink.task = [&run](const Task& task) { return OpenEncoder(run, task.width, task.height, task.imageCount); };
  sink.image = [&run](const Image& image) { return AddImage(run, image); };
  sink.comment = [&run](const std::string& text) {
    if (run.encoder && run.encoder->comment) run.encoder->comment(text);
  };
  sink.stage = [&run](const std::string& name) { run.bar.Stage(name); };
  sink.progress = [&run](std::int64_t position, std::int64_t total) { run.bar.At(position, total); };
  if (run.recorder) sink.call = [&run](const HostCallEvent& event) { run.recorder->Call(event); };
  sink.stop = &interrupted;
  return sink;
}

std::string OpenOutputs(Run& run) {
  std::string error;
  if (!run.arguments.recordFolder.empty()) {
    run.recorder.emplace(run.arguments.recordFolder, error);
    if (!error.empty()) return error;
  }
  if (run.arguments.output.empty()) return {};
  run.output = run.arguments.framesAsPng ? Output::Folder(run.arguments.output, error)
                                         : Output::File(run.arguments.output, error);
  return error;
}

std::string MessageOf(const Run& run, const RenderResult& result) {
  if (!run.error.empty()) return run.error;
  if (!result.message.empty()) return InOptionTerms(result.message);
  return result.dialogMessages.empty() ? "the run failed" : result.dialogMessages.front();
}

// Empty when the output is whole, else one sentence.
std::string KeepOutput(Run& run, const RenderResult& result) {
  constexpr const char* kInterrupted = "interrupted; nothing was written";
  if (interrupted) return kInterrupted;
  if (result.status != RenderStatus::Done) return MessageOf(run, result);
  if (run.arguments.job.action == Job::Action::None) return {};
  if (result.images == 0 && run.arguments.job.action != Job::Action::Sample)
    return "the effect built no frame; is there anything to see in the text?";
  if (!run.output) return {};
  if (!run.encoder) return "no picture arrived; is there anything to see in the text?";
  std::string error = run.encoder->finish();
  if (interrupted) return kInterrupted;
  return error.empty() ? run.output.Keep() : error;
}

int Conclude(Run& run, const RenderResult& result) {
  const std::string trouble = KeepOutput(run, result);
  if (interrupted) return Fail(trouble, kExitInterrupted);
  if (!trouble.empty()) return Fail(trouble, result.status == RenderStatus::BadJob ? kExitUsage : kExitFailed);
  if (!run.output) return kExitDone;
  if (!run.arguments.quiet && ErrorsGoToTerminal())
    std::fprintf(stderr, "%s: %d picture%s of %d x %d pixels\n", run.arguments.output.c_str(),
                 std::max(result.images, 1), result.images > 1 ? "s" : "", run.width, run.height);
  return kExitDone;
}

// The exit code of a run that prints. A reader that has seen enough (head) wants no message.
int PrintedWell(int code) {
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
  if (errno == EPIPE) return kExitFailed;
  return Fail(std::string("standard output cannot be written: ") + std::strerror(errno ? errno : EIO));
}

int Execute(const Arguments& arguments) {
  Run run(arguments);
  const std::string error = OpenOutputs(run);
  if (!error.empty()) return Fail(error);
  Job job = arguments.job;
  job.loadImage = [](const std::string& path, std::string& trouble) {
    return WordOf(LoadPicture(path, trouble).Release());
  };
  const RenderResult result = Render(job, SinkOf(run));
  run.bar.Clear();
  if (run.recorder) {
    const std::string trouble = run.recorder->End(result);
    if (!trouble.empty()) return Fail(trouble);
  }
  return Conclude(run, result);
}

}  // namespace

void CatchInterrupts() {
  std::signal(SIGINT, [](int) { interrupted = true; });
  std::signal(SIGTERM, [](int) { interrupted = true; });
  std::signal(SIGHUP, [](int) { interrupted = true; });
  std::signal(SIGPIPE, SIG_IGN);  // a reader of the progress bar that goes away must not leave half a file
}

std::optional<Job> JobOf(const std::vector<std::string>& words, std::string& error) {
  const ParsedArguments parsed = ParseArguments(words, LibraryCatalogue());
  error = parsed.error;
  if (!parsed.arguments) return std::nullopt;
  return parsed.arguments->job;
}

std::string RunWords(const std::vector<std::string>& words) {
  const ParsedArguments parsed = ParseArguments(words, LibraryCatalogue());
  if (!parsed.arguments) return parsed.error;
  Run run(*parsed.arguments);
  const std::string error = OpenOutputs(run);
  return error.empty() ? KeepOutput(run, Render(parsed.arguments->job, SinkOf(run))) : error;
}

int RunProgram(const std::vector<std::string>& words) {
  try {
    if (IsEdit(words)) {
      bool usage = false;
      const std::string trouble = Edit(
          words, [] { return interrupted != 0; }, usage);
      return trouble.empty() ? kExitDone : Fail(trouble, usage ? kExitUsage : kExitFailed);
    }
    if (IsSwatch(words)) {
      SetImageLoader(LoadPicture);
      const std::string trouble = WriteSwatch(words);
      return trouble.empty() ? kExitDone : Fail(trouble, kExitUsage);
    }
    if (IsGallery(words)) {
      const std::string trouble = WriteGallery(words[1], RunProgram);
      return trouble.empty() ? kExitDone : Fail(trouble);
    }
    const Catalogue catalogue = LibraryCatalogue();
    const ParsedArguments parsed = ParseArguments(words, catalogue);
    if (!parsed.error.empty()) return Fail(parsed.error, parsed.exitCode);
    if (!parsed.arguments) {
      std::fputs(parsed.text.c_str(), stdout);
      return PrintedWell(parsed.exitCode);
    }
    if (parsed.arguments->list != ListKind::None) {
      const std::string trouble = PrintList(parsed.arguments->list, catalogue);
      return trouble.empty() ? PrintedWell(kExitDone) : Fail(trouble);
    }
    if (!parsed.arguments->quiet)
      for (const std::string& note : parsed.arguments->notes)
        std::fprintf(stderr, "glyphmotion: note: %s\n", note.c_str());
    return Execute(*parsed.arguments);
  } catch (const std::bad_alloc&) {
    return Fail("memory is out; try a smaller size or fewer frames");
  } catch (const std::exception& error) {
    return Fail(std::string("something unexpected happened: ") + error.what());
  }
}

}  // namespace glyphmotion
