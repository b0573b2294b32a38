// SPDX-License-Identifier: MIT
// Render(): a host with a scripted user.
#include <glyphmotion/render.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <filesystem>
#include <new>

#include "glyphmotion/host_contract.h"
#include "host/encoders/out_of_memory.h"
#include "host/render/image_loader.h"
#include "host/render/job_text.h"
#include "host/render/render_user.h"
#include "host/render/run_notes.h"
#include "image/packed_dib.h"
#include "materials/material_text.h"
#include "platform/dialog_driver.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/font_files.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "platform/text_engine.h"
#include "platform/workers.h"
#include "resources/strings.h"
#include "resources/templates.h"
#include "shell/build_driver.h"
#include "shell/host_arguments.h"
#include "shell/main_dialog.h"
#include "shell/operation_names.h"
#include "shell/settings.h"
#include "text/canvas.h"

namespace glyphmotion {
namespace {

// The host's side of one run.
class Session {
 public:
  Session(const Job& job, const Sink& sink) : shortFrames(job), job_(job), sink_(sink) {}

  std::uint64_t Answer(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) noexcept {
    try {
      if (exception) return 0;
      Report(task, operation, a, b);
      return Dispatch(operation, a, b);
    } catch (...) {  // thrown by the sink; rethrown once the plug-in has ended
      exception = std::current_exception();
      Stop();
      return 0;
    }
  }

  void TakeSample(const PackedDib& dib) {
    if (EndRequested()) return;
    LockedImage image(dib.Handle());
    if (!image) return;
    Image out = image.Describe();
    out.sample = true;
    if (!Give(out)) Decline();
  }

  std::exception_ptr exception;
  ShortFrames shortFrames;
  int images = 0;
  bool finished = false, cancelled = false, refused = false, declined = false;  // the last: by the sink

 private:
  // An image's bytes, valid during one call.
  struct LockedImage {
    explicit LockedImage(BlockHandle handle) : view(handle), block(handle), size(BlockSize(handle)) {}
    explicit operator bool() const { return static_cast<bool>(view); }
    Image Describe() const {
      Image image;
      image.dib = {reinterpret_cast<const std::uint8_t*>(block.get()), size};
      image.width = view.Width();
      image.height = view.Height();
      image.bits = view.Bits();
      return image;
    }
    DibView view;
    LockedBlock<DibHeader> block;
    std::size_t size;
  };

  // The plug-in ignores the result of its progress calls, so ending goes through the run.
  static void Stop() { CurrentRun().RequestEnd(); }

  bool Give(const Image& image) {
    if (sink_.image && !sink_.image(image)) return false;
    ++images;
    if (!image.sample) shortFrames.Add(image.delay);
    return true;
  }

  void Report(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
    if (!sink_.call) return;
    HostCallEvent event;
    event.operation = operation;
    event.a = a;
    event.b = b;
    event.name = OperationName(operation);
    event.hasTask = task != nullptr;
    switch (operation) {
      case HostOpAddComment:
      case HostOpStatusText:
      case HostOpShowHelp:
      case HostOpLoadImage:
        event.text = PointerIn<const char>(b);
        break;
      case HostOpNewTask:
      case HostOpNewTestTask:
        event.record = BytesOf(PointerIn<HostTaskRecord>(b));
        break;
      case HostOpPickColor:
        event.record = BytesOf(PointerIn<HostColorPickRecord>(b));
        break;
      case HostOpAddImage: {
        const auto* record = PointerIn<HostImageRecord>(b);
        event.record = BytesOf(record);
        const LockedImage image(PointerIn<void>(record->image));
        if (image) event.image = image.Describe().dib;
        sink_.call(event);
        return;
      }
      default:
        break;
    }
    sink_.call(event);
  }

