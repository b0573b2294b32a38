// SPDX-License-Identifier: MIT
// The C API: the program's bytes, frames, messages, callbacks and threads.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <thread>

#include "glyphmotion/glyphmotion.h"
#include "glyphmotion/version.h"
#include "library/program_bytes.h"

using namespace glyphmotion;

namespace {

struct CJob {
  glyphmotion_job* job = glyphmotion_job_new();
  CJob() {
    for (const auto& [option, value] : {std::pair{"text", "Ab"}, {"effect", "vortex"}, {"size", "20"}, {"frames", "4"}})
      EXPECT_EQ(Set(option, value), GLYPHMOTION_OK);
  }
  ~CJob() { glyphmotion_job_free(job); }
  glyphmotion_status Set(const char* option, const char* value) { return glyphmotion_job_set(job, option, value); }
  std::string Error() const { return glyphmotion_job_error(job); }
  glyphmotion_status Memory(const char* format, std::string& bytes) {
    unsigned char* data = nullptr;
    std::size_t size = 0;
    const glyphmotion_status status = glyphmotion_render_to_memory(job, format, &data, &size);
    bytes.assign(reinterpret_cast<const char*>(data), size);
    glyphmotion_free(data);
    return status;
  }
};

}  // namespace

TEST(CApi, MakesTheProgramsBytes) {
  const Folder folder;
  CJob job;
  EXPECT_EQ(job.Set("fill", "texture:Marble"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("set", "@rotate=90"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("set", "MainPadding=3"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("delay", "80ms"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("look", "gold"), GLYPHMOTION_OK);
  EXPECT_EQ(glyphmotion_job_set_number(job.job, "size", 24), GLYPHMOTION_OK);
  EXPECT_EQ(glyphmotion_job_set_flag(job.job, "bold", 0), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("dither", "1"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("dither", nullptr), GLYPHMOTION_OK);
  Words words;
  std::istringstream line(
      "Ab -e vortex -s 24 --frames 4 --fill texture:Marble --set @rotate=90 --set MainPadding=3 --delay 80ms --no-bold "
      "--look gold");
  for (std::string word; line >> word;) words.push_back(word);
  glyphmotion_job* copy = glyphmotion_job_copy(job.job);
  for (const char* const* format = glyphmotion_formats(); *format; ++format) {
    const std::string wanted = ProgramBytes(folder, words, std::string("a.") + *format);
    std::string bytes;
    EXPECT_EQ(job.Memory(*format, bytes), GLYPHMOTION_OK) << job.Error();
    EXPECT_TRUE(bytes == wanted) << *format;
    const std::string path = folder / (std::string("c.") + *format);
    EXPECT_EQ(glyphmotion_render_to_file(copy, path.c_str()), GLYPHMOTION_OK) << glyphmotion_job_error(copy);
    EXPECT_TRUE(BytesOf(path) == wanted) << *format;
  }
  glyphmotion_job_free(copy);
}

// Frames one after the other are the uncompressed video, in which a frame that rests is repeated.
TEST(CApi, FramesAreWhatAViewerSees) {
  struct Seen {
    std::string bytes;
    int frames = 0;
  } seen;
  const auto keep = [](void* user, const glyphmotion_frame* frame) {
    Seen& all = *static_cast<Seen*>(user);
    EXPECT_EQ(glyphmotion_frame_number(frame), all.frames++);
    EXPECT_EQ(glyphmotion_frame_count(frame), 4);
    const std::size_t size = std::size_t{4} * glyphmotion_frame_width(frame) * glyphmotion_frame_height(frame);
    for (int shown = 0; shown < glyphmotion_frame_duration(frame); shown += 40)
      all.bytes.append(reinterpret_cast<const char*>(glyphmotion_frame_rgba(frame)), size);
    return 0;
  };
  CJob job;
  for (const char* option : {"alpha", "palette"}) {
    EXPECT_EQ(job.Set("alpha", nullptr), GLYPHMOTION_OK);
    EXPECT_EQ(job.Set(option, std::strcmp(option, "alpha") ? "windows16" : "1"), GLYPHMOTION_OK) << job.Error();
    seen = {};
    std::string video;
    ASSERT_EQ(job.Memory("rgba", video), GLYPHMOTION_OK) << job.Error();
    ASSERT_EQ(glyphmotion_render_frames(job.job, keep, &seen), GLYPHMOTION_OK) << job.Error();
    EXPECT_EQ(seen.frames, 4);
    EXPECT_TRUE(seen.bytes == video) << option;
  }
}

TEST(CApi, EveryWrongValueIsASentenceWithoutSwitches) {
  CJob none;
  glyphmotion_job_free(std::exchange(none.job, nullptr));
  std::string nothing;
  EXPECT_TRUE(none.Set("size", "20") == GLYPHMOTION_OUT_OF_MEMORY &&
              none.Memory("gif", nothing) == GLYPHMOTION_OUT_OF_MEMORY && none.Error().starts_with("out of memory"));
  EXPECT_TRUE(!glyphmotion_job_copy(nullptr) && !glyphmotion_job_note(nullptr, 0));
  int refused = 0;
  for (const char* const* option = glyphmotion_options(); *option; ++option) {
    for (const char* value : {"?", "-7", "none"}) {
      CJob job;
      if (!std::strcmp(*option, "text-file") || !std::strncmp(*option, "save-", 5) || !std::strcmp(*option, "settings"))
        continue;  // any name is allowed
      glyphmotion_status status = job.Set(*option, value);
      std::string bytes;
      if (status == GLYPHMOTION_OK) status = job.Memory("gif", bytes);
      refused += status != GLYPHMOTION_OK;
      EXPECT_EQ(status == GLYPHMOTION_OK, job.Error().empty()) << *option;
      EXPECT_EQ(job.Error().find("--"), std::string::npos) << job.Error();
      EXPECT_EQ(job.Error().find(" -o"), std::string::npos) << job.Error();
    }
  }
  EXPECT_GT(refused, 90);
  CJob job;
  EXPECT_EQ(job.Set("look", "gold"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Set("look", nullptr), GLYPHMOTION_OK);
  for (const char* absent : {"siz", "--size", "output", "list", "refuse", "no-bold", ""}) {
    EXPECT_EQ(job.Set(absent, "1"), GLYPHMOTION_BAD_OPTION) << absent;
    EXPECT_NE(job.Error().find("there is no option"), std::string::npos) << job.Error();
  }
  EXPECT_EQ(job.Set(nullptr, nullptr), GLYPHMOTION_BAD_OPTION);
  EXPECT_EQ(job.Set("size", "500"), GLYPHMOTION_BAD_OPTION);
  EXPECT_EQ(job.Error(), "size 500 is not allowed: it takes a whole number from 4 to 144");
  EXPECT_EQ(job.Set("delay", "85ms"), GLYPHMOTION_OK);
  EXPECT_EQ(job.Error(), "");
  std::string bytes;
  EXPECT_EQ(job.Memory("gif", bytes), GLYPHMOTION_OK);
  EXPECT_STREQ(glyphmotion_job_note(job.job, 0), "delay 85ms becomes 90 ms, a whole number of the output's units");
  EXPECT_EQ(glyphmotion_job_note(job.job, 1), nullptr);
  EXPECT_EQ(glyphmotion_render_to_file(job.job, "/nowhere/a.gif"), GLYPHMOTION_FAILED);
  for (const char* path : {static_cast<const char*>(nullptr), "", "-", "a", "a.bmp"})
    EXPECT_EQ(glyphmotion_render_to_file(job.job, path), GLYPHMOTION_BAD_OPTION) << job.Error();
  EXPECT_EQ(job.Memory(nullptr, bytes), GLYPHMOTION_BAD_OPTION);
}

TEST(CApi, CallbacksAndOtherThreadsCancel) {
  CJob job;
  std::string bytes;
  const auto second = [](void* user, const char* stage, std::int64_t, std::int64_t) {
    EXPECT_NE(stage, nullptr);
    return ++*static_cast<int*>(user) == 2 ? 1 : 0;
  };
  int calls = 0;
  glyphmotion_job_on_progress(job.job, second, &calls);
  EXPECT_EQ(job.Memory("gif", bytes), GLYPHMOTION_CANCELLED);
  EXPECT_EQ(job.Error(), "the run was interrupted");
  EXPECT_TRUE(bytes.empty());
  glyphmotion_job_on_progress(job.job, nullptr, nullptr);
  glyphmotion_job_cancel(job.job);
  EXPECT_EQ(job.Memory("gif", bytes), GLYPHMOTION_CANCELLED);
  ASSERT_EQ(job.Memory("gif", bytes), GLYPHMOTION_OK) << job.Error();

  const auto stop = [](void* user, const glyphmotion_frame*) { return ++*static_cast<int*>(user) == 2 ? 1 : 0; };
  calls = 0;
  EXPECT_EQ(glyphmotion_render_frames(job.job, stop, &calls), GLYPHMOTION_CANCELLED);
  EXPECT_EQ(calls, 2);

  // Jobs side by side make the bytes of one alone.
  std::vector<std::string> all(3);
  std::vector<std::thread> threads;
  for (std::string& mine : all)
    threads.emplace_back([&mine] { EXPECT_EQ(CJob().Memory("gif", mine), GLYPHMOTION_OK); });
  for (std::thread& thread : threads) thread.join();
  for (const std::string& mine : all) EXPECT_TRUE(mine == bytes);
  EXPECT_STREQ(glyphmotion_version(), GLYPHMOTION_VERSION);
}
