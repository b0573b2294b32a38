// SPDX-License-Identifier: MIT
// The C API: a job is the options as they were given, read again for each rendering.
#include <glyphmotion/glyphmotion.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/encoders/encoders.h"
#include "host/encoders/frame_order.h"
#include "host/encoders/out_of_memory.h"
#include "host/encoders/screen.h"
#include "host/options/arguments.h"
#include "host/options/library_options.h"
#include "host/options/typed_words.h"
#include "host/render/picture_output.h"

using namespace glyphmotion;

struct glyphmotion_job {
  TypedWords typed;
  std::string error;
  std::vector<std::string> notes;
  glyphmotion_progress progress = nullptr;
  void* user = nullptr;
  std::atomic<bool> cancelled = false;
  bool outOfMemory = false;  // in place of the error
};

struct glyphmotion_frame {
  int width, height, number, count, duration;
  const unsigned char* rgba;
};

namespace {

// Runs a function that returns a status and may throw; nothing is thrown into C.
template <typename Work>
glyphmotion_status Guarded(glyphmotion_job* target, Work work) noexcept {
  if (!target) return GLYPHMOTION_OUT_OF_MEMORY;
  glyphmotion_job& job = *target;
  try {
    job.error.clear();
    job.outOfMemory = false;
    return work();
  } catch (const UsageError& error) {
    try {
      job.error = InLibraryTerms(error.sentence);
      return GLYPHMOTION_BAD_OPTION;
    } catch (const std::bad_alloc&) {
    }
  } catch (const std::bad_alloc&) {
  } catch (const std::exception& error) {
    try {
      job.error = std::string("unexpected failure: ") + error.what();
      return GLYPHMOTION_FAILED;
    } catch (const std::bad_alloc&) {
    }
  }
  job.outOfMemory = true;
  return GLYPHMOTION_OUT_OF_MEMORY;
}

glyphmotion_status StatusOf(const RenderResult& result, const std::string& sentence) {
  if (result.status == RenderStatus::Cancelled) return GLYPHMOTION_CANCELLED;
  if (sentence == kOutOfMemory) return GLYPHMOTION_OUT_OF_MEMORY;
  if (result.status == RenderStatus::BadJob) return GLYPHMOTION_BAD_OPTION;
  return sentence.empty() ? GLYPHMOTION_OK : GLYPHMOTION_FAILED;
}

// What the callbacks of one rendering share.
class Watcher {
 public:
  explicit Watcher(glyphmotion_job& job) : job_(job) {}
  ~Watcher() { job_.cancelled = false; }
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

  Sink MakeSink() {
    Sink sink;
    sink.stop = &job_.cancelled;
    if (!job_.progress) return sink;
    sink.stage = [this](const std::string& name) { Call(stage_ = name, 0, 0); };
    sink.progress = [this](std::int64_t position, std::int64_t total) { Call(stage_, position, total); };
    return sink;
  }

 private:
  void Call(const std::string& stage, std::int64_t position, std::int64_t total) {
    if (job_.progress(job_.user, stage.c_str(), position, total) != 0) job_.cancelled = true;
  }

  glyphmotion_job& job_;
  std::string stage_;
};

// "-" is a file here, not standard output.
std::string PathOf(const char* path) {
  const std::string given = path ? path : "";
  if (given.empty()) Refuse("the path is empty; name a file");
  return given == "-" ? "./-" : given;
}

// The job's options with an output, as the program has them.
Arguments Read(const glyphmotion_job& job, const std::string& output, const char* format) {
  TypedWords typed = job.typed;
  typed.Put("--output", {output});
  if (format) typed.Put("--format", {format});
  Catalogue catalogue = LibraryCatalogue();
  catalogue.textOptional = true;
  return ReadOptions(std::move(typed), catalogue);
}

// Keeps what a rendering says, in the words of this API.
glyphmotion_status Conclude(glyphmotion_job& job, const Arguments& arguments, const RenderResult& result,
                            const std::string& trouble) {
  const auto plain = [&](const std::string& sentence) { return InLibraryTerms(InOptionTerms(sentence, arguments)); };
  for (const std::vector<std::string>* notes : {&arguments.notes, &result.notes}) {
    for (const std::string& note : *notes) job.notes.push_back(plain(note));
  }
  job.error = plain(trouble);
  return StatusOf(result, trouble);
}

glyphmotion_status RenderInto(glyphmotion_job& job, const Arguments& arguments, Output output) {
  Watcher watcher(job);
  const RenderResult result =
      RenderPictures(arguments.job, *FindFormat(arguments.extension), std::move(output), watcher.MakeSink());
  return Conclude(job, arguments, result, result.message);
}

// Shows each image on a screen, so that a frame is what a viewer sees.
class FrameShow {
 public:
  FrameShow(glyphmotion_job& job, const Job& what, glyphmotion_frame_sink sink, void* user)
      : job_(job), sink_(sink), user_(user) {
    if (what.start) order_.emplace(*what.start, [this](const Image& image) { return Show(image); });
  }

