// SPDX-License-Identifier: MIT
// glyphmotion batch: what each line makes and says, alone, in parts, and after a kill.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <nlohmann/json.hpp>
#include <thread>

#include "host/host_helpers.h"

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using testing::TemporaryFolder;

int CodeOf(const std::string& command) {
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Runs the program; standard output and error go to "out" and "err" of the folder.
int Start(const TemporaryFolder& folder, const std::string& arguments) {
  return CodeOf("cd '" + folder.path.string() + "' && '" GLYPHMOTION_PROGRAM "' " + arguments + " >out 2>err");
}

void WriteText(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

// The results of a batch with --json by line.
std::map<long, Json> Results(const TemporaryFolder& folder) {
  std::map<long, Json> results;
  std::ifstream file(folder / "out");
  for (std::string line; std::getline(file, line);) {
    const Json json = Json::parse(line);
    EXPECT_TRUE(results.emplace(json.at("line").get<long>(), json).second) << line;
  }
  return results;
}

std::string Job(int number, const std::string& more = "") {
  return Json{{"text", "Job"}, {"output", std::to_string(number) + ".gif"}}.dump().insert(
             1, "\"effect\":\"vortex\",\"size\":30," + more) +
         "\n";
}

TEST(Batch, EachLineMakesWhatASingleRunMakesAndAWrongOneFailsAlone) {
  const TemporaryFolder folder;
  const struct {
    const char *line, *error;  // null: made
  } rows[] = {
      {R"({"text":"Hi","output":"a.gif","effect":"vortex","size":20,"set":{"@frames":5}})", nullptr},
      {R"({"text":"-e","output":"in/b.png","size":20,"bold":false,"italic":true,"set":["@frames=4"],"loop":null})",
       nullptr},
      {R"({"text":"x","frames-as":"png","output":"c","size":20,"frames":4})", nullptr},
      {"{\"output\":\"d.gif\",\"text\":\"a\\nb\",\"size\":20,\"frames\":3}\r", nullptr},
      {R"({"text":"x","output":"x.gif","efect":"vortex"})", "did you mean 'effect'?"},
      {R"({"text":"x","output":"x.gif","effect":"vortx"})", "did you mean 'vortex'?"},
      {R"({"text":"x","output":"x.gif","--size":20})", "did you mean 'size'?"},
      {R"({"text":"x","output":"x1.gif","size":900})", "--size 900 is not allowed"},
      {R"({"text":"x","output":"x.gif","size":[20]})", "not an array"},
      {R"({"text":"x","output":"x.gif","size":true})", "not true or false"},
      {R"({"text":"x","output":"x.gif","bold":1})", "'bold' takes true or false, not 1"},
      {R"({"text":"x","output":"x.gif","fill":""})", "'fill' has an empty value"},
      {R"({"text":"x","output":"x.gif","list":"fonts"})", "not for a line of a batch"},
      {R"({"text":"x","output":"-"})", "cannot be '-'"},
      {R"({"text-file":"-","output":"x.gif"})", "cannot be '-'"},
      {R"({"text":"x","output":"../x.gif"})", "not inside the folder"},
      {R"({"text":"x","output":"/x.gif"})", "not inside the folder"},
      {R"({"text":"x","output":"x.gif","settings":"../s.ini"})", "not inside the folder"},
      {R"({"text":"x"})", "no output"},
      {R"({"output":"x2.gif"})", "there is no text"},
      {R"({"text":"x","output":"in/../a.gif"})", "as line 1 does"},
      {R"({"text":"x","output":"y.gif","save-document":"y.gif"})", "two of its files"},
      {R"(["x"])", "not an object"},
      {"{\"text\":\"\xFF\"}", "not JSON"},
  };
  std::string lines;
  for (const auto& row : rows) lines += std::string(row.line) + "\n";
  WriteText(folder / "jobs.jsonl", lines + "\n  \n" + Job(9, "\"fill\":\"" + std::string(1 << 20, ' ') + "\","));
  ASSERT_EQ(Start(folder, "batch jobs.jsonl --out made --json"), 1);
  EXPECT_EQ(testing::ReadText(folder / "err"), "");
  auto results = Results(folder);
  ASSERT_EQ(results.size(), std::size(rows) + 1);
  EXPECT_NE(results.rbegin()->second.value("error", "").find("longer than 1 MiB"), std::string::npos);
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const Json& result = results[static_cast<long>(i) + 1];
    EXPECT_EQ(result.contains("error"), rows[i].error != nullptr) << result;
    if (rows[i].error) {
      EXPECT_NE(result.value("error", "").find(rows[i].error), std::string::npos) << result << rows[i].error;
    }
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path / "made"), {}), 4);
  // The same as by words, and the numbers are those of the file.
  ASSERT_EQ(Start(folder, "Hi -e vortex -s 20 --set @frames=5 -o a.gif --json"), 0);
  EXPECT_EQ(testing::ReadBytes(folder / "a.gif"), testing::ReadBytes(folder / "made/a.gif"));
  Json single = Json::parse(testing::ReadText(folder / "out")), first = results[1];
  EXPECT_EQ(single.at("bytes"), fs::file_size(folder / "a.gif"));
  EXPECT_EQ(single.at("frames"), 5);
  EXPECT_EQ(first.at("file"), "made/a.gif");
  for (const char* key : {"line", "file", "ms"}) single.erase(key), first.erase(key);
  EXPECT_EQ(single, first);
  ASSERT_EQ(Start(folder, "--no-bold --italic -s 20 --set @frames=4 -o b.png -- -e"), 0);
  EXPECT_EQ(testing::ReadBytes(folder / "b.png"), testing::ReadBytes(folder / "made/in/b.png"));
  EXPECT_EQ(results[3].at("format"), "folder");
}

