// SPDX-License-Identifier: MIT
// The host's side of the contract. The plug-in may be anyone's: every size is checked before a byte is read, and
// malformed input is refused. Only invalid pointers cannot be caught.
#include "host/windows/host_calls.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <set>

#include "host/windows/desktop.h"
#include "host/windows/picture_file.h"
#include "image/packed_dib.h"
#include "platform/encoding.h"
#include "platform/win32/wide_text.h"
#include "shell/host_arguments.h"
#include "shell/operation_names.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kPathBuffer = 261, kLongestText = 4096;
constexpr int kFileDialogWidth = 720, kFileDialogHeight = 500;  // at 96 dpi

std::string TextIn(std::uint64_t value) {
  const auto* text = PointerIn<const char>(value);
  return text ? TextFromBytes(std::string_view(text, strnlen(text, kLongestText))) : std::string();
}

/// The owner that the plug-in names, or the foreground window if that is invalid.
HWND WindowOr(HWND named) { return IsWindow(named) ? named : GetActiveWindow(); }

/// A plug-in's block, locked during a call. Exposes only as many bytes as the picture has.
class LockedPicture {
 public:
  explicit LockedPicture(HGLOBAL block) : block_(block) {
    const std::size_t size = block ? GlobalSize(block) : 0;
    if (size < sizeof(DibHeader)) return;
    const auto* bytes = static_cast<const std::uint8_t*>(GlobalLock(block));
    if (!bytes) return;
    locked_ = true;
    DibHeader header;
    std::memcpy(&header, bytes, sizeof header);
    const std::size_t wanted = DibSize(header.biWidth, header.biHeight, header.biBitCount);
    bytes_ = {bytes, wanted ? std::min(size, wanted) : sizeof header};
  }
  LockedPicture(const LockedPicture&) = delete;
  LockedPicture& operator=(const LockedPicture&) = delete;
  ~LockedPicture() {
    if (locked_) GlobalUnlock(block_);
  }
  std::span<const std::uint8_t> Bytes() const { return bytes_; }

 private:
  HGLOBAL block_;
  bool locked_ = false;
  std::span<const std::uint8_t> bytes_;
};

class Session {
 public:
  Session(const PluginLibrary& plugin, const RunSettings& settings, const RunWatcher& watcher)
      : plugin_(plugin),
        settings_(settings),
        watcher_(watcher),
        // Without a palette format the dialog counts delays in milliseconds.
        receiver_(settings.hostFlags & HostFlagPaletteFormat ? 10 : 1) {}

  std::uint64_t Answer(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) noexcept try {
    if (operation == HostOpAddImage) return AddImage(task, b);
    Record(operation, a, b, {});
    return Dispatch(task, operation, a, b);
  } catch (const std::exception&) {  // out of memory: refused
    return 0;
  }

  /// Counts the blocks passed over the boundary that are still alive.
  void CountBlocks(RenderResult& left) const {
    for (const HGLOBAL block : blocks_) {
      const UINT flags = GlobalFlags(block);
      if (flags == GMEM_INVALID_HANDLE) continue;
      ++left.blocks;
      left.locks += flags & GMEM_LOCKCOUNT;
    }
  }

 private:
  void Record(std::uint32_t operation, std::uint64_t a, std::uint64_t b, std::span<const std::uint8_t> picture) {
    if (!settings_.recorder) return;
    HostCallEvent event;
    event.operation = operation;
    event.a = a;
    event.b = b;
    event.name = OperationName(operation);
    std::string text;
    if (operation == HostOpAddComment || operation == HostOpStatusText) text = TextIn(b);
    event.text = text.c_str();
    if (operation == HostOpNewTask || operation == HostOpNewTestTask)
      event.record = BytesOf(PointerIn<const HostTaskRecord>(b));
    if (operation == HostOpAddImage) event.record = BytesOf(PointerIn<const HostImageRecord>(b));
    event.image = picture;
    settings_.recorder->Call(event);
  }