  std::uint64_t Dispatch(std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
    if (!cancelled && sink_.cancelled && sink_.cancelled()) cancelled = true;
    if (cancelled) Stop();
    switch (operation) {
      case HostOpNewTask:
      case HostOpNewTestTask:
        return OpenTask(*PointerIn<HostTaskRecord>(b), operation == HostOpNewTestTask);
      case HostOpAddImage:
        return AddImage(*PointerIn<HostImageRecord>(b));
      case HostOpAddComment:
        if (sink_.comment) sink_.comment(PointerIn<const char>(b));
        return 1;
      case HostOpEndTask:
        finished = a == 1;
        if (sink_.end) sink_.end(finished);
        return 1;
      case HostOpStatusText:
        if (sink_.stage) sink_.stage(PointerIn<const char>(b));
        return 1;
      case HostOpProgress:
        if (sink_.progress) sink_.progress(static_cast<std::int64_t>(a), static_cast<std::int64_t>(b));
        return 1;
      case HostOpSetBackground:
        if (sink_.background) sink_.background(a == 101, static_cast<std::uint32_t>(b));
        return 1;
      default:
        return AnswerUnasked(operation, b);  // there is no user to choose a file, a colour or a page
    }
  }

  std::uint64_t OpenTask(const HostTaskRecord& record, bool test) {
    if (job_.refuseTask || EndRequested()) return Refuse();
    Task task;
    task.width = static_cast<int>(record.width);
    task.height = static_cast<int>(record.height);
    task.depth = static_cast<int>(record.bitsPerPixel);
    task.imageCount = static_cast<int>(record.imageCount);
    task.palette = record.palette;
    task.transparentIndex = record.transparentIndex;
    task.test = test;
    return !sink_.task || sink_.task(task) ? 1 : Decline();
  }

  std::uint64_t AddImage(const HostImageRecord& record) {
    if (job_.refuseImage == static_cast<int>(record.number) + 1 || EndRequested()) return Refuse();
    const LockedImage image(PointerIn<void>(record.image));
    if (!image) return Refuse();
    Image out = image.Describe();
    out.number = static_cast<int>(record.number);
    out.delay = static_cast<int>(record.delay);
    out.delayUnit = job_.paletteFormat ? 10 : 1;
    out.transparentIndex = record.transparentIndex;
    out.standAlone = record.standAlone != 0;
    return Give(out) ? 1 : Decline();
  }

  std::uint64_t Decline() {
    declined = true;
    return Refuse();
  }

  std::uint64_t Refuse() {
    refused = true;
    return 0;
  }