TEST(Batch, PartsTogetherAreTheWholeAndWordsAreRefusedAtOnce) {
  const TemporaryFolder folder;
  std::string lines;
  for (int i = 0; i < 7; ++i) lines += Job(i, "\"frames\":2,");
  WriteText(folder / "jobs.jsonl", lines + Job(2));
  std::map<long, int> made;
  for (int part = 1; part <= 3; ++part) {
    const std::string shard = std::to_string(part) + "/3";
    // The eighth line belongs to the second part, which has not read the third line's job otherwise.
    EXPECT_EQ(Start(folder, "batch - --jobs 3 --out made --json --shard " + shard + " <jobs.jsonl"), part == 2);
    for (const auto& [line, result] : Results(folder)) {
      ++made[line];
      EXPECT_EQ(line % 3, part % 3);
      EXPECT_EQ(result.contains("error"), line == 8) << result;
    }
  }
  EXPECT_EQ(made.size(), 8u);
  std::ofstream(folder / "huge.jsonl").close();
  std::filesystem::resize_file(folder / "huge.jsonl", std::uintmax_t{5} << 30);
  const struct {
    const char *words, *error;
    int code;
  } rows[] = {{"", "there is no file of jobs", 2},
              {"huge.jsonl", "'huge.jsonl' cannot be read: it has NUL bytes", 1},
              {"none.jsonl", "'none.jsonl' cannot be read: ", 2},
              {".", "'.' cannot be read: ", 1},
              {"jobs.jsonl --shard 4/3", "--shard 4/3 is not allowed", 2},
              {"jobs.jsonl --shard 2", "--shard 2 is not allowed", 2},
              {"jobs.jsonl --jobs 0", "--jobs 0 is not allowed", 2},
              {"jobs.jsonl --job 2", "did you mean '--jobs'?", 2},
              {"jobs.jsonl >/dev/full", "cannot write to standard output", 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(CodeOf("cd '" + folder.path.string() + "' && '" GLYPHMOTION_PROGRAM "' 2>err batch " + row.words),
              row.code)
        << row.words;
    EXPECT_NE(testing::ReadText(folder / "err").find(row.error), std::string::npos)
        << testing::ReadText(folder / "err");
  }
}

// Starts a batch, and sends it the signal when some of its outputs exist. Its exit code, or minus the signal.
int EndEarly(const TemporaryFolder& folder, int signal) {
  const pid_t child = fork();
  if (child == 0) {
    if (chdir(folder.path.c_str()) != 0 || !freopen("out", "w", stdout) || !freopen("err", "w", stderr)) _exit(99);
    execl(GLYPHMOTION_PROGRAM, "glyphmotion", "batch", "jobs.jsonl", "--jobs", "2", "--out", "made", nullptr);
    _exit(99);
  }
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!fs::exists(folder.path / "made/5.gif") && std::chrono::steady_clock::now() < end) usleep(1000);
  kill(child, signal);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

// Inode and time of each output.
std::map<std::string, std::pair<ino_t, long>> Identities(const TemporaryFolder& folder) {
  std::map<std::string, std::pair<ino_t, long>> found;
  for (const auto& entry : fs::directory_iterator(folder.path / "made")) {
    struct stat about {};
    stat(entry.path().c_str(), &about);
    found[entry.path().filename().string()] = {about.st_ino, about.st_mtim.tv_nsec};
  }
  return found;
}

TEST(Batch, AfterAKillWhatIsMadeIsWholeAndIsNotMadeAgain) {
  constexpr int kJobs = 40;
  const TemporaryFolder folder;
  std::string lines;
  for (int i = 0; i < kJobs; ++i) lines += Job(i);
  WriteText(folder / "jobs.jsonl", lines);
  fs::create_directories(folder.path / "made");
  WriteText(folder / "made/39.gif", "older than the batch");
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_EQ(EndEarly(folder, SIGINT), 130);
  EXPECT_NE(testing::ReadText(folder / "err").find("interrupted; finished outputs stay"), std::string::npos);
  EXPECT_EQ(EndEarly(folder, SIGKILL), -SIGKILL);
  // A kill between an output and its entry in the journal.
  const std::string journal = testing::ReadText(folder / "jobs.jsonl.journal");
  WriteText(folder / "jobs.jsonl.journal", journal.substr(0, journal.size() - 34) + "0123");
  const auto before = Identities(folder);
  ASSERT_GT(before.size(), 4u);
  ASSERT_LT(before.size(), std::size_t{kJobs}) << "the batch ended before it was killed";
  ASSERT_EQ(Start(folder, "batch jobs.jsonl --out made --resume --json"), 0);
  const auto after = Identities(folder);
  EXPECT_EQ(after.size(), std::size_t{kJobs});
  for (const auto& [name, identity] : before) EXPECT_EQ(after.at(name) == identity, name != "39.gif") << name;
  for (const auto& [name, identity] : after)
    EXPECT_EQ(testing::ReadBytes(folder / "made/" + name), testing::ReadBytes(folder / "made/0.gif")) << name;
  std::size_t skipped = 0;
  for (const auto& [line, result] : Results(folder)) skipped += result.contains("skipped");
  EXPECT_EQ(skipped, before.size() - 1);
  // A line that has changed is made again, alone, also after everything has moved.
  const TemporaryFolder moved;
  for (const char* name : {"made", "jobs.jsonl.journal"}) fs::rename(folder / name, moved / name);
  WriteText(moved / "jobs.jsonl", Job(0, "\"frames\":3,") + lines.substr(Job(0).size()));
  ASSERT_EQ(Start(moved, "batch jobs.jsonl --out made --resume"), 0);
  const auto last = Identities(moved);
  for (const auto& [name, identity] : last) EXPECT_EQ(after.at(name) == identity, name != "0.gif") << name;
}

}  // namespace
}  // namespace glyphmotion
