// SPDX-License-Identifier: MIT
#include "shell/settings.h"

#include <algorithm>
#include <cstdint>
#include <exception>

#include "platform/ascii.h"
#include "platform/clock.h"
#include "platform/encoding.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/shell_ui.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kLongestText = 260;  // characters

/// Parses digits after blanks and a sign, modulo 2^32, so that unsigned numbers survive.
std::uint32_t WrappedNumber(std::string_view text) noexcept {
  std::size_t i = text.find_first_not_of(' ');
  if (i == std::string_view::npos) return 0;
  const bool negative = text[i] == '-';
  if (negative || text[i] == '+') ++i;
  std::uint32_t number = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    number = number * 10 + static_cast<std::uint32_t>(text[i] - '0');
  }
  return negative ? 0 - number : number;
}

std::string_view SkipAll(std::string_view text, char character) noexcept {
  const std::size_t at = text.find_first_not_of(character);
  return at == std::string_view::npos ? std::string_view() : text.substr(at);
}

bool IsControl(char character) noexcept { return static_cast<unsigned char>(character) < ' '; }

/// The first row whose key starts with `key`: old files rely on abbreviated keys.
Variable* FirstMatch(std::string_view key, bool registrationOnly) {
  for (std::size_t i = 0; i < SettingsTable().size(); ++i) {
    const SettingsRow& row = SettingsTable()[i];
    if (row.flags & kSettingNeverRead || (registrationOnly && !(row.flags & kSettingRegistration))) continue;
    if (std::string_view(row.key).starts_with(key)) return &VariableAt(i);
  }
  return nullptr;
}

/// A line, truncated at its first control character.
std::string_view Readable(std::string_view line) {
  return line.substr(0, static_cast<std::size_t>(std::find_if(line.begin(), line.end(), IsControl) - line.begin()));
}

/// The key of a readable line; empty for a comment.
std::string_view KeyOfLine(std::string_view line) {
  return line.starts_with(';') ? std::string_view() : line.substr(0, line.find_first_of(" ="));
}

void ApplyLine(std::string_view line, bool registrationOnly) {
  const std::string_view key = KeyOfLine(line);
  if (key.empty()) return;
  if (Variable* variable = FirstMatch(key, registrationOnly)) {
    TakeValue(*variable, SkipAll(SkipAll(SkipAll(line.substr(key.size()), ' '), '='), ' '));
  }
}

template <typename Take>
void ForEachLine(std::string_view bytes, Take take) {
  const std::string text = TextFromBytes(bytes);
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    take(Readable(rest.substr(0, end)));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
}

/// A text reduced to one line. Bytes that are not UTF-8 would make the whole file be read as Windows-1252.
std::string OneLine(const std::string& text) {
  std::string line = ToUtf8(text);
  line = CutCharacters(line, kLongestText);
  for (char& character : line) {
    if (IsControl(character)) character = ' ';
  }
  return line;
}

/// A truncated path would name another file, which the next save would overwrite, so a path that does not fit is
/// dropped.
bool IsPathTooLong(const Variable& variable, std::string_view value) {
  const std::string_view key = variable.row->key;
  return (key == "CurrentFileName" || key == "OpenPath") && CountCharacters(value) > kLongestText;
}

std::string ValueText(const Variable& variable) {
  if (!(variable.row->flags & kSettingText)) return std::to_string(variable.number);
  if (IsPathTooLong(variable, variable.text)) return variable.row->defaultText;
  const std::string line = OneLine(variable.text);
  return variable.row->flags & kSettingRegistration ? EncodeRegistration(line) : line;
}

void ResetForLoading() {
  Variable* openPath = FindVariable("OpenPath");
  const std::string kept = openPath->text;
  ResetSavedVariables();
  openPath->text = kept;
}

// The stored form of the registration: each byte is combined with a sequence seeded by the check byte, so that equal
// texts have equal forms and a changed digit is detected.
struct Sequence {
  std::uint32_t state;
  explicit Sequence(std::uint8_t check) : state(0x47344D00u + check) {}
  std::uint8_t Next() {
    state = state * 1664525u + 1013904223u;
    return static_cast<std::uint8_t>(state >> 24);
  }
};

