// SPDX-License-Identifier: MIT
#include "host/recorder.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "glyphmotion/host_contract.h"

namespace glyphmotion {
namespace fs = std::filesystem;
namespace {

// Arguments that are pointers or windows say nothing outside the process: they are written as 0.
bool BIsNumber(std::uint32_t operation) {
  return operation == HostOpEndTask || operation == HostOpIsRegistered || operation == HostOpProgress ||
         operation == HostOpSetBackground || operation == HostOpBeforeWork;
}
bool AIsNumber(std::uint32_t operation) { return operation != HostOpChooseImageFile; }

bool HasText(std::uint32_t operation) { return operation == HostOpAddComment || operation == HostOpStatusText; }
bool HasRecord(std::uint32_t operation) {
  return operation == HostOpNewTask || operation == HostOpNewTestTask || operation == HostOpAddImage;
}

// Bytes 8 to 15 of a record are a handle or a window, which differ from run to run.
std::string RecordHex(std::span<const std::uint8_t> record) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  hex.reserve(record.size() * 2);
  for (std::size_t i = 0; i < record.size(); ++i) {
    const unsigned byte = i >= 8 && i < 16 ? 0u : record[i];
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 15];
  }
  return hex;
}

std::uint32_t ImageNumber(std::span<const std::uint8_t> record) {
  HostImageRecord image;
  if (record.size() < sizeof image) return 0;
  std::memcpy(&image, record.data(), sizeof image);
  return image.number;
}

bool WriteWhole(const fs::path& path, std::span<const std::uint8_t> bytes) {
  std::FILE* file = std::fopen(path.string().c_str(), "wb");
  if (!file) return false;
  const bool good = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && good;
}

}  // namespace

std::string CallLine(const HostCallEvent& event, const std::string& imageFile) {
  nlohmann::ordered_json line;
  line["op"] = event.operation;
  line["name"] = event.name;
  line["a"] = AIsNumber(event.operation) ? static_cast<std::int64_t>(event.a) : 0;
  line["b"] = BIsNumber(event.operation) ? static_cast<std::int64_t>(event.b) : 0;
  if (HasText(event.operation)) line["text"] = event.text ? event.text : "";
  if (HasRecord(event.operation)) line["record"] = RecordHex(event.record);
  if (!imageFile.empty()) line["image"] = imageFile;
  return line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

Recorder::Recorder(const std::string& folder, std::string& error) : folder_(folder) {
  std::error_code code;
  fs::create_directories(folder, code);
  const fs::path calls = fs::path(folder) / "calls.jsonl";
  if (!code) calls_ = std::fopen(calls.string().c_str(), "wb");
  if (!calls_) {
    error = std::string("'").append(calls.string()) +
            "' cannot be written: " + (code ? code.message() : std::strerror(errno)) +
            "; name another folder for --record";
    return;
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, code))
    if (entry.path().extension() == ".dib") fs::remove(entry.path(), code);
}

Recorder::~Recorder() {
  if (calls_) std::fclose(calls_);
}

void Recorder::Line(const std::string& text) {
  if (!calls_ || std::fprintf(calls_, "%s\n", text.c_str()) < 0) failed_ = true;
}

void Recorder::Call(const HostCallEvent& event) {
  std::string file;
  if (event.operation == HostOpAddImage) {
    char name[24];
    std::snprintf(name, sizeof name, "%04u.dib", static_cast<unsigned>(ImageNumber(event.record)));
    file = name;
    if (!WriteWhole(fs::path(folder_) / file, event.image)) failed_ = true;
  }
  Line(CallLine(event, file));
}

std::string Recorder::End(const RenderResult& result) {
  nlohmann::ordered_json line;
  line["blocks"] = result.blocks;
  line["locks"] = result.locks;
  Line(line.dump());
  if (calls_ && std::fflush(calls_) != 0) failed_ = true;
  return failed_ ? "the recording in '" + folder_ + "' is not complete: the disk is full or refuses; free some space"
                 : "";
}

}  // namespace glyphmotion
