// SPDX-License-Identifier: MIT
#include "materials/library_stamp.h"

#include <algorithm>
#include <cctype>

#include "platform/clock.h"
#include "platform/folders.h"

namespace glyphmotion {

LibraryStamp CurrentStamp(const std::string& registrationName) {
  LibraryStamp stamp;
  stamp.seconds = CurrentTime();
  stamp.timeText = CurrentTimeText();
  stamp.registered = !registrationName.empty();
  const std::string organization = RegisteredOrganization(), maker = "tessaloom";
  const bool own = std::equal(organization.begin(), organization.end(), maker.begin(), maker.end(),
                              [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
  if (!own) {
    stamp.machineName = RegisteredOwner();
    stamp.machineOrganization = organization;
    stamp.registrationName = registrationName;
  }
  return stamp;
}

}  // namespace glyphmotion
