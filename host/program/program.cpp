// SPDX-License-Identifier: MIT
#include "host/program/program.h"

#include <cxxabi.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>
#include <typeinfo>

#include "glyphmotion/render.h"
#include "host/encoders/encoders.h"
#include "host/encoders/out_of_memory.h"
#include "host/encoders/output_file.h"
#include "host/program/command_line.h"
#include "host/program/edit.h"
#include "host/program/gallery.h"
#include "host/program/help.h"
#include "host/program/help_topics.h"
#include "host/program/interrupts.h"
#include "host/program/lists.h"
#include "host/program/manual.h"
#include "host/program/progress.h"
#include "host/program/swatch.h"
#include "host/recording/recorder.h"
#include "host/render/image_loader.h"
#include "host/render/picture_output.h"
#include "materials/material_text.h"
#include "platform/text_engine.h"

namespace glyphmotion {
namespace {

int Fail(const std::string& sentence, int code = kExitFailed) {
  std::string line = sentence;
  std::replace(line.begin(), line.end(), '\n', ' ');
  std::fprintf(stderr, "glyphmotion: error: %s\n", line.c_str());
  return code;
}

// These two do not allocate: standard error is unbuffered.
int FailForMemory() noexcept {
  std::fputs("glyphmotion: error: ", stderr);
  std::fputs(kOutOfMemory, stderr);
  std::fputs("\n", stderr);
  return kExitFailed;
}
int FailUnexpectedly(const char* what) noexcept {
  std::fprintf(stderr, "glyphmotion: error: unexpected failure: %s; please report it\n", what);
  return kExitFailed;
}

void PrintNotes(const Arguments& arguments, const std::vector<std::string>& notes) {
  if (arguments.quiet) return;
  for (const std::string& note : notes)
    std::fprintf(stderr, "glyphmotion: note: %s\n", InOptionTerms(note, arguments).c_str());
}

// A text that is piped in, or asked for by name. It is cut at 64 KiB, far beyond the longest text.
std::optional<std::string> StandardInput(bool asked) {
  struct stat about {};
  const bool piped = fstat(STDIN_FILENO, &about) == 0 &&
                     (S_ISFIFO(about.st_mode) || S_ISREG(about.st_mode) || S_ISSOCK(about.st_mode));
  if (!piped && !asked) return std::nullopt;
  std::string text;
  for (int c; text.size() < 65536 && (c = std::fgetc(stdin)) != EOF;) text += static_cast<char>(c);
  return text;
}

Catalogue ProgramCatalogue() {
  Catalogue catalogue = LibraryCatalogue();
  catalogue.input = StandardInput;
  return catalogue;
}

// The parts of one run.
struct Run {
  const Arguments& arguments;
  std::optional<Recorder> recorder;
  std::optional<PictureOutput> pictures;
  ProgressBar bar;