  const Job& job_;
  const Sink& sink_;
};

struct CurrentSession {
  Session* session = nullptr;
};

std::uint64_t HostCall(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  Session* session = CurrentRun().Member<CurrentSession>().session;
  return session ? session->Answer(task, operation, a, b) : 0;
}

// A new run starts with the caller's folders, except where the job says otherwise.
void PrepareRun(const Job& job, const Sink& sink, const FolderOverrides& folders) {
  FolderOverrides own = folders;
  own.settingsFile = job.settingsFile;
  own.perControlFolder = "";
  own.hostWritesSettings = true;
  SetFolderOverrides(std::move(own));
  FailAllocation(job.failAllocation);
  SetRunThreads(job.failAllocation ? 1 : job.threads);
  CurrentRun().WatchRequest(sink.stop);
  SetImageLoader(LoadPicture);
  if (job.loadImage) {
    SetImageLoader([&job](const std::string& path, std::string& error) {
      return PackedDib(HandleOf(job.loadImage(path, error)));
    });
  }
}

// What the job asks of its palette, for the run. One sentence when that is impossible.
std::string PreparePalette(const Job& job) {
  if (job.colours < 2 || job.colours > 256)
    return std::to_string(job.colours) + " colours are not allowed; a palette takes 2 to 256";
  const bool ofDialog = job.palette > Job::Palette::Automatic;  // as controls 13 and 14, which its settings set
  CurrentPaletteRun() = {static_cast<PaletteRun::Kind>(ofDialog ? Job::Palette::Dialog : job.palette), job.colours,
                         static_cast<Dithering>(job.dithering)};
  return {};
}

std::string PixelsOf(const Job& job) {
  if (!job.height) return "a width of " + std::to_string(job.width) + " pixels";
  if (!job.width) return "a height of " + std::to_string(job.height) + " pixels";
  return std::to_string(job.width) + " x " + std::to_string(job.height) + " pixels";
}

// What the canvas made of the text: one sentence, or empty.
std::string CanvasNote(const Job& job) {
  const Canvas& canvas = CurrentCanvas();
  if (canvas.fittedSize)
    return "the text is set at size " + std::to_string(canvas.fittedSize) + ", which fits " + PixelsOf(job);
  return canvas.cropped ? "the text is too large for " + PixelsOf(job) + ", so its edges are cut off" : std::string();
}

std::string Explain(const Job& job, const Session& session, const std::vector<std::string>& messages) {
  if (session.declined) return "the sink ended the run";
  if (session.refused) return messages.empty() ? "the host refused the run" : messages.back();
  // A dialog that cannot be created has no message; a panel fails only when out of memory.
  if (messages.empty()) return kOutOfMemory;
  const std::string& last = messages.back();
  if (last == LoadText(kTextPanelFailed)) return kOutOfMemory;
  if (last != LoadText(kTextMemoryError)) return last;
  if (job.text && job.text->empty()) return "the text is empty; give the words to animate";
  if (CurrentCanvas().tooSmall)
    return "the text does not fit " + PixelsOf(job) +
           " at any size; use a shorter text, less padding or a larger canvas";
  if (FontFamilies().empty()) return "no font is installed; install one, for example the package fonts-liberation";
  return "the effect made no frame: give it more frames or another size, or close other programs if memory is short";
}

// As in PLUGIN16DoBuild: whatever the dialog throws has been reported already, or is std::bad_alloc.
void Perform(const HostCallTable& table) noexcept {
  try {
    RunMainDialog(nullptr, &table);
  } catch (...) {
  }
}

// Every run ends by writing the settings file, so a file of another kind must not be accepted as one. `status` becomes
// Failed for a file that may be one but cannot be read.
std::string SettingsFileTrouble(const std::string& path, SettingsSummary& settings, RenderStatus& status) {
  std::error_code code;
  status = RenderStatus::BadJob;
  if (std::filesystem::is_directory(path, code)) return "'" + path + "' is a folder; name a settings file";
  if (!std::filesystem::exists(path, code)) return {};
  if (!std::filesystem::is_regular_file(path, code))
    return "'" + path + "' is not a regular file; name a settings file";
  std::string why;
  const std::optional<std::string> bytes = ReadWholeFile(path, kLargestFile, &why);
  if (!bytes) {
    status = RenderStatus::Failed;
    return why == kNoMemoryReason ? kOutOfMemory : "the settings file '" + path + "' cannot be read: " + why;
  }
  if (!bytes->empty() && bytes->find("[PlugIn]") == std::string::npos)
    return "'" + path + "' is not a settings file of this program and would be overwritten; name another one";
  settings = SummariseSettings(*bytes);
  return {};
}

// Returns an empty text, or one sentence. When the dialog never opened, the file stays as it is.
std::string WriteSettings(const Job& job, const ScriptedUser& user) {
  if (job.settingsFile.empty() || !user.Values()) return {};
  const std::string_view remark = user.Values()->ForSettings();
  std::string why;
  if (AtomicWriteFile(job.settingsFile, SettingsText(remark), &why)) return {};
  if (why == kNoMemoryReason) return kOutOfMemory;
  return "the settings file '" + job.settingsFile + "' cannot be written; check its folder and the free disk space";
}

// What must hold before a run begins: one sentence, and the status it means. Reads the settings file once for both.
std::string JobTrouble(const Job& job, SettingsSummary& settings, RenderStatus& status) {
  std::string trouble = SettingsFileTrouble(job.settingsFile, settings, status);
  if (!trouble.empty() || (job.threads >= 0 && job.threads <= Workers::kMost)) return trouble;
  status = RenderStatus::BadJob;
  return std::to_string(job.threads) + " threads are not possible; choose 1 to " + std::to_string(Workers::kMost) +
         ", or 0 for as many as the machine has cores";
}

// Opens the dialog in the current run; the user plays, the session answers the plug-in's calls.
void ShowDialog(const Job& job, Session& session, ScriptedUser& user, std::vector<std::string>& messages) {
  UiResponder responder;
  responder.message = [&](Dialog*, const std::string& text, MessageButtons) {
    messages.push_back(text);
    return true;
  };
  SetUiResponder(std::move(responder));
  SetModalDriver([&](Dialog& dialog, int templateId) {
    if (templateId != kMainDialogTemplate.id) return;
    try {
      user.Play(dialog, [&](const PackedDib& sample) { session.TakeSample(sample); });
    } catch (...) {  // thrown by the sink, or std::bad_alloc; rethrown once the plug-in has ended
      session.exception = std::current_exception();
    }
  });
  HostCallTable table{};
  table.version = HostInterfaceVersion;
  table.HostCall = HostCall;
  if (job.paletteFormat) table.hostFlags |= HostFlagPaletteFormat;
  if (job.trueColourFormat) table.hostFlags |= HostFlagTrueColorFormat;
  CurrentRun().Member<CurrentSession>().session = &session;
  Perform(table);
}

std::vector<std::string> NotesOf(const Job& job, const Session& session, const ScriptedUser& user) {
  std::vector<std::string> notes = user.Notes();
  for (std::string note : {session.shortFrames.Note(), CanvasNote(job), MissingNote()}) {
    if (!note.empty()) notes.push_back(std::move(note));
  }
  return notes;
}

// How a run ended, with its sentence.
void SetOutcome(const Job& job, const Session& session, const ScriptedUser& user, RenderResult& result) {
  // A request that arrives after everything has been delivered is too late.
  const bool cancelled = session.cancelled || (EndRequested() && !session.finished);
  const bool wantsFrames = job.action == Job::Action::Build || job.action == Job::Action::Test;
  const bool allocationFailed = job.failAllocation != 0 && AllocationsAsked() >= job.failAllocation;
  if (cancelled) {
    result.status = RenderStatus::Cancelled;
    result.message = "the run was interrupted";
  } else if (!user.Error().empty()) {
    result.status = user.RunFailed() || allocationFailed ? RenderStatus::Failed : RenderStatus::BadJob;
    result.message = user.Error();
  } else if (wantsFrames ? session.finished : user.Played() && !session.refused) {
    result.status = RenderStatus::Done;
  } else {
    result.message = Explain(job, session, result.dialogMessages);
  }
}

}  // namespace

RenderResult Render(const Job& job, const Sink& sink) try {
  RenderResult result;
  SettingsSummary settings;
  RenderStatus status = RenderStatus::BadJob;
  std::string trouble = JobTrouble(job, settings, status);
  const FolderOverrides& folders = CurrentFolderOverrides();
  RunState run;
  const RunScope scope(run);
  if (trouble.empty()) {
    status = RenderStatus::BadJob;
    PrepareRun(job, sink, folders);
    trouble = PrepareText(job);
    if (trouble.empty()) trouble = PreparePalette(job);
    if (trouble.empty()) trouble = PrepareCanvas(job);
  }
  if (!trouble.empty()) {
    result.status = status;
    result.message = std::move(trouble);
    return result;
  }
  Session session(job, sink);
  ScriptedUser user(job, result.dialogMessages, std::move(settings));
  ShowDialog(job, session, user, result.dialogMessages);
  std::string settingsTrouble = WriteSettings(job, user);
  const BlockCounters live = LiveBlocksOf(run);
  result.blocks = live.blocks;
  result.locks = live.locks;
  result.images = session.images;
  result.notes = NotesOf(job, session, user);
  if (session.exception) std::rethrow_exception(session.exception);
  SetOutcome(job, session, user, result);
  if (result.status == RenderStatus::Done && !settingsTrouble.empty()) {
    result.status = RenderStatus::Failed;
    result.message = std::move(settingsTrouble);
  }
  return result;
} catch (const std::bad_alloc&) {
  RenderResult result;
  try {
    result.message = kOutOfMemory;
  } catch (const std::bad_alloc&) {  // a failed run with an empty message means the same
  }
  return result;
}

}  // namespace glyphmotion
