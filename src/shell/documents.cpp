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
#include "shell/main_dialog.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

constexpr std::string_view kPluginName = "Glyphmotion 4 Plugin", kMakerName = "Tessaloom";
constexpr std::size_t kLongestFirstLine = 8192;  // characters that are searched for the two names

void Tell(Dialog& dialog, int text) {
  ShowMessage(&dialog, LoadText(text));
  RepaintNow(dialog, 0);
}

void TellMemoryIsOut(Dialog& dialog) noexcept try { Tell(dialog, kTextMemoryError); } catch (const std::exception&) {
  // There is no memory left even for the message.
}

/// A control's line, or nothing when it keeps none. Whatever the control's text holds, it stays one line of UTF-8.
std::string LineOfControl(Dialog& dialog, int id) {
  std::string line;
  SendToControl(dialog, id, {kMessageSaveControl, 0, PointerArgument(&line)});
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  if (!IsUtf8(line)) line = TextFromBytes(line);
  for (char& character : line) {
    if (character == '\n' || character == '\r' || character == '\0') character = ' ';
  }
  return line;
}

/// Takes the next line off `rest`, cut where a C string of it would end.
std::string_view NextLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return line.substr(0, line.find_first_of(std::string_view("\r\0", 2)));
}

/// The id after the stem; 0 or less when there is none.
int IdOfLine(std::string_view line) {
  return line.starts_with(';') || line.size() <= kStemLength ? 0 : LeadingNumber(line.substr(kStemLength));
}

/// The lines after the first; nothing when the first line is not that of a document. A file without a first line is a
/// document without lines.
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

}  // namespace

std::string DocumentText(Dialog& dialog) {
  const std::string end(LineEnd());
  std::string text = ";This is a document created by ";
  text.append(kPluginName).append(" by ").append(kMakerName).append(" - do not edit.").append(end);
  text += ";Start of document" + end;
  for (int id : Children(dialog)) {
    const std::string line = id > 0 ? LineOfControl(dialog, id) : std::string();
    if (!line.empty()) text += line + end;
  }
  return text + ";End of document" + end;
}

bool TakeDocumentText(Dialog& dialog, std::string_view text) {
  const auto lines = LinesOf(text);
  if (!lines) return false;
  LoadLines(dialog, *lines);
  Send(dialog, {kMessageRefresh, 0, 0});
  return true;
}

int SaveDocument(Dialog& dialog, const std::string& path) noexcept try {
  if (AtomicWriteFile(path, DocumentText(dialog))) return 1;
  Tell(dialog, kTextDocumentNotCreated);
  return 0;
} catch (const std::exception&) {
  TellMemoryIsOut(dialog);
  return 0;
}

void LoadDocument(Dialog& dialog, const std::string& path) noexcept try {
  const auto bytes = ReadWholeFile(path);
  if (!bytes) return Tell(dialog, kTextDocumentNotOpened);
  if (!TakeDocumentText(dialog, TextFromBytes(*bytes))) Tell(dialog, kTextDocumentDamaged);
} catch (const std::exception&) {
  TellMemoryIsOut(dialog);  // the controls that have their lines keep them
}

std::string FontOfDocumentText(std::string_view text) {
  std::string_view rest = LinesOf(text).value_or(std::string_view());
  while (!rest.empty()) {
    const std::string_view line = NextLine(rest);
    if (IdOfLine(line) != ControlId::Font || !line.starts_with("FNTBOX")) continue;
    const std::size_t equals = std::min(line.find('='), line.size());
    const std::size_t value = line.find_first_not_of("= ", equals);
    return value == std::string_view::npos ? std::string() : std::string(line.substr(value));
  }
  return {};
}

std::string FontOfDocument(const std::string& path) noexcept try {
  return FontOfDocumentText(TextFromBytes(ReadWholeFile(path).value_or(std::string())));
} catch (const std::exception&) {
  return {};
}

}  // namespace glyphmotion
