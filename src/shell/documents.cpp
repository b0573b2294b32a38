// SPDX-License-Identifier: MIT
#include "shell/documents.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string_view>

#include "controls/families.h"
#include "controls/line_values.h"
#include "platform/encoding.h"
#include "platform/files.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"
#include "shell/main_controls.h"
#include "shell/settings.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

constexpr std::string_view kPluginName = "Glyphmotion 4 Plugin", kMakerName = "Tessaloom";
constexpr std::string_view kEndRemark = ";End of document";
constexpr std::size_t kLongestFirstLine = 8192;  // bytes that are searched for the two names

void Report(Dialog& dialog, int text) {
  ShowMessage(&dialog, LoadText(text));
  RepaintNow(dialog, 0);
}

void ReportOutOfMemory(Dialog& dialog) noexcept try {
  Report(dialog, kTextMemoryError);
} catch (const std::exception&) {
  // Not enough memory even for the message.
}

/// A control's line, or nothing if it has none. Always a single line of UTF-8, whatever the control's text contains.
std::string LineOfControl(Dialog& dialog, int id) {
  std::string line;
  SendToControl(dialog, id, {kMessageSaveControl, 0, PointerArgument(&line)});
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  line = ToUtf8(line);
  BlankLineEnds(line);
  return line;
}

/// The control's line with another value.
std::string ChangedLine(std::string line, int id, const DocumentChanges& changes) {
  for (const auto& [control, value] : changes.values) {
    if (control == id && !line.empty()) line.replace(line.find('=') + 1, std::string::npos, value);
  }
  return line;
}

/// Removes the next line from `rest`, truncated at a NUL.
std::string_view NextLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return line.substr(0, std::min(line.find('\r'), line.find('\0')));
}

/// The id after the stem; 0 or less when there is none.
int IdOfLine(std::string_view line) {
  return line.starts_with(';') || line.size() <= kStemLength ? 0 : LeadingNumber(line.substr(kStemLength));
}

/// The lines after the first; nothing if the first line is not a document's. An empty file is a document without lines.
std::optional<std::string_view> LinesOf(std::string_view text) {
  if (text.empty()) return text;
  const std::string_view first = NextLine(text).substr(0, kLongestFirstLine);
  if (first.find(kPluginName) == std::string_view::npos || first.find(kMakerName) == std::string_view::npos) {
    return std::nullopt;
  }
  return text;
}

void LoadLines(Dialog& dialog, std::string_view rest) {
  while (!rest.empty()) {
    const std::string line(NextLine(rest));
    const int id = IdOfLine(line);
    if (id > 0 && HasControl(dialog, id)) SendToControl(dialog, id, {kMessageLoadControl, 0, PointerArgument(&line)});
  }
}

/// The text after the first "=" and any further "=" and blanks.
std::string ValueOfLine(std::string_view line) {
  const std::size_t value = line.find_first_not_of("= ", std::min(line.find('='), line.size()));
  return value == std::string_view::npos ? std::string() : std::string(line.substr(value));
}

}  // namespace

std::string DocumentText(Dialog& dialog, const DocumentChanges& changes) {
  const std::string end(LineEnd());
  std::string text = ";This is a document created by ";
  text.append(kPluginName).append(" by ").append(kMakerName).append(" - do not edit.").append(end);
  text += ";Start of document" + end;
  if (!changes.remark.empty()) text.append(changes.remark).append(end);
  for (int id : Children(dialog)) {
    const std::string line = id > 0 ? ChangedLine(LineOfControl(dialog, id), id, changes) : std::string();
    if (!line.empty()) text += line + end;
  }
  return text.append(kEndRemark).append(end);
}

bool TakeDocumentText(Dialog& dialog, std::string_view text) {
  const auto lines = LinesOf(text);
  if (!lines) return false;
  LoadLines(dialog, *lines);
  Send(dialog, {kMessageRefresh, 0, 0});
  return true;
}

int SaveDocument(Dialog& dialog, const std::string& path, const DocumentChanges& changes) noexcept try {
  std::string why;
  if (AtomicWriteFile(path, DocumentText(dialog, changes), &why)) return 1;
  if (why == kNoMemoryReason) throw std::bad_alloc();
  Report(dialog, kTextDocumentNotCreated);
  return 0;
} catch (const std::exception&) {
  ReportOutOfMemory(dialog);
  return 0;
}

int LoadDocument(Dialog& dialog, const std::string& path) noexcept try {
  const auto bytes = ReadFileIfAny(path);
  if (bytes && TakeDocumentText(dialog, TextFromBytes(*bytes))) return 1;
  Report(dialog, bytes ? kTextDocumentDamaged : kTextDocumentNotOpened);
  return 0;
} catch (const std::exception&) {
  ReportOutOfMemory(dialog);  // controls already loaded keep their values
  return 0;
}

DocumentSummary SummariseDocument(const std::string& path) {
  return SummariseDocumentText(TextFromBytes(ReadFileIfAny(path).value_or(std::string())));
}

DocumentSummary SummariseDocumentText(std::string_view text) {
  DocumentSummary summary;
  std::string_view rest = LinesOf(text).value_or(std::string_view());
  while (!rest.empty()) {
    const std::string_view line = NextLine(rest);
    if (line == kMillisecondsRemark) summary.milliseconds = true;
    if (line == kEndRemark) summary.complete = true;
    const int id = IdOfLine(line);
    if (id <= 0) continue;
    std::string control(line.substr(0, kStemLength));
    for (char& c : control) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    if (control == "FNTBOX" && id == ControlId::Font) summary.font = ValueOfLine(line);
    summary.controls.insert(control + std::to_string(id));
  }
  return summary;
}

}  // namespace glyphmotion
