// SPDX-License-Identifier: MIT
// Preloaded into a program, makes its calls to the file system fail, or ends the process at one of them.
//
//   GLYPHMOTION_FILES_DO=kill   SIGKILL before the N-th call that changes a file or a folder
//                       =space  the disk is full after N bytes of regular files
//                       =read   the N-th read of a file that is not the system's fails
//                       =short  reads and writes pass N bytes at most
//                       =again  every call is interrupted once before it is done
//                       =clock  the time of day jumps by N seconds, there and back, at each look
//   GLYPHMOTION_FILES_AT=N      from 1; 0 or nothing: nothing fails
//   GLYPHMOTION_COUNT_FILE=F    at the end of the process F gets "calls bytes reads"
//
// A killed process leaves what its calls have done so far, so the kills before each call are all that can be seen of a
// kill at any moment.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

enum class Do { Nothing, Kill, Space, Read, Short, Again, Clock };

std::atomic<long> calls, bytes, reads;

struct Plan {
  Do what = Do::Nothing;
  long at = 0;
  Plan() {
    const char* wish = std::getenv("GLYPHMOTION_FILES_DO");
    const char* number = std::getenv("GLYPHMOTION_FILES_AT");
    at = number ? std::strtol(number, nullptr, 10) : 0;
    const char* const names[] = {"kill", "space", "read", "short", "again", "clock"};
    for (int i = 0; wish && at > 0 && i < 6; ++i) {
      if (std::strcmp(wish, names[i]) == 0) what = static_cast<Do>(i + 1);
    }
  }
};

const Plan& Wish() {
  static const Plan plan;
  return plan;
}

bool IsRegular(int file) {
  struct stat status;
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

// Fonts, their configuration and caches: without them a picture is another one, and Fontconfig says so itself.
bool IsOfSystem(int file) {
  char path[8] = {};
  char link[32];
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  if (readlink(link, path, 5) != 5) return false;
  return std::strcmp(path, "/etc/") == 0 || std::strcmp(path, "/usr/") == 0 || std::strcmp(path, "/var/") == 0;
}

void Change() {
  if (++calls == Wish().at && Wish().what == Do::Kill) {
    raise(SIGKILL);
    for (;;) pause();
  }
}

// True every second time.
bool Interrupted() {
  static thread_local bool last = false;
  if (Wish().what != Do::Again) return false;
  last = !last;
  if (last) errno = EINTR;
  return last;
}

// How many of the bytes pass; -1, with errno, for none.
ssize_t Room(int file, std::size_t wanted) {
  if (!IsRegular(file)) return static_cast<ssize_t>(wanted);
  Change();
  const long before = bytes.fetch_add(static_cast<long>(wanted));
  if (Wish().what == Do::Short)
    return static_cast<ssize_t>(std::min<std::size_t>(wanted, static_cast<std::size_t>(Wish().at)));
  if (Wish().what != Do::Space) return static_cast<ssize_t>(wanted);
  const long left = std::clamp(Wish().at - 1 - before, 0L, static_cast<long>(wanted));
  if (left == 0 && wanted > 0) return errno = ENOSPC, -1;
  return left;
}

template <typename Function>
Function Next(Function, const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

[[gnu::destructor]] void WriteCount() {
  const char* path = std::getenv("GLYPHMOTION_COUNT_FILE");
  const int file = path ? creat(path, 0644) : -1;
  if (file < 0) return;
  dprintf(file, "%ld %ld %ld\n", calls.load(), bytes.load(), reads.load());
  close(file);
}

}  // namespace

#define CHANGING_CALL(name, parameters, arguments) \
  int name parameters {                            \
    static const auto real = Next(&name, #name);   \
    if (Interrupted()) return -1;                  \
    Change();                                      \
    return real arguments;                         \
  }

#pragma GCC visibility push(default)
extern "C" {

ssize_t write(int file, const void* data, std::size_t size) {
  static const auto real = Next(&write, "write");
  if (Interrupted()) return -1;
  const ssize_t room = Room(file, size);
  return room < 0 ? room : real(file, data, static_cast<std::size_t>(room));
}

ssize_t writev(int file, const iovec* parts, int count) {
  static const auto real = Next(&writev, "writev");
  if (!IsRegular(file)) return real(file, parts, count);
  return count > 0 ? write(file, parts[0].iov_base, parts[0].iov_len) : 0;
}

ssize_t read(int file, void* data, std::size_t size) {
  static const auto real = Next(&read, "read");
  if (Interrupted()) return -1;
  if (!IsRegular(file) || IsOfSystem(file)) return real(file, data, size);
  if (++reads == Wish().at && Wish().what == Do::Read) return errno = EIO, -1;
  return real(file, data, Wish().what == Do::Short ? std::min(size, static_cast<std::size_t>(Wish().at)) : size);
}

// The C library's own calls of read() pass by the one above.
std::size_t fread(void* data, std::size_t size, std::size_t count, std::FILE* from) {
  static const auto real = Next(&fread, "fread");
  const int file = fileno(from);
  if (!IsRegular(file) || IsOfSystem(file)) return real(data, size, count, from);
  if (++reads == Wish().at && Wish().what == Do::Read) return errno = EIO, 0;
  return real(data, size, count, from);
}

int clock_gettime(clockid_t clock, timespec* time) {
  static const auto real = Next(&clock_gettime, "clock_gettime");
  static std::atomic<bool> ahead;
  const int result = real(clock, time);
  if (Wish().what == Do::Clock && clock == CLOCK_REALTIME && (ahead = !ahead)) time->tv_sec += Wish().at;
  return result;
}

int open(const char* path, int flags, ...) {
  static const auto real = Next(&open, "open");
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if (flags & (O_CREAT | O_TRUNC) || (flags & O_TMPFILE) == O_TMPFILE) Change();
  return real(path, flags, mode);
}

CHANGING_CALL(rename, (const char* from, const char* to), (from, to))
CHANGING_CALL(renameat2, (int a, const char* from, int b, const char* to, unsigned flags), (a, from, b, to, flags))
CHANGING_CALL(link, (const char* from, const char* to), (from, to))
CHANGING_CALL(linkat, (int a, const char* from, int b, const char* to, int flags), (a, from, b, to, flags))
CHANGING_CALL(unlink, (const char* path), (path))
CHANGING_CALL(unlinkat, (int folder, const char* path, int flags), (folder, path, flags))
CHANGING_CALL(mkdir, (const char* path, mode_t mode), (path, mode))
CHANGING_CALL(rmdir, (const char* path), (path))
CHANGING_CALL(fsync, (int file), (file))
CHANGING_CALL(ftruncate, (int file, off_t size), (file, size))
CHANGING_CALL(fchmod, (int file, mode_t mode), (file, mode))
}
#pragma GCC visibility pop
