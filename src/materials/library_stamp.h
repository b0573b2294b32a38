// SPDX-License-Identifier: MIT
// What a library file says about who wrote it and when.
#pragma once

#include <cstdint>
#include <string>

namespace glyphmotion {

struct LibraryStamp {
  std::int64_t seconds = 0;  ///< since 1970
  std::string timeText;      ///< the same as 24 characters, as ctime writes it
  std::string machineName, machineOrganization, registrationName;
  bool registered = false;
};

/// Now and this machine. The three names are empty on machines whose organization is the maker's own.
LibraryStamp CurrentStamp(const std::string& registrationName);

}  // namespace glyphmotion
