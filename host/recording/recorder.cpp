// SPDX-License-Identifier: MIT
#include "host/recording/recorder.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "glyphmotion/host_contract.h"
#include "platform/ascii.h"

namespace glyphmotion {
namespace fs = std::filesystem;
namespace {

// Pointers and windows mean nothing outside the process; they are written as 0.
bool BIsNumber(std::uint32_t operation) {
  return operation == HostOpEndTask || operation == HostOpIsRegistered || operation == HostOpProgress ||
         operation == HostOpSetBackground || operation == HostOpBeforeWork;
}
bool AIsNumber(std::uint32_t operation) { return operation != HostOpChooseImageFile; }

bool HasText(std::uint32_t operation) { return operation == HostOpAddComment || operation == HostOpStatusText; }
bool HasRecord(std::uint32_t operation) {
  return operation == HostOpNewTask || operation == HostOpNewTestTask || operation == HostOpAddImage;
}

// Bytes 8 to 15 of a record hold a handle or a window, which differs from run to run.
std::string RecordHex(std::span<const std::uint8_t> record) {
  std::string hex;
  hex.reserve(record.size() * 2);
  for (std::size_t i = 0; i < record.size(); ++i) {
    AppendHex(hex, i >= 8 && i < 16 ? std::uint8_t{0} : record[i], kSmallHexDigits);
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
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  file.close();
  return !file.fail();
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

Recorder::Recorder(const std::string& folder, std::string& error)
    : name_(folder), folder_(std::u8string(folder.begin(), folder.end())) {
  std::error_code code;
  fs::create_directories(folder_, code);
  if (!code) calls_.open(folder_ / "calls.jsonl", std::ios::binary);
  if (!calls_.is_open()) {
    error = std::string("'").append(name_).append("/calls.jsonl' cannot be written: ") +
            (code ? code.message() : std::strerror(errno)) + "; name another folder for --record";
    return;
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_, code))
    if (entry.path().extension() == ".dib") fs::remove(entry.path(), code);
}

void Recorder::Line(const std::string& text) { calls_ << text << '\n'; }

void Recorder::Call(const HostCallEvent& event) {
  std::string file;
  if (event.operation == HostOpAddImage) {
    char name[24];
    std::snprintf(name, sizeof name, "%04u.dib", static_cast<unsigned>(ImageNumber(event.record)));
    file = name;
    if (!WriteWhole(folder_ / file, event.image)) failed_ = true;
  }
  Line(CallLine(event, file));
}

std::string Recorder::End(const RenderResult& result) {
  nlohmann::ordered_json line;
  line["blocks"] = result.blocks;
  line["locks"] = result.locks;
  Line(line.dump());
  calls_.flush();
  const bool complete = calls_.is_open() && calls_.good() && !failed_;
  return complete
             ? ""
             : "the recording in '" + name_ + "' is incomplete: the disk is full or cannot be written; free some space";
}

}  // namespace glyphmotion