  std::uint64_t Dispatch(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
    switch (operation) {
      case HostOpNewTask:
      case HostOpNewTestTask:
        return OpenTask(PointerIn<const HostTaskRecord>(b), operation == HostOpNewTestTask);
      case HostOpAddComment:
        return receiver_.AddComment(task, PointerIn<const char>(b));
      case HostOpEndTask:
        return EndTask(task, a == 1);
      case HostOpSetBackground:
        return receiver_.SetBackground(task, a, b);
      case HostOpChooseImageFile:
        return ChooseImageFile(PointerIn<void>(a), PointerIn<char>(b));
      case HostOpLoadImage:
        return LoadImageFile(TextIn(b));
      case HostOpShowHelp:
        return OpenHelp(GetActiveWindow(), plugin_.Folder(), TextIn(b));
      case HostOpStatusText:
        watcher_.stage(TextIn(b));
        return 1;
      case HostOpProgress:
        watcher_.progress(static_cast<std::int64_t>(a), static_cast<std::int64_t>(b));
        return 1;
      case HostOpPickColor:
        return PickColour(PointerIn<HostColorPickRecord>(b));
      case HostOpIsRegistered:
        return 1;
      case HostOpBeforeWork:
        watcher_.beforeWork();
        return 1;
      case HostOpGetFileDialogSize:
        return TellFileDialogSize(PointerIn<std::int32_t>(b));
      default:
        return 0;
    }
  }

  std::uint64_t OpenTask(const HostTaskRecord* record, bool test) {
    if (!receiver_.Open(record, test)) return 0;
    dialog_ = PointerIn<HWND__>(record->ownerWindow);
    return 1;
  }

  std::uint64_t AddImage(const void* task, std::uint64_t b) {
    const auto* record = PointerIn<const HostImageRecord>(b);
    const bool whole = record && record->size >= sizeof *record;
    const HGLOBAL block = whole ? PointerIn<void>(record->image) : nullptr;
    const LockedPicture picture(block);
    if (!picture.Bytes().empty()) blocks_.insert(block);
    Record(HostOpAddImage, 0, b, picture.Bytes());
    return receiver_.AddImage(task, record, picture.Bytes());
  }

  std::uint64_t EndTask(const void* task, bool finished) {
    if (std::optional<Animation> animation = receiver_.End(task, finished))
      watcher_.finished(std::move(*animation), IsWindow(dialog_) ? dialog_ : nullptr);
    return 1;
  }

  // Paths cross the boundary in UTF-8.
  std::uint64_t ChooseImageFile(void* owner, char* buffer) const {
    if (!buffer) return 0;
    const HWND window = WindowOr(static_cast<HWND>(owner));
    const auto path = AskPicture(window);
    if (!path) return 0;
    if (path->size() >= kPathBuffer) {
      watcher_.failed(window,
                      "the path of this picture is too long for the plug-in; copy it to a folder near the root");
      return 0;
    }
    std::memcpy(buffer, path->c_str(), path->size() + 1);
    return 1;
  }

  std::uint64_t LoadImageFile(const std::string& path) {
    if (path.empty()) return 0;
    const HGLOBAL block = LoadPictureFile(path);
    if (block) {
      blocks_.insert(block);
    } else {
      watcher_.failed(GetActiveWindow(),
                      "'" + path + "' is not a readable picture; choose one of at most 8192 x 8192 pixels");
    }
    return reinterpret_cast<std::uint64_t>(block);
  }

  static std::uint64_t PickColour(HostColorPickRecord* record) {
    if (!record || record->size < sizeof *record) return 0;
    const auto* entries = reinterpret_cast<const Rgb*>(record->palette);
    const auto chosen = AskColour(WindowOr(PointerIn<HWND__>(record->ownerWindow)), record->color,
                                  {entries, std::size_t{entries ? 256u : 0u}});
    if (!chosen) return 0;
    record->color = *chosen;
    return 1;
  }

  static std::uint64_t TellFileDialogSize(std::int32_t* size) {
    if (!size) return 0;
    size[0] = Scaled(kFileDialogWidth);
    size[1] = Scaled(kFileDialogHeight);
    return 1;
  }

  const PluginLibrary& plugin_;
  const RunSettings& settings_;
  const RunWatcher& watcher_;
  TaskReceiver receiver_;
  HWND dialog_ = nullptr;
  std::set<HGLOBAL> blocks_;
};

Session* current = nullptr;

std::uint64_t HostCall(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  return current ? current->Answer(task, operation, a, b) : 0;
}

}  // namespace

RunOutcome RunPlugin(const PluginLibrary& plugin, const RunSettings& settings, const RunWatcher& watcher) {
  Session session(plugin, settings, watcher);
  HostCallTable table{};
  table.version = HostInterfaceVersion;
  table.skinSwitch = settings.skin;
  table.HostCall = HostCall;
  table.hostFlags = settings.hostFlags;
  RunOutcome outcome;
  current = &session;
  outcome.ran = plugin.doBuild(settings.owner, &table) == 1;
  current = nullptr;
  session.CountBlocks(outcome.left);
  return outcome;
}

}  // namespace glyphmotion
