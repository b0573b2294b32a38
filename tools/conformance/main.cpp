// SPDX-License-Identifier: MIT
// glyphmotion-conformance: holds a library, or a host, against docs/hosting.md.
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <string>

#include "checks.h"
#include "strict_host.h"

namespace {

constexpr const char* kUsage =
    "usage: glyphmotion-conformance LIBRARY           plays a strict host to a library with the plug-in's exports\n"
    "       glyphmotion-conformance --host COMMAND... plays a strict plug-in to a host that links the library\n"
    "       glyphmotion-conformance --list            the checks and the sentences that they hold\n"
    "\n"
    "Exit code: 0 when all checks hold, 1 when not, 2 for wrong arguments. Set GLYPHMOTION_HOME to an empty folder for "
    "a\n"
    "run that knows nothing of your settings.\n";

void List(std::span<const conformance::Check> checks) {
  for (const auto& check : checks) std::printf("| `%s` | %s |\n", check.name, check.sentence);
}

// The plug-in that checks: beside this program in a build, in the folder of libraries once installed.
std::string PluginPath() {
  char own[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", own, sizeof own - 1);
  const std::string path(own, length > 0 ? static_cast<std::size_t>(length) : 0);
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  const std::string beside = folder + CONFORMANCE_PLUGIN;
  return access(beside.c_str(), R_OK) == 0 ? beside : folder + CONFORMANCE_INSTALLED "/" CONFORMANCE_PLUGIN;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string first = argc > 1 ? argv[1] : "";
  if (first == "--list") {
    std::printf("| Check | Sentence |\n|---|---|\n");
    List(conformance::kLibraryChecks);
    List(conformance::kHostChecks);
    return 0;
  }
  if (first == "--host" && argc > 2) {
    setenv("LD_PRELOAD", PluginPath().c_str(), 1);
    execvp(argv[2], argv + 2);
    std::perror(argv[2]);
    return 2;
  }
  if (argc != 2 || first.rfind("-", 0) == 0) {
    std::fputs(kUsage, first == "--help" ? stdout : stderr);
    return first == "--help" ? 0 : 2;
  }
  return conformance::PlayHost(argv[1]) ? 0 : 1;
}
