// SPDX-License-Identifier: MIT
#include "materials/library_stamp.h"

#include <algorithm>

#include "platform/ascii.h"
#include "platform/clock.h"
#include "platform/folders.h"

namespace glyphmotion {

LibraryStamp CurrentStamp(const std::string& registrationName) {
  LibraryStamp stamp;
  stamp.seconds = CurrentTime();
  stamp.timeText = CurrentTimeText();
  stamp.registered = !registrationName.empty();
  const std::string organization = RegisteredOrganization();
  if (!EqualsIgnoringCase(organization, "tessaloom")) {
    stamp.machineName = RegisteredOwner();
    stamp.machineOrganization = organization;
    stamp.registrationName = registrationName;
  }
  return stamp;
}

}  // namespace glyphmotion
