// SPDX-License-Identifier: MIT
#pragma once

namespace conformance {

/// Loads the library and plays a host to it. Prints every check; true when all hold.
bool PlayHost(const char* path);

}  // namespace conformance
