// SPDX-License-Identifier: MIT
#include "host/program/batch_board.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "host/program/json_lines.h"

namespace glyphmotion {
namespace {

using Lock = std::lock_guard<std::mutex>;

std::string OneLine(std::string sentence) {
  std::replace(sentence.begin(), sentence.end(), '\n', ' ');
  return sentence;
}

std::string WordsOf(const RunReport& report, long number) {
  std::string line = std::to_string(number) + ": " + (report.file.empty() ? "done" : report.file);
  if (!report.format.empty())
    line += ": " + std::to_string(report.width) + " x " + std::to_string(report.height) + " pixels, " +
            std::to_string(report.frames) + (report.frames == 1 ? " frame, " : " frames, ") +
            std::to_string(report.bytes) + " bytes";
  return line + ", " + std::to_string(report.time) + " ms";
}

// "3:20" or "1:02:05"
std::string Clock(double seconds) {
  const auto whole = static_cast<long long>(std::min(seconds, 359999.0));
  char text[32];
  if (whole < 3600) {
    std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
  }
  return text;
}

}  // namespace

BatchBoard::~BatchBoard() { Clear(); }

void BatchBoard::Print(const std::string& line) {
  if (trouble_) return;
  Clear();
  // At once: another program may wait for it.
  errno = 0;
  if (std::printf("%s\n", line.c_str()) < 0 || std::fflush(stdout) != 0) trouble_ = errno ? errno : EIO;
}

void BatchBoard::PrintError(const char* kind, long number, const std::string& sentence) {
  Clear();
  std::fprintf(stderr, "glyphmotion: %s: line %ld: %s\n", kind, number, OneLine(sentence).c_str());
}

void BatchBoard::Done(const RunReport& report, long number, std::uint64_t bytes) {
  const Lock lock(mutex_);
  ran_ += bytes;
  ++(report.error.empty() ? made_ : failed_);
  if (style_.json) {
    Print(JsonOf(report, number));
  } else {
    for (const std::string& note : report.notes) {
      if (!style_.quiet) PrintError("note", number, note);
    }
    if (!report.error.empty()) {
      PrintError("error", number, report.error);
    } else if (!style_.quiet) {
      Print(WordsOf(report, number));
    }
  }
  Draw();
}

void BatchBoard::Skipped(const std::string& file, long number) {
  const Lock lock(mutex_);
  ++skipped_;
  if (style_.json) {
    Print(JsonOfSkipped(file, number));
  } else if (!style_.quiet) {
    Print(std::to_string(number) + ": " + file + ": made before");
  }
  Draw();
}

void BatchBoard::Reached(std::uint64_t position) {
  const Lock lock(mutex_);
  position_ = position;
}

int BatchBoard::OutputTrouble() const {
  const Lock lock(mutex_);
  return trouble_;
}

void BatchBoard::Draw() {
  using std::chrono::steady_clock;
  const auto now = steady_clock::now();
  if (!style_.progress || now - drawn_ < std::chrono::milliseconds(100)) return;
  std::string text = std::to_string(made_ + skipped_) + " done, " + std::to_string(failed_) + " failed";
  const std::chrono::duration<double> spent = now - begin_;
  if (style_.size > 0 && ran_ > 0) {
    const auto rest = static_cast<double>(style_.size - std::min(style_.size, position_));
    text += ", " + Clock(spent.count() * rest / style_.shards / static_cast<double>(ran_)) + " left";
  }
  std::fprintf(stderr, "\r\033[K%s", text.c_str());
  drawn_ = now;
  shown_ = true;
}

void BatchBoard::Clear() {
  if (shown_) std::fputs("\r\033[K", stderr);
  shown_ = false;
  drawn_ = {};
}

void BatchBoard::Summarise() {
  const Lock lock(mutex_);
  Clear();
  if (!style_.progress) return;
  const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin_;
  std::fprintf(stderr, "%ld made, %ld skipped, %ld failed in %.1f s\n", made_, skipped_, failed_, spent.count());
}

}  // namespace glyphmotion
