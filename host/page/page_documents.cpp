// SPDX-License-Identifier: MIT
// Documents of a session: each state is one, and what a document becomes is the command line's affair.
#include <filesystem>

#include "effects/effect_table.h"
#include "glyphmotion/version.h"
#include "host/encoders/dib_reader.h"
#include "host/page/command_words.h"
#include "host/page/event_fields.h"
#include "host/page/page_session.h"
#include "host/render/file_values.h"
#include "host/render/job_text.h"
#include "host/render/render_user.h"
#include "platform/encoding.h"
#include "platform/files.h"
#include "platform/text_engine.h"
#include "shell/documents.h"
#include "shell/main_controls.h"
#include "shell/sample.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

constexpr const char* kUntitled = "untitled.gm4";
constexpr std::size_t kLongestName = 200;  // bytes

std::string FileName(const std::string& path) { return std::filesystem::path(path).filename().string(); }

}  // namespace

void PageSession::BeginDocument(Dialog& dialog) {
  Pump(dialog);
  Apply(dialog, {}, true);
  blank_ = DocumentText(dialog);
  name_ = kUntitled;
  std::optional<std::string> bytes;
  if (!start_.path.empty()) {
    bytes = ReadWholeFile(start_.path);
    if (!bytes) Notice("'" + start_.path + "' cannot be opened; check its name");
  }
  document_ = blank_;
  savedDocument_ = blank_;
  const auto kept = store_.TakeUp(start_.key);
  if (kept && OpenText(dialog, kept->name, kept->path, kept->document, false, &kept->options)) {
  } else if (!bytes || !OpenText(dialog, FileName(start_.path), start_.path, *bytes)) {
    NewDocument(dialog);
  }
  Snapshot();
}

void PageSession::Snapshot() {
  greeted_ = true;
  Json effects = Json::array();
  for (int i = 0; i < kEffectCount; ++i) effects.push_back(EffectRow(i).name);
  Send({{"type", "hello"},
        {"version", GLYPHMOTION_VERSION},
        {"session", start_.key},
        {"effects", std::move(effects)},
        {"looks", start_.looks},
        {"formats", ExportFormats()},
        {"fountains", ShippedFountainFacts()},
        {"recent", store_.Recent()},
        {"rescued", store_.Rescued()}});
  Send({{"type", "options"}, {"options", options_.Facts()}});
  mirror_.Snapshot();
  if (Dialog* main = mirror_.Main()) {
    SendStill(*main);
    SendDocument(*main);
  }
  if (isSeen_) {
    for (Json& notice : unseen_) Send(std::move(notice));
    unseen_.clear();
  }
  RequestBuild();
}

// A new state has come about: undo knows it, the page sees it, the animation follows.
void PageSession::Settle(Dialog& dialog) {
  if (!std::exchange(touched_, false)) return;
  DropUnusedFont(dialog);
  std::string now = DocumentText(dialog), options = options_.Lines();
  if (now == document_ && options == settledOptions_) return;
  document_ = std::move(now);
  settledOptions_ = std::move(options);
  if (tag_ != "history") history_.Record(document_ + settledOptions_, tag_);
  ++revision_;
  mirror_.Flush();
  ReadFacts(dialog);
  KeepUnsaved();  // what the page shows as the document outlives a kill
  SendDocument(dialog);
  RequestBuild();
  SendStill(dialog);  // of a long text it takes a second or two
}

void PageSession::SendStill(Dialog& dialog) {
  const PackedDib sample = RenderSample(dialog);
  const LockedBlock<std::uint8_t> bytes(sample.Handle());
  const DibPixels dib = bytes ? ReadDib({bytes.get(), BlockSize(sample.Handle())}) : DibPixels{};
  PageMessage message{{{"type", "still"}, {"revision", revision_}, {"width", dib.width}, {"height", dib.height}}, {}};
  if (dib) UnpackRgba(dib, -1, message.payload);
  send_(std::move(message));
}

void PageSession::ReadFacts(const Dialog& dialog) {
  text_ = UnguardedText(GetText(dialog, ControlId::Text));
  effect_ = GetText(dialog, ControlId::Effect);
  transparent_ = GetCheck(dialog, MainControl::Transparent);
  bold_ = GetCheck(dialog, ControlId::Bold);
  italic_ = GetCheck(dialog, ControlId::Italic);
}

void PageSession::SendDocument(Dialog& dialog) {
  ReadFacts(dialog);
  Send({{"type", "document"},
        {"name", name_},
        {"path", path_},
        {"saved", IsSaved()},
        {"undo", history_.CanUndo()},
        {"redo", history_.CanRedo()},
        {"revision", revision_},
        {"text", text_},
        {"effect", effect_},
        {"font", FileName(options_.FontFile())},
        {"command", CommandFor(dialog, blank_, document_, OptionWords(PictureOptions::Use::File), name_)}});
}

void PageSession::SendLists() { Send({{"type", "lists"}, {"recent", store_.Recent()}, {"rescued", store_.Rescued()}}); }

void PageSession::RequestBuild() {
  if (!greeted_) return;
  if (text_.empty()) return beside_->CancelBuild();
  beside_->Build({revision_, document_, OptionWords(PictureOptions::Use::Stage), changed_});
}

// The dialog's own sample follows the options, too: they are members of this run.
bool PageSession::TakeOptions(PictureOptions options) {
  std::vector<std::string> words = options.Words(PictureOptions::Use::Stage);
  words.insert(words.end(), {"-o", scratch_.Path() + "/options.gif"});
  std::string error;
  const std::optional<Job> job = services_.job(words, error);
  if (job) error = PrepareText(*job);
  if (job && error.empty()) error = PrepareCanvas(*job);
  if (!error.empty()) {
    Notice(error);
    if (const std::optional<Job> old = services_.job(OptionWords(PictureOptions::Use::Stage), error)) PrepareText(*old);
    return false;
  }
  options_ = std::move(options);
  Send({{"type", "options"}, {"options", options_.Facts()}});
  return true;
}

