// SPDX-License-Identifier: MIT
#include "host/program/json_lines.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "host/options/option_table.h"
#include "host/program/command_line.h"
#include "platform/nearest_name.h"

namespace glyphmotion {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kExample = "{\"text\": \"Hi\", \"output\": \"a.gif\"}";

// These ask for pages and words instead of pictures, or are the whole batch's.
constexpr const char* kOfTheProgram[] = {"list", "help", "version", "quiet", "progress", "no-progress", "json"};
constexpr const char* kWritten[] = {"output", "record", "save-document", "settings"};

bool IsOneOf(const std::string& name, std::span<const char* const> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

const OptionRow& RowOf(const std::string& key) {
  if (IsOneOf(key, kOfTheProgram)) Refuse("'" + key + "' is not for a line of a batch; leave it out");
  const OptionRow* row = key.starts_with('-') ? nullptr : FindOption(key);
  if (row) return *row;
  std::vector<std::string> names = {"text"};
  for (const OptionRow& option : OptionRows()) names.push_back(LongName(option).substr(2));
  const std::string hint = Suggestion(key, names);
  Refuse("there is no option '" + key + "'" +
         (hint.empty() ? "; the keys of a line are \"text\" and the long options without their dashes" : hint));
}

std::string TextOf(const std::string& key, const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number()) return value.dump();
  if (value.is_boolean()) return value.get<bool>() ? "1" : "0";
  Refuse("'" + key + "' takes a text or a number, not " + (value.is_array() ? "an array" : "an object"));
}

// The values of an option: one, or those of an array, or the pairs of an object ("set").
std::vector<std::string> ValuesOf(const OptionRow& row, const std::string& key, const Json& value) {
  std::vector<std::string> values;
  if (row.repeats && value.is_object()) {
    for (const auto& [name, member] : value.items()) values.push_back(name + "=" + TextOf(key, member));
  } else if (row.repeats && value.is_array()) {
    for (const Json& member : value) values.push_back(TextOf(key, member));
  } else if (value.is_boolean()) {
    Refuse("'" + key + "' takes a text or a number, not true or false");
  } else {
    values.push_back(TextOf(key, value));
  }
  return values;
}

void AddFlag(const OptionRow& row, const std::string& key, const Json& value, std::vector<std::string>& words) {
  if (*row.words && value.is_string()) {  // --dither=stable
    words.push_back("--" + key + "=" + value.get<std::string>());
    return;
  }
  if (!value.is_boolean()) Refuse("'" + key + "' takes true or false, not " + value.dump());
  const std::string name = "--" + key, negative = NegativeName(row);
  if (value.get<bool>()) {
    words.push_back(name);
  } else if (!negative.empty()) {
    words.push_back(name == negative ? LongName(row) : negative);
  }
}

// A relative name that stays inside the folder.
std::string Inside(const std::string& folder, const std::string& key, const std::string& name) {
  const std::filesystem::path path = std::filesystem::path(name).lexically_normal();
  if (path.is_absolute() || path.empty() || path == "." || *path.begin() == "..")
    Refuse("'" + key + "' names '" + name + "', which is not inside the folder of --out; write a relative name");
  return (std::filesystem::path(folder) / path).string();
}

void AddOption(const std::string& folder, const std::string& key, const Json& value, JobLine& job) {
  const OptionRow& row = RowOf(key);
  if (value.is_null()) return;
  if (!row.form) return AddFlag(row, key, value, job.words);
  const bool written = IsOneOf(key, kWritten);
  for (std::string& text : ValuesOf(row, key, value)) {
    if (text.empty()) Refuse("'" + key + "' has an empty value; give a value or leave it out");
    if (text == "-" && (written || key == "text-file")) Refuse("'" + key + "' cannot be '-' in a batch; name a file");
    if (written && !folder.empty()) text = Inside(folder, key, text);
    if (written) job.writes.insert(key == "output" ? job.writes.begin() : job.writes.end(), text);
    job.words.push_back("--" + key + "=" + text);
  }
}

void AddNotes(Json& json, const RunReport& report) {
  if (!report.notes.empty()) json["notes"] = report.notes;
}

std::string Dumped(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

Json Begun(long line) {
  Json json = Json::object();
  if (line > 0) json["line"] = line;
  return json;
}

}  // namespace

JobLine ReadJobLine(const std::string& line, const std::string& folder) {
  const Json json = Json::parse(line, nullptr, false);
  if (!json.is_object())
    Refuse(std::string(json.is_discarded() ? "the line is not JSON" : "the line is not an object") +
           "; write one object per line, for example " + kExample);
  JobLine job;
  std::vector<std::string> text;
  for (const auto& [key, value] : json.items()) {
    if (key != "text") {
      AddOption(folder, key, value, job);
    } else if (!value.is_null()) {
      text = {"--", TextOf(key, value)};
    }
  }
  job.words.insert(job.words.end(), text.begin(), text.end());
  return job;
}

std::string JsonOf(const RunReport& report, long line) {
  Json json = Begun(line);
  if (!report.file.empty()) json["file"] = report.file;
  if (!report.error.empty()) {
    json["error"] = report.error;
  } else if (!report.format.empty()) {
    json["format"] = report.format;
    json["width"] = report.width;
    json["height"] = report.height;
    json["frames"] = report.frames;
    json["duration_ms"] = report.duration;
    json["bytes"] = report.bytes;
    if (report.colours >= 0) json["colors"] = report.colours;
  }
  if (report.error.empty()) json["ms"] = report.time;
  AddNotes(json, report);
  return Dumped(json);
}

std::string JsonOfSkipped(const std::string& file, long line) {
  Json json = Begun(line);
  json["file"] = file;
  json["skipped"] = true;
  return Dumped(json);
}

std::string JsonOf(const ListTable& table) {
  Json list = Json::array();
  for (const auto& row : table.rows) {
    Json entry = Json::object();
    for (std::size_t i = 0; i < row.size(); ++i) {
      const ListTable::Column& column = table.columns[i];
      entry[column.name] = !column.isNumber ? Json(row[i]) : row[i].empty() ? Json() : Json(std::stol(row[i]));
    }
    list.push_back(std::move(entry));
  }
  return Dumped(list);
}

std::string JsonOfError(const std::string& error) { return Dumped(Json{{"error", error}}); }

}  // namespace glyphmotion
