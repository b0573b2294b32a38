// SPDX-License-Identifier: MIT
#include "host/program/batch.h"

#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <unordered_map>

#include "host/encoders/out_of_memory.h"
#include "host/options/values.h"
#include "host/program/batch_board.h"
#include "host/program/batch_journal.h"
#include "host/program/command_line.h"
#include "host/program/help.h"
#include "host/program/interrupts.h"
#include "host/program/json_lines.h"
#include "host/program/program.h"
#include "host/program/progress.h"

namespace glyphmotion {
namespace fs = std::filesystem;
namespace {

constexpr std::size_t kMostLineBytes = std::size_t{1} << 20;

struct BatchOptions {
  std::string file;  // "-": standard input
  std::string out;   // empty: names are used as given
  int jobs = 1;
  long shard = 1, shards = 1;
  bool resume = false;
  BatchBoard::Style style;
};

void ReadShard(const std::string& text, BatchOptions& options) {
  const std::size_t slash = text.find('/');
  const auto part = WholeNumber(text.substr(0, slash));
  const auto parts = slash == std::string::npos ? std::nullopt : WholeNumber(text.substr(slash + 1));
  if (!part || !parts || *part < 1 || *part > *parts || *parts > 1000000)
    Refuse("--shard " + text + " is not allowed: it takes I/N with I from 1 to N, for example 2/8");
  options.shard = *part;
  options.shards = *parts;
  options.style.shards = static_cast<int>(*parts);
}

BatchOptions ReadOptions(const TypedWords& typed) {
  BatchOptions options;
  for (const OptionRow& row : BatchRows()) {
    for (const std::string& value : typed.Values(LongName(row))) CheckValue(row, value);
  }
  if (!typed.text || typed.text->empty())
    Refuse("there is no file of jobs; write glyphmotion batch JOBS.jsonl, or - for standard input");
  options.file = *typed.text;
  options.out = typed.Value("--out");
  options.resume = typed.IsOn("--resume");
  options.style.json = typed.IsOn("--json");
  options.style.quiet = typed.IsOn("--quiet");
  options.style.progress = typed.Flag("--progress").value_or(!options.style.quiet && ErrorsGoToTerminal());
  options.jobs = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  if (typed.Has("--jobs")) options.jobs = static_cast<int>(WholeNumber(typed.Value("--jobs")).value_or(1));
  if (typed.Has("--shard")) ReadShard(typed.Value("--shard"), options);
  return options;
}

// --- The lines

struct BatchLine {
  long number = 0;   // from 1
  std::string text;  // as in the file
  JobLine job;
  RunReport refusal;  // its error says why the line cannot be run
};

class LineReader {
 public:
  explicit LineReader(const std::string& file) : file_(file == "-" ? stdin : std::fopen(file.c_str(), "r")) {}
  LineReader(const LineReader&) = delete;
  ~LineReader() {
    if (file_ && file_ != stdin) std::fclose(file_);
  }

  explicit operator bool() const { return file_ != nullptr; }
  std::uint64_t Position() const { return position_; }
  // Why no more lines can be read; empty at the end.
  const std::string& Trouble() const { return trouble_; }

  // The next line that is not blank; one that is too long is cut.
  bool Next(BatchLine& line) {
    int c = 0;
    do {
      line.text.clear();
      while ((c = getc_unlocked(file_)) != EOF && c != '\n') {
        if (c == 0) return trouble_ = "it has NUL bytes, so it is not a text", false;
        if (line.text.size() <= kMostLineBytes) line.text += static_cast<char>(c);
        ++position_;
      }
      ++position_;
      if (std::ferror(file_)) return trouble_ = std::strerror(errno), false;
      line.number = ++number_;
    } while (c != EOF && line.text.find_first_not_of(" \t\r") == std::string::npos);
    return line.text.find_first_not_of(" \t\r") != std::string::npos;
  }

 private:
  std::FILE* file_;
  long number_ = 0;
  std::uint64_t position_ = 0;
  std::string trouble_;
};

// Hands lines from the reader to the workers. Holds a few lines only.
class Conveyor {
 public:
  explicit Conveyor(std::size_t room) : room_(room) {}

  void Put(BatchLine line) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return lines_.size() < room_; });
    lines_.push_back(std::move(line));
    changed_.notify_all();
  }
  // Nothing at the end.
  std::optional<BatchLine> Take() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return closed_ || !lines_.empty(); });
    if (lines_.empty()) return std::nullopt;
    std::optional<BatchLine> line = std::move(lines_.front());
    lines_.pop_front();
    changed_.notify_all();
    return line;
  }
  void Close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
  }

 private:
  const std::size_t room_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<BatchLine> lines_;
  bool closed_ = false;
};

// --- The batch

class Batch {
 public:
  Batch(const BatchOptions& options, const Catalogue& catalogue, const std::function<RunReport(const Arguments&)>& run)
      : options_(options),
        catalogue_(catalogue),
        run_(run),
        board_(options.style),
        journal_(options.file == "-" ? "" : options.file,
                 options.shards == 1 ? "" : std::to_string(options.shard) + "-of-" + std::to_string(options.shards)) {}

  BatchOutcome Run(LineReader& reader);

 private:
  void CheckWrites(const BatchLine& line);
  void Prepare(BatchLine& line);
  void Feed(LineReader& reader, Conveyor& conveyor);
  RunReport RunLine(const BatchLine& line) const;
  void Work(Conveyor& conveyor);
  bool Stopped() const { return InterruptedCode() != 0 || board_.OutputTrouble() != 0; }

  const BatchOptions& options_;
  const Catalogue& catalogue_;
  const std::function<RunReport(const Arguments&)>& run_;
  BatchBoard board_;
  BatchJournal journal_;
  std::unordered_map<std::string, long> writers_;  // the line that writes a file
};

