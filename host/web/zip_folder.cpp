// SPDX-License-Identifier: MIT
#include "host/page/zip_folder.h"

#include <zip.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "platform/files.h"

namespace glyphmotion {

namespace fs = std::filesystem;

std::string ZipFolder(const std::string& folder, const std::string& path) {
  std::error_code error;
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder, error)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  zipFile archive = zipOpen(path.c_str(), APPEND_STATUS_CREATE);
  bool added = archive && !error;
  for (const fs::path& file : files) {
    const auto bytes = ReadWholeFile(file.string());
    const zip_fileinfo facts{};
    added = added && bytes &&
            zipOpenNewFileInZip(archive, file.filename().c_str(), &facts, nullptr, 0, nullptr, 0, nullptr, 0, 0) ==
                ZIP_OK &&
            zipWriteInFileInZip(archive, bytes->data(), static_cast<unsigned>(bytes->size())) == ZIP_OK &&
            zipCloseFileInZip(archive) == ZIP_OK;
  }
  const bool closed = archive && zipClose(archive, nullptr) == ZIP_OK;
  return added && closed ? std::string() : "the archive cannot be written";
}

}  // namespace glyphmotion