std::uint8_t CheckByte(std::string_view text) {
  std::uint32_t check = 0x5A;
  for (char character : text) check = check * 31 + static_cast<unsigned char>(character);
  return static_cast<std::uint8_t>(check ^ check >> 8);
}

/// The byte at pair `i`, -1 if the pair is not hexadecimal.
int HexByte(std::string_view stored, std::size_t i) {
  const int high = HexDigit(stored[2 * i]), low = HexDigit(stored[2 * i + 1]);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

}  // namespace

std::string EncodeRegistration(std::string_view text) {
  std::string stored;
  if (text.empty()) return stored;
  const std::uint8_t check = CheckByte(text);
  AppendHex(stored, check);
  Sequence sequence(check);
  for (char character : text) {
    AppendHex(stored, static_cast<std::uint8_t>(static_cast<unsigned char>(character) ^ sequence.Next()));
  }
  return stored;
}

std::string DecodeRegistration(std::string_view stored) {
  std::string text;
  if (stored.size() < 4 || stored.size() % 2 != 0) return text;
  const int check = HexByte(stored, 0);
  if (check < 0) return text;
  Sequence sequence(static_cast<std::uint8_t>(check));
  for (std::size_t i = 1; i < stored.size() / 2; ++i) {
    const int byte = HexByte(stored, i);
    if (byte < 0) return {};
    text += static_cast<char>(byte ^ sequence.Next());
  }
  const bool isText = IsUtf8(text) && std::none_of(text.begin(), text.end(), IsControl);
  return isText && CheckByte(text) == check ? text : std::string();
}

void TakeValue(Variable& variable, std::string_view value) {
  if (!(variable.row->flags & kSettingText)) {
    variable.number = WrappedNumber(value);
  } else if (variable.row->flags & kSettingRegistration) {
    const std::size_t last = value.find_last_not_of(' ');
    variable.text = CutCharacters(DecodeRegistration(value.substr(0, last + 1)), kLongestText);
  } else if (!IsPathTooLong(variable, value)) {
    variable.text = CutCharacters(value, kLongestText);
  }
}

std::string SettingsText(std::string_view remark) {
  const std::string end(LineEnd());
  std::string time = CurrentTimeText();
  time.resize(24, ' ');
  std::string text = ";Tessaloom animtion plugin configuration file" + end;
  text += ";Edit this at your own risk" + end;
  text += ";Last updated " + time + end;
  text += ";" + end;
  if (!remark.empty()) text.append(remark).append(end);
  text += "[PlugIn]" + end;
  for (std::size_t i = 0; i < SettingsTable().size(); ++i) {
    text += SettingsTable()[i].key + (" = " + ValueText(VariableAt(i))) + end;
  }
  return text;
}

void ApplySettings(std::string_view bytes, bool registrationOnly) {
  ForEachLine(bytes, [&](std::string_view line) { ApplyLine(line, registrationOnly); });
}

SettingsSummary SummariseSettings(std::string_view bytes) {
  SettingsSummary summary;
  ForEachLine(bytes, [&](std::string_view line) {
    if (line == kMillisecondsRemark) summary.milliseconds = true;
    const std::string_view key = KeyOfLine(line);
    const Variable* variable = key.empty() ? nullptr : FirstMatch(key, false);
    if (variable) summary.keys.insert(variable->row->key);
  });
  return summary;
}

void LoadSettings() {
  const bool shift = IsShiftDown();
  ResetForLoading();
  if (const auto bytes = ReadFileIfAny(SettingsFilePath())) ApplySettings(*bytes, shift);
}

void SaveSettings() noexcept try {
  const std::string path = SettingsFilePath();
  if (path.empty() || CurrentFolderOverrides().hostWritesSettings) return;
  if (!CurrentFolderOverrides().settingsFile) EnsureFolder(SettingsFolder());
  AtomicWriteFile(path, SettingsText());
} catch (const std::exception&) {
  // Out of memory: the file is unchanged.
}

}  // namespace glyphmotion