// The document's lines with its font, which the dialog itself leaves as it is.
void PageSession::TakeLines(Dialog& dialog, const std::string& lines) {
  TakeDocumentText(dialog, lines);
  const std::string font = SummariseDocumentText(lines).font;
  if (!font.empty() && HasFontFamily(font)) ChooseFont(dialog, font);
  Pump(dialog);
}

// Options of the command line as the scripted user of a render sets them. As defaults: what the program's own formats
// begin with.
bool PageSession::Apply(Dialog& dialog, const std::vector<std::string>& words, bool asDefaults) {
  std::vector<std::string> all = words;
  all.insert(all.end(), {"-o", scratch_.Path() + "/applied.gif"});
  std::string error;
  std::optional<Job> job = services_.job(all, error);
  if (!job) return Notice(error), false;
  job->action = Job::Action::None;
  if (!asDefaults) job->defaults.clear();
  std::vector<std::string> heard;
  ScriptedUser user(*job, heard, SettingsSummary());
  heard_ = &heard;
  user.Play(dialog, nullptr);
  heard_ = nullptr;
  if (!user.Error().empty()) Notice(user.Error());
  return user.Error().empty();
}

void PageSession::NewDocument(Dialog& dialog) {
  TakeLines(dialog, LinesThatDiffer(document_, blank_));
  Apply(dialog, start_.words, false);
  name_ = kUntitled;
  path_.clear();
  document_ = DocumentText(dialog);
  savedDocument_ = document_;
  TakeOptions({});
  optionsOfLook_.clear();
  savedOptions_ = settledOptions_ = options_.Lines();
  history_.Begin(document_);
  store_.DropUnsaved(start_.key);
  ++revision_;
  SendStill(dialog);
  SendDocument(dialog);
  RequestBuild();
}

bool PageSession::OpenText(Dialog& dialog, const std::string& name, const std::string& path,
                           const std::string& document, bool saved, const std::string* options) {
  const std::string own = FileName(name), folder = scratch_.Path() + "/opened/";
  std::error_code code;
  std::filesystem::create_directory(folder, code);
  const std::string file = folder + (own.empty() || own.size() > kLongestName ? kUntitled : own);
  if (!WriteScratchFile(file, document)) return Notice("there is no room for the document; is the disk full?"), false;
  // First what is beside it: its font may be that of a file.
  const PictureOptions before = options_;
  const std::string beside = options ? *options : store_.OptionsOf(document);
  TakeOptions(WithoutLostFont(PictureOptions::OfLines(beside)));
  TakeLines(dialog, LinesThatDiffer(document_, blank_));
  const bool opened = Apply(dialog, {"--document", file}, true);
  if (!opened) {
    TakeOptions(before);
    TakeLines(dialog, LinesThatDiffer(DocumentText(dialog), document_));
    return false;
  }
  name_ = name.empty() ? kUntitled : name;
  path_ = path;
  document_ = DocumentText(dialog);
  savedDocument_ = saved ? document_ : std::string();
  if (beside.empty()) TakeOptions(PictureOptions::OfLines(store_.OptionsOf(document_)));
  optionsOfLook_.clear();
  savedOptions_ = settledOptions_ = options_.Lines();
  history_.Begin(document_ + settledOptions_);
  ++revision_;
  SendStill(dialog);
  SendDocument(dialog);
  KeepUnsaved();
  if (saved) store_.Remember(Kept());
  SendLists();
  RequestBuild();
  return true;
}

void PageSession::OpenKept(Dialog& dialog, const std::string& key) {
  const auto kept = store_.Find(key);
  if (!kept) return Notice("this document is no longer kept");
  OpenText(dialog, kept->name, kept->path, kept->document, !key.starts_with("unsaved/"), &kept->options);
}

KeptDocument PageSession::Kept() const { return {name_, path_, document_, text_, effect_, options_.Lines()}; }

void PageSession::Export(const Json& event) {
  const std::string format = TextIn(event, "format");
  std::vector<std::string> words = OptionWords(PictureOptions::Use::File, ExtensionOf(format));
  if (transparent_ && HasAlpha(format)) words.push_back("--alpha");
  const auto built = options_.ChangeFile() ? std::nullopt : std::optional(revision_);
  beside_->Export({++exported_, TextIn(event, "tag"), format, name_, document_, std::move(words)}, built);
}

void PageSession::KeepUnsaved() {
  if (IsSaved()) return store_.DropUnsaved(start_.key);
  const bool kept = store_.KeepUnsaved(start_.key, Kept());
  if (!kept && !std::exchange(saidUnkept_, true))
    Notice("this document will be lost if the program ends; save it, and free some disk space");
  if (kept) saidUnkept_ = false;
}

void PageSession::Save(Dialog& dialog, const Json& event) {
  if (path_.empty() || FlagIn(event, "copy")) {
    PageMessage message{
        {{"type", "file"}, {"name", name_}, {"mime", "application/octet-stream"}, {"for", TextIn(event, "tag")}},
        {document_.begin(), document_.end()}};
    send_(std::move(message));
  } else if (!AtomicWriteFile(path_, document_)) {
    return Notice("'" + path_ + "' cannot be written; check its folder");
  } else {
    Notice("Saved " + path_, "info");
  }
  savedDocument_ = document_;
  savedOptions_ = settledOptions_;
  store_.DropUnsaved(start_.key);
  store_.Remember(Kept());
  SendDocument(dialog);
  SendLists();
}

}  // namespace glyphmotion
