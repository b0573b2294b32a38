// SPDX-License-Identifier: MIT
#include "host/page/zip_folder.h"

#include <zip.h>

#include <algorithm>
#include <filesystem>
#include <vector>

namespace glyphmotion {

namespace fs = std::filesystem;

std::string ZipFolder(const std::string& folder, const std::string& path) {
  int error = 0;
  zip_t* archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
  if (!archive) return "the archive cannot be written; is the disk full?";
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  bool added = true;
  for (const fs::path& file : files) {
    zip_source_t* source = zip_source_file(archive, file.c_str(), 0, -1);
    const auto index = source ? zip_file_add(archive, file.filename().c_str(), source, ZIP_FL_ENC_UTF_8) : -1;
    added = added && index >= 0 &&
            zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0) == 0;
  }
  if (added && zip_close(archive) == 0) return {};
  zip_discard(archive);
  return "the archive cannot be written; is the disk full?";
}

}  // namespace glyphmotion