  explicit Run(const Arguments& given)
      : arguments(given), bar(!given.quiet && given.progress.value_or(ErrorsGoToTerminal())) {}
};

Sink SinkOf(Run& run) {
  Sink sink;
  sink.stage = [&run](const std::string& name) { run.bar.Stage(name); };
  sink.progress = [&run](std::int64_t position, std::int64_t total) { run.bar.At(position, total); };
  if (run.recorder) sink.call = [&run](const HostCallEvent& event) { run.recorder->Call(event); };
  sink.stop = &InterruptRequest();
  return run.pictures->Attach(std::move(sink));
}

std::string OpenOutputs(Run& run) {
  const Arguments& arguments = run.arguments;
  std::string error;
  if (!arguments.recordFolder.empty()) {
    run.recorder.emplace(arguments.recordFolder, error);
    if (!error.empty()) return error;
  }
  Output output;
  if (arguments.output == "-") {
    if (isatty(STDOUT_FILENO)) return "standard output is a terminal; pipe it into a program or a file";
    output = Output::Stream();
  } else if (!arguments.output.empty()) {
    output = arguments.framesAsPng ? Output::Folder(arguments.output, error) : Output::File(arguments.output, error);
  }
  run.pictures.emplace(arguments.job, FindFormat(arguments.extension), arguments.lossyQuality, std::move(output));
  return error;
}

int Conclude(Run& run, const RenderResult& result) {
  const PictureOutput& pictures = *run.pictures;
  const std::string trouble = InterruptedCode() ? "" : InOptionTerms(run.pictures->Finish(result), run.arguments);
  if (InterruptedCode()) return Fail("interrupted; nothing was written", InterruptedCode());
  if (!trouble.empty()) return Fail(trouble, result.status == RenderStatus::BadJob ? kExitUsage : kExitFailed);
  PrintNotes(run.arguments, result.notes);
  if (pictures.HasPictures() && !run.arguments.quiet && ErrorsGoToTerminal())
    std::fprintf(stderr, "%s: %d picture%s of %d x %d pixels\n", run.arguments.output.c_str(),
                 std::max(result.images, 1), result.images > 1 ? "s" : "", pictures.width, pictures.height);
  return kExitDone;
}

// The exit code of a run that prints. When the reader closes the pipe (head), there is no message.
int PrintedWell(int code) {
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
  if (errno == EPIPE) return kExitFailed;
  return Fail(std::string("cannot write to standard output: ") + std::strerror(errno ? errno : EIO));
}

// help, man and completion with what belongs to them; anything else is a text.
bool IsPage(const std::vector<std::string>& words) {
  if (words.empty() || words.size() > 2 || (words.size() == 2 && words[1].starts_with('-'))) return false;
  return words[0] == "help" || words[0] == "completion" || (words[0] == "man" && words.size() == 1);
}

int PrintPage(const std::vector<std::string>& words, const Catalogue& catalogue) {
  std::string text;
  if (words[0] == "man") {
    text = ManualPage();
  } else if (words[0] == "completion") {
    text = words.size() == 2 ? Completion(words[1]) : std::string();
    if (text.empty()) return Fail("completion takes a shell: bash, zsh or fish", kExitUsage);
  } else if (words.size() == 1) {
    text = HelpText();
  } else if (const auto topic = HelpTopic(words[1], catalogue)) {
    text = *topic;
  } else {
    return Fail(NoSuchTopic(words[1], catalogue), kExitUsage);
  }
  std::fputs(text.c_str(), stdout);
  return PrintedWell(kExitDone);
}

int Execute(const Arguments& arguments) {
  Run run(arguments);
  const std::string error = OpenOutputs(run);
  if (!error.empty()) return Fail(error);
  const RenderResult result = Render(arguments.job, SinkOf(run));
  run.bar.Clear();
  if (run.recorder) {
    const std::string trouble = run.recorder->End(result);
    if (!trouble.empty()) return Fail(trouble);
  }
  return Conclude(run, result);
}

}  // namespace

std::optional<Job> JobOf(const std::vector<std::string>& words, std::string& error) {
  Catalogue catalogue = ProgramCatalogue();
  catalogue.textOptional = true;
  const ParsedArguments parsed = ParseArguments(words, catalogue);
  error = parsed.error;
  if (!parsed.arguments) return std::nullopt;
  return parsed.arguments->job;
}

std::string RunWords(const std::vector<std::string>& words) {
  const ParsedArguments parsed = ParseArguments(words, ProgramCatalogue());
  if (!parsed.arguments) return parsed.error;
  Run run(*parsed.arguments);
  const std::string error = OpenOutputs(run);
  if (!error.empty()) return error;
  const RenderResult result = Render(parsed.arguments->job, SinkOf(run));
  return InOptionTerms(run.pictures->Finish(result), run.arguments);
}

int RunProgram(const std::vector<std::string>& words) {
  try {
    if (IsEdit(words)) {
      bool usage = false;
      const std::string trouble = Edit(
          words, [] { return InterruptedCode() != 0; }, usage);
      if (!trouble.empty()) return Fail(trouble, usage ? kExitUsage : kExitFailed);
      return InterruptedCode() ? InterruptedCode() : kExitDone;
    }
    if (IsSwatch(words)) {
      SetImageLoader(LoadPicture);
      bool badUsage = false;
      const std::string trouble = WriteSwatch(words, badUsage);
      if (trouble == kOutOfMemory) return FailForMemory();
      return trouble.empty() ? kExitDone : Fail(trouble, badUsage ? kExitUsage : kExitFailed);
    }
    if (IsGallery(words)) {
      if (words.size() == 1) return Fail("gallery needs a folder; write gallery FOLDER", kExitUsage);
      const std::string trouble = WriteGallery(words[1], RunProgram);
      if (InterruptedCode()) return InterruptedCode();  // reported by the run of the current picture
      return trouble.empty() ? kExitDone : Fail(trouble);
    }
    const Catalogue catalogue = ProgramCatalogue();
    if (IsPage(words)) return PrintPage(words, catalogue);
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
    PrintNotes(*parsed.arguments, parsed.arguments->notes);
    return Execute(*parsed.arguments);
  } catch (const std::bad_alloc&) {
    return FailForMemory();
  } catch (const std::exception& error) {
    return FailUnexpectedly(error.what());
  }
}

int RunMain(int argc, char** argv) noexcept try {
  return RunProgram({argv + (argc > 0 ? 1 : 0), argv + argc});
} catch (const std::bad_alloc&) {
  return FailForMemory();
}

void EndWithoutMemory() noexcept {
  const std::type_info* type = abi::__cxa_current_exception_type();
  // No type: even the exception could not be allocated.
  if (type && *type != typeid(std::bad_alloc)) std::abort();
  FailForMemory();
  std::_Exit(kExitFailed);
}

}  // namespace glyphmotion
