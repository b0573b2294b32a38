// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

struct Folder {
  fs::path path;
  Folder() {
    std::string name = (fs::temp_directory_path() / "files-XXXXXX").string();
    path = mkdtemp(name.data());
  }
  ~Folder() { fs::remove_all(path); }
  std::string operator/(const std::string& name) const { return (path / name).string(); }
  long Count() const { return std::distance(fs::directory_iterator(path), fs::directory_iterator()); }
};

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
  EXPECT_EQ(folder.Count(), 3) << "no temporary file is left";
}

TEST(Files, ANameWithoutAFolderIsInTheCurrentOne) {
  const Folder folder;
  const fs::path before = fs::current_path();
  fs::current_path(folder.path);
  const bool written = AtomicWriteFile("plain", "x");
  fs::current_path(before);
  EXPECT_TRUE(written);
  EXPECT_EQ(ReadWholeFile(folder / "plain"), "x");
  EXPECT_EQ(folder.Count(), 1);
}

TEST(Files, WhatCannotBeReadGivesNothing) {
  const Folder folder;
  ASSERT_TRUE(AtomicWriteFile(folder / "ten", "0123456789"));
  EXPECT_EQ(ReadWholeFile(folder / "ten", 10), "0123456789");
  EXPECT_FALSE(ReadWholeFile(folder / "ten", 9));
  EXPECT_FALSE(ReadWholeFile(folder / "none"));
  EXPECT_FALSE(ReadWholeFile(folder.path.string()));
  EXPECT_FALSE(ReadWholeFile(""));
  EXPECT_FALSE(ReadWholeFile(std::string("/dev/zero"), 1 << 20)) << "a file without an end is refused, not awaited";
}

TEST(Files, WhatCannotBeWrittenLeavesEverythingAsItWas) {
  const Folder folder;
  EXPECT_FALSE(AtomicWriteFile("", "x"));
  EXPECT_FALSE(AtomicWriteFile(folder / "no/such/folder", "x"));
  EXPECT_FALSE(AtomicWriteFile(folder.path.string(), "x"));
  EXPECT_EQ(folder.Count(), 0);
}

// The disk is full for a process that may not write more than a few bytes to a file.
TEST(Files, AFullDiskLeavesTheOldFile) {
  const Folder folder;
  ASSERT_TRUE(AtomicWriteFile(folder / "kept", "old"));
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit small = before;
  small.rlim_cur = 4096;
  setrlimit(RLIMIT_FSIZE, &small);
  const bool written = AtomicWriteFile(folder / "kept", std::string(100000, 'x'));
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(written);
  EXPECT_EQ(ReadWholeFile(folder / "kept"), "old");
  EXPECT_EQ(folder.Count(), 1);
}

// Whenever the program is killed while it saves, one whole version of the file stands.
TEST(Files, AnInterruptedSaveLeavesAWholeFile) {
  const Folder folder;
  const std::string path = folder / "kept", versions[] = {std::string(300000, 'a'), std::string(200000, 'b')};
  ASSERT_TRUE(AtomicWriteFile(path, versions[0]));
  for (int round = 0; round < 12; ++round) {
    const pid_t child = fork();
    if (child == 0) {
      for (unsigned i = 0;; ++i) AtomicWriteFile(path, versions[i % 2]);
    }
    usleep(static_cast<useconds_t>(2000 + 1700 * round));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const auto content = ReadWholeFile(path);
    ASSERT_TRUE(content == versions[0] || content == versions[1]) << "round " << round;
  }
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
