// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>

#include "temporary_folder.h"

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

using Folder = TemporaryFolder;

void ForbidUnnamedFiles() {
  sock_filter rules[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                         BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
                         BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
                         BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_TMPFILE & ~O_DIRECTORY, 0, 1),
                         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
                         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
  const sock_fprog program{std::size(rules), rules};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
    _exit(9);
}

TEST(Files, BytesComeBackAsTheyWere) {
  const Folder folder;
  std::string all;
  for (int i = 0; i < 70000; ++i) all += static_cast<char>(i * 7);
  const std::string names[] = {"plain", "with blank", "\xC3\xBCml\xC3\xA4ut \xE2\x82\xAC"};
  for (const std::string& name : names) {
    const std::string contents[] = {"", "a", "line\r\n\0\x1A end", all};
    for (const std::string& content : contents) {
      ASSERT_TRUE(AtomicWriteFile(folder / name, content)) << name;
      EXPECT_EQ(ReadWholeFile(folder / name), content);
    }
  }
  EXPECT_EQ(folder.Entries(), 3u) << "no temporary file is left";
}

TEST(Files, ANameWithoutAFolderIsInTheCurrentOne) {
  const Folder folder;
  const fs::path before = fs::current_path();
  fs::current_path(folder.path);
  const bool written = AtomicWriteFile("plain", "x");
  fs::current_path(before);
  EXPECT_TRUE(written);
  EXPECT_EQ(ReadWholeFile(folder / "plain"), "x");
  EXPECT_EQ(folder.Entries(), 1u);
}

/// Runs `body` in a process of its own, which counts as failed when an expectation in it does. `named`: as if the
/// system had no files without a name.
void InChild(bool named, const std::function<void()>& body) {
  const pid_t child = fork();
  if (child == 0) {
    if (named) ForbidUnnamedFiles();
    body();
    _exit(testing::Test::HasFailure());
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << (named ? "named" : "unnamed") << ": " << status;
}

// Nothing is waited for: a pipe without a writer would keep the reader for ever.
TEST(Files, OnlyRegularFilesAreReadAndTheReasonIsSaid) {
  const Folder folder;
  ASSERT_TRUE(AtomicWriteFile(folder / "ten", "0123456789"));
  EXPECT_EQ(ReadWholeFile(folder / "ten", 10), "0123456789");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  const std::pair<std::string, const char*> cases[] = {
      {folder / "ten", "larger than 9 bytes"}, {folder / "none", "no such file"},
      {folder.path.string(), "folder"},        {"", "not a file name"},
      {folder / "pipe", "not a regular file"}, {"/dev/zero", "not a regular file"},
      {"/dev/null", "not a regular file"}};
  for (const auto& [path, says] : cases) {
    std::string why;
    EXPECT_FALSE(ReadWholeFile(path, 9, &why)) << path;
    EXPECT_NE(why.find(says), std::string::npos) << path << ": " << why;
  }
}

TEST(Files, AFailedWriteSaysWhyAndLeavesEverythingAsItWas) {
  const Folder folder;
  ASSERT_TRUE(AtomicWriteFile(folder / "kept", "old"));
  ASSERT_TRUE(AtomicWriteFile(folder / "fixed", "old"));
  chmod((folder / "fixed").c_str(), 0444);
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  fs::create_symlink("loop", folder / "loop");
  const std::pair<std::string, const char*> cases[] = {
      {"", "not a file name"},
      {folder / "no/such/folder", "no such"},
      {folder.path.string(), "folder"},
      {folder / "fixed", "read-only"},
      {folder / "pipe", ""},
      {folder / "loop", "leads back"},
      {folder / "kept", "(ulimit -f)"},
      {folder / "new", "(ulimit -f)"},
  };
  for (const bool named : {false, true}) {
    InChild(named, [&] {
      const rlimit small{4096, 4096};  // and the signal that comes with it, which would end the process
      setrlimit(RLIMIT_FSIZE, &small);
      for (const auto& [path, says] : cases) {
        std::string why;
        EXPECT_FALSE(AtomicWriteFile(path, std::string(100000, 'x'), &why)) << path;
        EXPECT_NE(why.find(says), std::string::npos) << path << ": " << why;
      }
    });
  }
  EXPECT_EQ(ReadWholeFile(folder / "kept"), "old");
  EXPECT_EQ(ReadWholeFile(folder / "fixed"), "old");
  EXPECT_EQ(folder.Entries(), 4u);
}

TEST(Files, ANameOfAnyLengthThatTheDiskTakesCanBeWritten) {
  const Folder folder;
  for (const bool named : {false, true}) {
    InChild(named, [&] {
      for (const std::size_t length : {1u, 240u, 241u, 255u}) {
        for (const char* content : {"first", "second"}) {
          EXPECT_TRUE(AtomicWriteFile(folder / std::string(length, 'n'), content)) << length;
          EXPECT_EQ(ReadWholeFile(folder / std::string(length, 'n')), content);
        }
      }
      EXPECT_FALSE(AtomicWriteFile(folder / std::string(256, 'n'), "x"));
    });
  }
  EXPECT_EQ(folder.Entries(), 4u);
}

// Only what this program left, and only of processes that are gone.
TEST(Files, AWriteClearsWhatDeadProcessesLeft) {
  const Folder folder;
  const pid_t dead = fork();
  if (dead == 0) _exit(0);
  waitpid(dead, nullptr, 0);
  const std::string start = folder / ".glyphmotion-", gone = start + std::to_string(dead);
  const std::string kept[] = {start + std::to_string(getppid()) + "-1.tmp", gone + "-1.part", start + "x-1.tmp"};
  for (const std::string& name : kept) ASSERT_TRUE(AtomicWriteFile(name, ""));
  ASSERT_TRUE(AtomicWriteFile(gone + "-7.tmp", ""));
  fs::create_directory(gone + "-8.tmp");
  ASSERT_TRUE(AtomicWriteFile(gone + "-8.tmp/0000.png", ""));
  ASSERT_TRUE(AtomicWriteFile(folder / "a", ""));
  for (const std::string& name : kept) EXPECT_TRUE(fs::exists(name)) << name;
  EXPECT_EQ(folder.Entries(), 4u);
}

TEST(Files, LinksAndPermissionsStay) {
  const Folder folder;
  ASSERT_TRUE(AtomicWriteFile(folder / "real", "old"));
  chmod((folder / "real").c_str(), 0640);
  fs::create_symlink("real", folder / "link");
  ASSERT_TRUE(AtomicWriteFile(folder / "link", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(ReadWholeFile(folder / "real"), "new");
  struct stat status {};
  stat((folder / "real").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
  EXPECT_TRUE(AtomicWriteFile("/dev/null", "gone"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

}  // namespace
}  // namespace glyphmotion