// The file of two lines would be that of the later one, which is anyone when they run at once.
void Batch::CheckWrites(const BatchLine& line) {
  for (const std::string& name : line.job.writes) {
    const auto [writer, isNew] = writers_.try_emplace(PlaceOf(name), line.number);
    if (!isNew)
      Refuse("it writes '" + name + "' as " +
             (writer->second == line.number ? "two of its files"
                                            : "line " + std::to_string(writer->second) + " does already") +
             "; give each a name of its own");
  }
}

// Reads a line; every line, so that all shards refuse the same ones.
void Batch::Prepare(BatchLine& line) {
  try {
    if (line.text.size() > kMostLineBytes)
      Refuse("the line is longer than " + std::to_string(kMostLineBytes >> 20) + " MiB; use text-file for long texts");
    line.job = ReadJobLine(line.text, options_.out);
    if (line.job.writes.empty()) Refuse("the line has no output; add \"output\": \"NAME.gif\"");
    CheckWrites(line);
  } catch (const UsageError& error) {
    line.refusal.error = error.sentence;
    line.refusal.code = kExitUsage;
  }
  if (!line.job.writes.empty()) line.refusal.file = line.job.writes.front();
}

void Batch::Feed(LineReader& reader, Conveyor& conveyor) {
  BatchLine line;
  for (long count = 0; !Stopped() && reader.Next(line); ++count) {
    Prepare(line);
    board_.Reached(reader.Position());
    if (count % options_.shards == options_.shard - 1) {
      if (options_.resume && line.refusal.error.empty() && journal_.Made(line.job.writes.front(), line.text)) {
        board_.Skipped(line.job.writes.front(), line.number);
      } else {
        conveyor.Put(std::move(line));
      }
    }
    line = {};
  }
}

RunReport Batch::RunLine(const BatchLine& line) const {
  RunReport report = line.refusal;
  if (!report.error.empty()) return report;
  try {
    ParsedArguments parsed = ParseArguments(line.job.words, catalogue_);
    if (parsed.arguments) {
      std::error_code error;  // what matters is whether the file can be written
      for (const std::string& name : line.job.writes) {
        if (!options_.out.empty()) fs::create_directories(fs::path(name).parent_path(), error);
      }
      parsed.arguments->quiet = true;
      // The cores have jobs of their own.
      if (options_.jobs > 1 && parsed.arguments->job.threads == 0) parsed.arguments->job.threads = 1;
      parsed.arguments->json = options_.style.json;
      return run_(*parsed.arguments);
    }
    report.error = parsed.error;
  } catch (const std::bad_alloc&) {
    report.error = kOutOfMemory;
  } catch (const std::exception& error) {
    report.error = std::string("unexpected failure: ") + error.what() + "; please report it";
  }
  return report;
}

void Batch::Work(Conveyor& conveyor) {
  while (const auto line = conveyor.Take()) {
    if (Stopped()) continue;
    const RunReport report = RunLine(*line);
    if (!report.error.empty() && InterruptedCode()) continue;
    if (report.error.empty()) journal_.Add(line->job.writes.front(), line->text);
    board_.Done(report, line->number, line->text.size() + 1);
  }
}

BatchOutcome Batch::Run(LineReader& reader) {
  if (options_.resume && !journal_.Unread().empty()) {
    return {"'" + journal_.Unread() + "' cannot be read; make it readable, or make everything anew without --resume",
            kExitFailed};
  }
  Conveyor conveyor(2 * static_cast<std::size_t>(options_.jobs));
  std::vector<std::jthread> workers;
  try {
    for (int i = 0; i < options_.jobs; ++i) workers.emplace_back([&] { Work(conveyor); });
  } catch (const std::system_error&) {
    if (workers.empty()) return {"the system allows no further threads; try again later", kExitFailed};
  }
  Feed(reader, conveyor);
  conveyor.Close();
  workers.clear();
  board_.Summarise();
  if (InterruptedCode())
    return {"interrupted; finished outputs stay, and --resume makes the others", InterruptedCode()};
  if (!reader.Trouble().empty()) return {"'" + options_.file + "' cannot be read: " + reader.Trouble(), kExitFailed};
  if (const int trouble = board_.OutputTrouble()) {
    if (trouble == EPIPE) return {"", kExitFailed};  // the reader has had enough
    return {std::string("cannot write to standard output: ") + std::strerror(trouble), kExitFailed};
  }
  return {"", board_.Failed() ? kExitFailed : kExitDone};
}

}  // namespace

bool IsBatch(const std::vector<std::string>& words) { return !words.empty() && words[0] == "batch"; }

BatchOutcome RunBatch(const std::vector<std::string>& words, const Catalogue& catalogue,
                      const std::function<RunReport(const Arguments&)>& run) {
  try {
    const TypedWords typed = SortWords({words.begin() + 1, words.end()}, BatchRows(),
                                       "batch takes one file of jobs, whose lines have the options of their pictures");
    if (typed.IsOn("--help")) {
      std::fputs(BatchHelp().c_str(), stdout);
      return {};
    }
    BatchOptions options = ReadOptions(typed);
    LineReader reader(options.file);
    if (!reader) return {"'" + options.file + "' cannot be read: " + std::strerror(errno), kExitUsage};
    std::error_code error;
    if (!options.out.empty() && (fs::create_directories(options.out, error), error))
      return {"the folder '" + options.out + "' cannot be created: " + error.message(), kExitFailed};
    if (fs::is_regular_file(options.file, error)) options.style.size = fs::file_size(options.file, error);
    return Batch(options, catalogue, run).Run(reader);
  } catch (const UsageError& error) {
    return {error.sentence, kExitUsage};
  }
}

}  // namespace glyphmotion
