// SPDX-License-Identifier: MIT
#include "host/page/page_session.h"

#include <cstring>
#include <new>

#include "glyphmotion/host_contract.h"
#include "host/page/event_fields.h"
#include "materials/colour_text.h"
#include "platform/dialog_driver.h"
#include "platform/folders.h"
#include "platform/run_state.h"
#include "platform/text_engine.h"
#include "resources/templates.h"
#include "shell/host_arguments.h"
#include "shell/main_dialog.h"

namespace glyphmotion {
namespace {

constexpr int kIdle = 60000;  // milliseconds
constexpr std::size_t kPathBuffer = 261;
constexpr int kPositionField = 100, kOk = 1;
constexpr int kMostUploads = 8;  // the last ones are kept

/// A run's: host calls come without a word of whose they are.
struct CurrentPage {
  PageSession* session = nullptr;
};

}  // namespace

PageSession::PageSession(const PageServices& services, DocumentStore& store, Start start, SendMessage send)
    : services_(services),
      store_(store),
      start_(std::move(start)),
      send_([this, send = std::move(send)](PageMessage message) {
        if (greeted_) send(std::move(message));
      }),
      mirror_(send_),
      isSeen_(start_.listens) {}

PageSession::~PageSession() = default;

std::string PageSession::Upload(const std::string& bytes) {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::string name = "picture" + std::to_string(uploaded_++ % kMostUploads);
  const std::string path = scratch_.Path() + "/" + name;
  if (!WriteScratchFile(path, bytes)) return {};
  uploads_[name] = path;
  return name;
}

void PageSession::Run() {
  beside_.emplace(WorkPlace{services_, send_, scratch_.Path()});
  {
    FolderOverrides folders = CurrentFolderOverrides();
    folders.settingsFile = "";
    folders.perControlFolder = "";
    RunState run;
    const RunScope scope(run);
    SetFolderOverrides(std::move(folders));
    SetModalDriver([this](Dialog& dialog, int templateId) { Drive(dialog, templateId); });
    SetDialogObserver([this](Dialog& dialog, const DialogChange& change) { Observe(dialog, change); });
    SetUiResponder(Responder());
    run.Member<CurrentPage>().session = this;
    HostCallTable table{};
    table.version = HostInterfaceVersion;
    table.HostCall = HostEntry;
    table.hostFlags = HostFlagPaletteFormat;
    RunMainDialog(nullptr, &table);
  }
  beside_.reset();
}

void PageSession::Observe(Dialog& dialog, const DialogChange& change) {
  if (change.what != DialogChange::Created && change.what != DialogChange::Ended) mirror_.Changed(dialog, change);
}

void PageSession::Drive(Dialog& dialog, int templateId) {
  if (templateId == kMarkerPositionDialogTemplate.id && position_) {
    Type(dialog, kPositionField, std::to_string(*std::exchange(position_, {})));
    Click(dialog, kOk);
    return;
  }
  FireTimersByTheClock();
  mirror_.Opened(dialog, templateId);
  if (templateId == kMainDialogTemplate.id) BeginDocument(dialog);
  while (!events_.Ended() && !HasEnded(dialog)) {
    Pump(dialog);
    if (mirror_.Level() == 1 && !HasEnded(dialog)) Settle(dialog);
    mirror_.Flush();
    if (HasEnded(dialog)) break;
    const int timer = MillisecondsToNextTimer();
    const auto event = events_.Next(timer < 0 ? kIdle : timer);
    if (!event) continue;
    changed_ = std::chrono::steady_clock::now();
    try {
      Handle(dialog, *event);
    } catch (const std::bad_alloc&) {
      Notice("there is not enough memory; try a smaller size or fewer frames");
    }
  }
  mirror_.Closed();
}

// --- Questions ---

Json PageSession::Ask(const char* kind, Json question) {
  const int number = ++asked_;
  question["type"] = "ask";
  question["ask"] = number;
  question["kind"] = kind;
  mirror_.Flush();
  Send(question);
  Json answer;
  for (bool answered = false; !answered && !events_.Ended();) {
    const auto event = events_.Next(kIdle);
    if (!event) continue;
    if (!event->is_object()) continue;
    const std::string op = TextIn(*event, "op");
    if (op == "snapshot") {
      Snapshot();
      Send(question);
    }
    if (op != "answer" || NumberIn(*event, "ask") != number) continue;
    answer = event->value("value", Json());
    answered = true;
  }
  Send({{"type", "answered"}, {"ask", number}});
  return answer;
}

std::optional<std::uint32_t> PageSession::AskForColour(std::uint32_t start) {
  if (colour_) return std::exchange(colour_, {});
  const Json answer = Ask("colour", {{"start", HexColour(start)}});
  const std::int64_t colour = answer.is_string() ? ColourOfHex(answer.get<std::string>()) : -1;
  if (colour < 0) return std::nullopt;
  return static_cast<std::uint32_t>(colour);
}

UiResponder PageSession::Responder() {
  UiResponder responder;
  responder.message = [this](Dialog*, const std::string& text, MessageButtons buttons) {
    if (heard_) {
      heard_->push_back(text);
      return true;
    }
    const Json answer = Ask(buttons == MessageButtons::Ok ? "message" : "question", {{"text", text}});
    return buttons == MessageButtons::Ok || answer == Json(true);
  };
  responder.colour = [this](Dialog*, std::uint32_t start) { return AskForColour(start); };
  responder.name = [this](Dialog*, const std::string& title, const std::string& start) -> std::optional<std::string> {
    const Json answer = Ask("name", {{"title", title}, {"start", start}});
    if (!answer.is_string()) return std::nullopt;
    return answer.get<std::string>();
  };
  responder.menu = [this](Dialog*, std::span<const MenuItem> items) {
    Json list = Json::array();
    for (const MenuItem& item : items)
      list.push_back({{"id", item.id}, {"text", item.text}, {"checked", item.checked}});
    const Json answer = Ask("menu", {{"items", std::move(list)}});
    return answer.is_number_integer() ? answer.get<int>() : 0;
  };
  return responder;
}

void PageSession::Notice(const std::string& sentence, const char* kind) {
  // A document that was opened has a copy of the same name in the scratch folder.
  std::string text = sentence;
  const std::string folder = scratch_.Path() + "/opened/";
  for (std::size_t at = text.find(folder); at != std::string::npos; at = text.find(folder))
    text.erase(at, folder.size());
  Json notice = {{"type", "notice"}, {"kind", kind}, {"text", text}};
  if (!isSeen_ || !greeted_) unseen_.push_back(notice);
  Send(std::move(notice));
}

// --- The host's side ---

std::uint64_t PageSession::HostEntry(void*, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  try {
    PageSession* session = CurrentRun().Member<CurrentPage>().session;
    return session ? session->HostCall(operation, a, b) : 0;
  } catch (...) {  // out of memory: the dialog takes no answer for no
    return 0;
  }
}

std::uint64_t PageSession::HostCall(std::uint32_t operation, std::uint64_t, std::uint64_t b) {
  switch (operation) {
    case HostOpPickColor: {
      auto* record = PointerIn<HostColorPickRecord>(b);
      const auto colour = AskForColour(record->color);
      if (colour) record->color = *colour;
      return colour.has_value();
    }
    case HostOpChooseImageFile: {
      const Json answer = Ask("picture", Json::object());
      const std::lock_guard<std::mutex> lock(mutex_);
      const auto upload = answer.is_string() ? uploads_.find(answer.get<std::string>()) : uploads_.end();
      if (upload == uploads_.end() || upload->second.size() >= kPathBuffer) return 0;
      std::memcpy(PointerIn<char>(b), upload->second.c_str(), upload->second.size() + 1);
      return 1;
    }
    case HostOpLoadImage: {
      std::string error;
      PackedDib picture = services_.picture(PointerIn<const char>(b), error);
      if (!picture) Notice(error);
      return reinterpret_cast<std::uintptr_t>(picture.Release());
    }
    case HostOpShowHelp:
      Send({{"type", "help"}, {"topic", std::string(PointerIn<const char>(b))}});
      return 1;
    default:
      return AnswerUnasked(operation, b);
  }
}

}  // namespace glyphmotion
