// SPDX-License-Identifier: MIT
// One dialog in memory as messages for a page (docs/page-protocol.md), without a transport. The dialog runs on the
// session's own thread, in the modal driver, which waits for events and for timers.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/page/dialog_mirror.h"
#include "host/page/document_history.h"
#include "host/page/document_store.h"
#include "host/page/event_queue.h"
#include "host/page/page_services.h"
#include "host/page/picture_options.h"
#include "host/page/scratch.h"
#include "host/page/work_beside.h"
#include "platform/shell_ui.h"

namespace glyphmotion {

class PageSession {
 public:
  struct Start {
    std::string key;                 ///< names the session: letters and digits
    std::string path;                ///< a document to open first; empty: none
    std::vector<std::string> words;  ///< options of the command line that a new document begins with
    Json looks = Json::array();      ///< what the page offers as looks: {name, about}
    bool listens = false;            ///< the page hears the first message; otherwise it asks for a snapshot
  };

  PageSession(const PageServices& services, DocumentStore& store, Start start, SendMessage send);
  ~PageSession();
  PageSession(const PageSession&) = delete;
  PageSession& operator=(const PageSession&) = delete;

  /// Runs the dialog on the calling thread, until End or until the dialog ends itself.
  void Run();
  /// From any thread; both return at once.
  void Post(Json event) { events_.Post(std::move(event)); }
  void End() { events_.End(); }
  /// Keeps the bytes of a picture that the page was given, for the answer to a question; its name.
  std::string Upload(const std::string& bytes);

 private:
  // --- page_session.cpp: the dialogs, questions, the host's side
  void Drive(Dialog& dialog, int templateId);
  void Observe(Dialog& dialog, const DialogChange& change);
  Json Ask(const char* kind, Json question);
  UiResponder Responder();
  std::optional<std::uint32_t> AskForColour(std::uint32_t start);
  std::uint64_t HostCall(std::uint32_t operation, std::uint64_t a, std::uint64_t b);
  static std::uint64_t HostEntry(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b);
  void Send(Json message) { send_({std::move(message), {}}); }
  void Notice(const std::string& text, const char* kind = "error");

  // --- page_events.cpp: what a person does
  void Handle(Dialog& dialog, const Json& event);
  bool HandleControl(Dialog& dialog, const std::string& op, const Json& event);
  bool HandleDocument(Dialog& dialog, const std::string& op, const Json& event);
  void SetColour(Dialog& dialog, const Json& event);
  void SetMarker(Dialog& dialog, const Json& event);
  void SetDirection(Dialog& dialog, const Json& event);
  void ChooseEffect(Dialog& dialog, const Json& event);
  bool IsLook(const std::string& name) const;
  void WishPictures(const Json& event);
  void SubscribeFace(Dialog& dialog, const Json& event);
  void SetOption(const Json& event);
  bool TakeOptions(PictureOptions options);
  void ApplyLook(Dialog& dialog, const std::string& look);

  // --- page_fonts.cpp: the letters' own font file
  void SetFont(Dialog& dialog, const Json& event);
  void ChooseFont(Dialog& dialog, const std::string& family);
  void DropUnusedFont(const Dialog& dialog);
  PictureOptions WithoutLostFont(PictureOptions options);
  std::vector<std::string> OptionWords(PictureOptions::Use use, std::string_view extension = ".gif") const;

  // --- page_documents.cpp: documents, their history, files
  void BeginDocument(Dialog& dialog);
  void Settle(Dialog& dialog);
  void SendStill(Dialog& dialog);
  void ReadFacts(const Dialog& dialog);
  void SendDocument(Dialog& dialog);
  void SendLists();
  void RequestBuild();
  bool IsSaved() const { return document_ == savedDocument_ && options_.Lines() == savedOptions_; }
  void Snapshot();
  bool Apply(Dialog& dialog, const std::vector<std::string>& words, bool asDefaults);
  void TakeLines(Dialog& dialog, const std::string& lines);
  void NewDocument(Dialog& dialog);
  bool OpenText(Dialog& dialog, const std::string& name, const std::string& path, const std::string& document,
                bool saved = true, const std::string* options = nullptr);
  void OpenKept(Dialog& dialog, const std::string& key);
  void Save(Dialog& dialog, const Json& event);
  void Export(const Json& event);
  void KeepUnsaved();
  KeptDocument Kept() const;

  const PageServices& services_;
  DocumentStore& store_;
  const Start start_;
  const SendMessage send_;
  ScratchFolder scratch_;
  DialogMirror mirror_;
  std::optional<WorkBeside> beside_;
  EventQueue events_;

  std::mutex mutex_;
  std::map<std::string, std::string> uploads_;  ///< name to path; under the mutex, with their number
  int uploaded_ = 0;

  // The dialog's thread alone.
  int asked_ = 0;
  std::optional<std::uint32_t> colour_;        ///< answers the next question for a colour
  std::optional<int> position_;                ///< answers the next marker dialog
  std::vector<std::string>* heard_ = nullptr;  ///< while a script plays: what message boxes said
  DocumentHistory history_;
  std::string blank_;                     ///< the document of a dialog as it opens
  std::string document_, savedDocument_;  ///< current, and as it was saved or opened
  PictureOptions options_;                ///< beside the document, with it in the history
  std::string settledOptions_, savedOptions_;
  std::map<std::string, std::string> optionsOfLook_;  ///< what the last look has set
  std::string name_, path_, text_, effect_;
  int revision_ = 0;
  std::chrono::steady_clock::time_point changed_{};  ///< when the last event came
  bool touched_ = false, saidUnkept_ = false, transparent_ = false, bold_ = false, italic_ = false;
  bool greeted_ = false;      ///< the first message, hello, is out; what comes earlier is part of it
  bool isSeen_ = false;       ///< a page has had a snapshot
  std::vector<Json> unseen_;  ///< notices from before
  int exported_ = 0;
  std::string tag_;
};

}  // namespace glyphmotion
