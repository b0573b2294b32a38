// SPDX-License-Identifier: MIT
// The author and time stamp of a library file.
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

/// The current time and this machine. The three names are empty on the maker's own machines.
LibraryStamp CurrentStamp(const std::string& registrationName);

}  // namespace glyphmotion
