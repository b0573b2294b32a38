// SPDX-License-Identifier: MIT
#include "host/page/scratch.h"

#include <cstdlib>

namespace glyphmotion {

ScratchFolder::ScratchFolder() {
  std::error_code error;
  std::string pattern = (std::filesystem::temp_directory_path(error) / "glyphmotion-XXXXXX").string();
  if (!error && ::mkdtemp(pattern.data())) path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
  std::error_code error;
  if (!path_.empty()) std::filesystem::remove_all(path_, error);
}

}  // namespace glyphmotion
