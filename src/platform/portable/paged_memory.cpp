// SPDX-License-Identifier: MIT
#include "platform/portable/paged_memory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>

namespace glyphmotion {
namespace {

// A folder on a disk first: /tmp is often memory itself. The file has no name from the beginning.
int OpenNameless() noexcept {
  const char* own = std::getenv("TMPDIR");
  for (const char* folder : {own ? own : "/var/tmp", "/var/tmp", "/tmp"}) {
    char path[512];
    const int length = std::snprintf(path, sizeof path, "%s/glyphmotion-XXXXXX", folder);
    if (length >= static_cast<int>(sizeof path)) continue;
    const int file = mkostemp(path, O_CLOEXEC);
    if (file < 0) continue;
    unlink(path);
    return file;
  }
  return -1;
}

}  // namespace

void* AllocatePaged(std::size_t bytes) noexcept {
  rlimit most{};  // beyond it the system would end the process
  if (getrlimit(RLIMIT_FSIZE, &most) != 0 || most.rlim_cur < bytes) return nullptr;
  const int file = OpenNameless();
  if (file < 0) return nullptr;
  // Without room of its own a page of a full disk would end the process when it is touched.
  const bool room = posix_fallocate(file, 0, static_cast<off_t>(bytes)) == 0;
  void* memory = room ? mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0) : MAP_FAILED;
  close(file);
  return memory == MAP_FAILED ? nullptr : memory;
}

void PageOut(void* memory, std::size_t bytes) noexcept { madvise(memory, bytes, MADV_DONTNEED); }

void FreePaged(void* memory, std::size_t bytes) noexcept { munmap(memory, bytes); }

}  // namespace glyphmotion
