// SPDX-License-Identifier: MIT
#include "host/program/program.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <optional>

#include "glyphmotion/render.h"
#include "host/encoders/colour_count.h"
#include "host/encoders/out_of_memory.h"
#include "host/encoders/output_file.h"
#include "host/options/looks.h"
#include "host/program/command_line.h"
#include "host/program/interrupts.h"
#include "host/program/json_lines.h"
#include "host/program/lists.h"
#include "host/program/outcome.h"
#include "host/program/progress.h"
#include "host/recording/recorder.h"
#include "host/render/picture_output.h"
#include "host/render/size_limit.h"
#include "platform/files.h"
#include "platform/heap.h"

namespace glyphmotion {
namespace {

void PrintNotes(const Arguments& arguments, const std::vector<std::string>& notes) {
  if (arguments.quiet || arguments.json) return;
  for (const std::string& note : notes) std::fprintf(stderr, "glyphmotion: note: %s\n", note.c_str());
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

// The parts of one run.
struct Run {
  const Arguments& arguments;
  const std::atomic<bool>& stop;
  std::optional<Recorder> recorder;
  std::optional<PictureOutput> pictures;
  ProgressBar bar;
  std::int64_t units = 0;  // sum of the delays
  std::optional<ColourCount> colours;

  Run(const Arguments& given, const std::atomic<bool>& givenStop)
      : arguments(given), stop(givenStop), bar(!given.quiet && given.progress.value_or(ErrorsGoToTerminal())) {}
};

Sink CallsOf(Run& run) {
  Sink sink;
  sink.stage = [&run](const std::string& name) { run.bar.Stage(name); };
  sink.progress = [&run](std::int64_t position, std::int64_t total) { run.bar.At(position, total); };
  if (run.recorder) sink.call = [&run](const HostCallEvent& event) { run.recorder->Call(event); };
  sink.image = [&run](const Image& image) {
    run.units += image.delay;
    // A sample is reduced to a palette on its way into the file.
    if (!run.arguments.json || run.arguments.job.maxBytes || (image.sample && run.arguments.job.paletteFormat))
      return true;
    if (!run.colours) run.colours.emplace();
    run.colours->Add(image.dib, image.transparentIndex);
    return true;
  };
  // There may be several runs, of the same duration.
  sink.task = [&run](const Task&) {
    run.units = 0;
    return true;
  };
  sink.stop = &run.stop;
  return sink;
}
Sink SinkOf(Run& run) { return run.pictures->Attach(CallsOf(run)); }

std::string OpenOutput(const Arguments& arguments, Output& output) {
  std::string error;
  if (arguments.output == "-") {
    if (isatty(STDOUT_FILENO)) return "standard output is a terminal; pipe it into a program or a file";
    output = Output::Stream();
  } else if (!arguments.output.empty()) {
    output = arguments.framesAsPng ? Output::Folder(arguments.output, error) : Output::File(arguments.output, error);
  }
  return error;
}

std::string OpenOutputs(Run& run) {
  const Arguments& arguments = run.arguments;
  std::string error;
  if (!arguments.recordFolder.empty()) {
    run.recorder.emplace(arguments.recordFolder, error);
    if (!error.empty()) return error;
  }
  Output output;
  error = OpenOutput(arguments, output);
  run.pictures.emplace(arguments.job, FindFormat(arguments.extension), std::move(output));
  return error;
}

// Ends the run: its pictures are kept, or the report says why not.
void Conclude(Run& run, const RenderResult& result, RunReport& report) {
  PictureOutput& pictures = *run.pictures;
  if (!InterruptedCode()) report.error = InOptionTerms(pictures.Finish(result), run.arguments);
  const bool badJob = result.status == RenderStatus::BadJob;
  report.code = report.error.empty() ? kExitDone : badJob ? kExitUsage : kExitFailed;
  if (InterruptedCode()) {
    report.error = "interrupted; nothing was written";
    report.code = InterruptedCode();
  }
  if (!report.error.empty()) return;
  for (const std::string& note : result.notes) report.notes.push_back(InOptionTerms(note, run.arguments));
  if (!pictures.HasPictures()) return;
  report.format = run.arguments.framesAsPng ? run.arguments.extension : run.arguments.extension.substr(1);
  report.width = pictures.width;
  report.height = pictures.height;
  report.frames = std::max(result.images, 1);
  report.duration = run.units * (run.arguments.job.paletteFormat ? 10 : 1);
  report.bytes = pictures.Bytes();
  if (run.colours) report.colours = run.colours->Count();
}

bool KeepLook(const Arguments& arguments) {
  return arguments.saveLookFile.empty() || AtomicWriteFile(arguments.saveLookFile, LookText(arguments.look));
}

// Writes a GIF of limited size; it is made in memory, because only the run that fits is written.
void PerformWithin(const Arguments& arguments, const std::atomic<bool>& stop, RunReport& report) {
  Output output;
  report.error = OpenOutput(arguments, output);
  report.code = kExitFailed;
  if (!report.error.empty()) return;
  Run run(arguments, stop);
  const FittedPictures made = RenderWithin(arguments.job, CallsOf(run), arguments.json);
  run.bar.Clear();
  report.error = InOptionTerms(made.trouble, arguments);
  if (made.result.status == RenderStatus::BadJob) report.code = kExitUsage;
  if (InterruptedCode()) {
    report.error = "interrupted; nothing was written";
    report.code = InterruptedCode();
  }
  if (report.error.empty()) report.error = output.Write(made.bytes) ? output.Keep() : output.Refusal();
  if (!report.error.empty()) return;
  report.code = kExitDone;
  for (const std::string& note : made.result.notes) report.notes.push_back(InOptionTerms(note, arguments));
  report.format = arguments.extension.substr(1);
  report.width = made.width;
  report.height = made.height;
  report.frames = made.frames;
  report.duration = run.units * 10;
  report.bytes = made.bytes.size();
  report.colours = made.colours;
}

void PerformOnce(const Arguments& arguments, const std::atomic<bool>& stop, RunReport& report) {
  Run run(arguments, stop);
  RenderResult result;
  report.error = OpenOutputs(run);
  if (report.error.empty()) {
    result = Render(arguments.job, SinkOf(run));
    run.bar.Clear();
    if (run.recorder) report.error = run.recorder->End(result);
  }
  if (report.error.empty()) {
    Conclude(run, result, report);
  } else {
    report.code = kExitFailed;
  }
}

// An error in words, or as JSON on standard output.
int FailAsAsked(bool json, const std::string& error, int code) {
  if (!json) return Fail(error, code);
  std::printf("%s\n", JsonOfError(error).c_str());
  return PrintedWell(code);
}

int Execute(const Arguments& arguments) {
  const RunReport report = Perform(arguments);
  if (arguments.json) {
    std::printf("%s\n", JsonOf(report).c_str());
    return PrintedWell(report.code);
  }
  if (!report.error.empty()) return Fail(report.error, report.code);
  PrintNotes(arguments,
             {report.notes.begin() + static_cast<std::ptrdiff_t>(arguments.notes.size()), report.notes.end()});
  if (!report.format.empty() && !arguments.quiet && ErrorsGoToTerminal())
    std::fprintf(stderr, "%s: %d picture%s of %d x %d pixels\n", arguments.output.c_str(), report.frames,
                 report.frames > 1 ? "s" : "", report.width, report.height);
  return kExitDone;
}

int PrintList(const Arguments& arguments, const Catalogue& catalogue) {
  std::string trouble;
  const ListTable table = TableOf(arguments.list, catalogue, trouble);
  if (!trouble.empty()) return FailAsAsked(arguments.json, trouble, kExitFailed);
  std::fputs(arguments.json ? (JsonOf(table) + "\n").c_str() : WordsOf(table).c_str(), stdout);
  return PrintedWell(kExitDone);
}

bool AskForJson(const std::vector<std::string>& words) {
  const auto end = std::find(words.begin(), words.end(), "--");
  return std::find(words.begin(), end, "--json") != end;
}

}  // namespace

Catalogue ProgramCatalogue() {
  Catalogue catalogue = LibraryCatalogue();
  catalogue.input = StandardInput;
  return catalogue;
}

RunReport Perform(const Arguments& arguments, const std::atomic<bool>& stop) {
  const auto begin = std::chrono::steady_clock::now();
  RunReport report;
  report.file = arguments.output;
  report.notes = arguments.notes;
  if (arguments.job.maxBytes) {
    PerformWithin(arguments, stop, report);
  } else {
    PerformOnce(arguments, stop, report);
  }
  if (report.error.empty() && !KeepLook(arguments)) {
    report.error =
        "the look '" + arguments.saveLookFile + "' cannot be written; check its folder and the free disk space";
    report.code = kExitFailed;
  }
  const auto time = std::chrono::steady_clock::now() - begin;
  report.time = std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
  return report;
}

std::optional<Job> JobOf(const std::vector<std::string>& words, std::string& error) {
  Catalogue catalogue = LibraryCatalogue();
  catalogue.textOptional = true;
  const ParsedArguments parsed = ParseArguments(words, catalogue);
  error = parsed.error;
  if (!parsed.arguments) return std::nullopt;
  return parsed.arguments->job;
}

std::string RunWords(const std::vector<std::string>& words, const std::atomic<bool>& stop) {
  const ParsedArguments parsed = ParseArguments(words, LibraryCatalogue());
  if (!parsed.arguments) return parsed.error;
  return Perform(*parsed.arguments, stop).error;
}

int RunLine(const std::vector<std::string>& words) {
  return EndingWell([&] {
    const Catalogue catalogue = ProgramCatalogue();
    const ParsedArguments parsed = ParseArguments(words, catalogue);
    if (!parsed.error.empty()) return FailAsAsked(AskForJson(words), parsed.error, parsed.exitCode);
    if (!parsed.arguments) {
      std::fputs(parsed.text.c_str(), stdout);
      return PrintedWell(parsed.exitCode);
    }
    if (parsed.arguments->list != ListKind::None) return PrintList(*parsed.arguments, catalogue);
    PrintNotes(*parsed.arguments, parsed.arguments->notes);
    return Execute(*parsed.arguments);
  });
}

int RunMain(int argc, char** argv) noexcept try {
  return RunProgram({argv + (argc > 0 ? 1 : 0), argv + argc});
} catch (const std::bad_alloc&) {
  return FailForMemory();
}

int Main(int argc, char** argv) noexcept {
  OpenStandardStreams();
  KeepFreedMemory();
  CatchInterrupts();
  const int code = RunMain(argc, argv);
  return code != kExitDone && InterruptedCode() ? InterruptedCode() : code;
}

}  // namespace glyphmotion
