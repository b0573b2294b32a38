// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

#include "platform/portable/descriptors.h"
#include "platform/special_file.h"

namespace glyphmotion {
namespace {

void Say(std::string* why, const std::string& reason) {
  if (why) *why = reason;
}

/// Opens a regular file. Never blocks on a pipe without a writer.
Descriptor OpenRegular(const std::string& path, struct stat& status, std::string* why) {
  if (!IsPath(path)) {
    Say(why, "it is not a file name");
    return Descriptor();
  }
  Descriptor file = OpenFile(path, O_RDONLY | O_NONBLOCK);
  if (!file || fstat(*file, &status) != 0) {
    // A socket cannot even be opened.
    Say(why, errno == ENXIO ? "it is not a regular file" : ReasonOf(errno));
    return Descriptor();
  }
  if (S_ISREG(status.st_mode)) return file;
  Say(why, S_ISDIR(status.st_mode) ? "it is a folder" : "it is not a regular file");
  return Descriptor();
}

std::optional<std::string> ReadAll(int descriptor, std::size_t size, std::size_t limit, std::string* why) {
  const auto tooLarge = [&] {
    Say(why, "it is larger than " + std::to_string(limit) + " bytes");
    return std::nullopt;
  };
  if (size > limit) return tooLarge();
  std::string bytes;
  bytes.reserve(size);
  char piece[16384];
  for (;;) {
    const ssize_t count = read(descriptor, piece, sizeof piece);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      Say(why, ReasonOf(errno));
      return std::nullopt;
    }
    if (count == 0) return bytes;
    if (static_cast<std::size_t>(count) > limit - bytes.size()) return tooLarge();
    bytes.append(piece, static_cast<std::size_t>(count));
  }
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit, std::string* why) noexcept try {
  struct stat status;
  const Descriptor file = OpenRegular(path, status, why);
  return file ? ReadAll(*file, static_cast<std::size_t>(status.st_size), limit, why) : std::nullopt;
} catch (const std::exception&) {
  if (why) why->assign(kNoMemoryReason);  // fits into any string's local buffer
  return std::nullopt;
}

ReadableFile OpenToRead(const std::string& path) noexcept { return ReadableFile(std::fopen(path.c_str(), "rbe")); }

bool IsSpecialFile(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

bool WriteSpecialFile(const std::string& path, std::string_view bytes, std::string& why) {
  const Descriptor file = OpenFile(path, O_WRONLY | O_NONBLOCK);
  const bool written =
      file && fcntl(*file, F_SETFL, fcntl(*file, F_GETFL) & ~O_NONBLOCK) == 0 && WriteAll(*file, bytes);
  if (!written) why = ReasonOf(errno);
  return written;
}

std::string_view LineEnd() noexcept { return "\n"; }

}  // namespace glyphmotion