  Sink Attach(Sink sink) {
    sink.task = [this](const Task& task) {
      count_ = task.imageCount;
      screen_.emplace(task.width, task.height);
      return true;
    };
    sink.image = [this](const Image& image) {
      if (image.sample) screen_.emplace(image.width, image.height);
      error_ = order_ ? order_->Add(image) : Show(image);
      return error_.empty();
    };
    return sink;
  }

  /// Empty when all frames have been shown.
  std::string Finish(const RenderResult& result) {
    if (!error_.empty()) return error_;
    if (result.status != RenderStatus::Done) return result.message.empty() ? kOutOfMemory : result.message;
    return order_ ? order_->Finish() : std::string();
  }

 private:
  std::string Show(const Image& image) {
    if (job_.cancelled) return {};
    screen_->Show(ReadDib(image.dib), image.transparentIndex, image.standAlone);
    const glyphmotion_frame frame{screen_->width, screen_->height,           number_++,
                                  count_,         image.DelayMilliseconds(), screen_->pixels.data()};
    if (sink_(user_, &frame) != 0) job_.cancelled = true;
    return {};
  }

  glyphmotion_job& job_;
  glyphmotion_frame_sink sink_;
  void* user_;
  std::optional<Screen> screen_;
  std::optional<FrameOrder> order_;
  std::string error_;
  int number_ = 0, count_ = 1;
};

// Lists that live as long as the process, with a null at their end.
struct NameList {
  std::vector<std::string> names;
  std::vector<const char*> pointers;
  explicit NameList(std::vector<std::string> given) : names(std::move(given)) {
    for (const std::string& name : names) pointers.push_back(name.c_str());
    pointers.push_back(nullptr);
  }
};

template <auto Make>
const char* const* KeptNames() noexcept {
  try {
    static const NameList list(Make());
    return list.pointers.data();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

glyphmotion_status SetText(glyphmotion_job& job, const char* option, const char* value) {
  const std::string name = option ? option : "";
  if (name == "text") {
    job.typed.text = value ? std::optional<std::string>(value) : std::nullopt;
    return GLYPHMOTION_OK;
  }
  SetLibraryOption(job.typed, name, value ? std::optional<std::string>(value) : std::nullopt);
  return GLYPHMOTION_OK;
}

}  // namespace

extern "C" {

const char* glyphmotion_version(void) { return Version(); }

const char* const* glyphmotion_options(void) { return KeptNames<LibraryOptionNames>(); }
const char* const* glyphmotion_effects(void) { return KeptNames<EffectOptionNames>(); }
const char* const* glyphmotion_looks(void) {
  return KeptNames<[] {
    std::vector<std::string> names;
    for (LookInfo& look : Looks()) names.push_back(std::move(look.name));
    return names;
  }>();
}
const char* const* glyphmotion_formats(void) { return KeptNames<OutputFormats>(); }

glyphmotion_job* glyphmotion_job_new(void) { return new (std::nothrow) glyphmotion_job; }

glyphmotion_job* glyphmotion_job_copy(const glyphmotion_job* job) {
  glyphmotion_job* copy = job ? glyphmotion_job_new() : nullptr;
  if (copy && Guarded(copy, [&] {
                copy->typed = job->typed;
                return GLYPHMOTION_OK;
              }) == GLYPHMOTION_OK)
    return copy;
  delete copy;
  return nullptr;
}

void glyphmotion_job_free(glyphmotion_job* job) { delete job; }

glyphmotion_status glyphmotion_job_set(glyphmotion_job* job, const char* option, const char* value) {
  return Guarded(job, [&] { return SetText(*job, option, value); });
}

glyphmotion_status glyphmotion_job_set_number(glyphmotion_job* job, const char* option, long value) {
  return Guarded(job, [&] { return SetText(*job, option, std::to_string(value).c_str()); });
}

glyphmotion_status glyphmotion_job_set_flag(glyphmotion_job* job, const char* option, int on) {
  return Guarded(job, [&] { return SetText(*job, option, on ? "1" : "0"); });
}

const char* glyphmotion_job_error(const glyphmotion_job* job) {
  return !job || job->outOfMemory ? kOutOfMemory : job->error.c_str();
}

const char* glyphmotion_job_note(const glyphmotion_job* job, size_t index) {
  return job && index < job->notes.size() ? job->notes[index].c_str() : nullptr;
}

void glyphmotion_job_on_progress(glyphmotion_job* job, glyphmotion_progress progress, void* user) {
  if (!job) return;
  job->progress = progress;
  job->user = user;
}

void glyphmotion_job_cancel(glyphmotion_job* job) {
  if (job) job->cancelled = true;
}

glyphmotion_status glyphmotion_render_to_file(glyphmotion_job* job, const char* path) {
  return Guarded(job, [&] {
    job->notes.clear();
    const std::string target = PathOf(path);
    const Arguments arguments = Read(*job, target, nullptr);
    Output output = Output::File(target, job->error);
    return output ? RenderInto(*job, arguments, std::move(output)) : GLYPHMOTION_FAILED;
  });
}

glyphmotion_status glyphmotion_render_to_memory(glyphmotion_job* job, const char* format, unsigned char** bytes,
                                                size_t* size) {
  *bytes = nullptr;
  *size = 0;
  return Guarded(job, [&] {
    job->notes.clear();
    std::vector<std::uint8_t> file;
    const Arguments arguments = Read(*job, "-", format ? format : "");
    const glyphmotion_status status = RenderInto(*job, arguments, Output::Memory(file));
    if (status != GLYPHMOTION_OK) return status;
    *bytes = static_cast<unsigned char*>(std::malloc(file.size()));
    if (!*bytes) throw std::bad_alloc();
    std::memcpy(*bytes, file.data(), file.size());
    *size = file.size();
    return GLYPHMOTION_OK;
  });
}

void glyphmotion_free(void* bytes) { std::free(bytes); }

int glyphmotion_frame_width(const glyphmotion_frame* frame) { return frame->width; }
int glyphmotion_frame_height(const glyphmotion_frame* frame) { return frame->height; }
int glyphmotion_frame_number(const glyphmotion_frame* frame) { return frame->number; }
int glyphmotion_frame_count(const glyphmotion_frame* frame) { return frame->count; }
int glyphmotion_frame_duration(const glyphmotion_frame* frame) { return frame->duration; }
const unsigned char* glyphmotion_frame_rgba(const glyphmotion_frame* frame) { return frame->rgba; }

glyphmotion_status glyphmotion_render_frames(glyphmotion_job* job, glyphmotion_frame_sink sink, void* user) {
  return Guarded(job, [&] {
    job->notes.clear();
    const Arguments arguments = Read(*job, "-", "rgba");
    Watcher watcher(*job);
    FrameShow show(*job, arguments.job, sink, user);
    const RenderResult result = Render(arguments.job, show.Attach(watcher.MakeSink()));
    const std::string trouble = show.Finish(result);
    if (!job->cancelled || !trouble.empty()) return Conclude(*job, arguments, result, trouble);
    job->error = "the run was interrupted";
    return GLYPHMOTION_CANCELLED;
  });
}

}  // extern "C"
