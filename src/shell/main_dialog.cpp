// SPDX-License-Identifier: MIT
// The dialog's state is in its controls; kept here are only the host's table and what a control does not show. From top
// to bottom: the host, options and their constraints, registration, help and runs, the start, the commands.
#include "shell/main_dialog.h"

#include <algorithm>
#include <string>
#include <utility>

#include "controls/editor_services.h"
#include "controls/families.h"
#include "controls/fountain_control.h"
#include "controls/fountain_library_dialog.h"
#include "controls/gradient_dialog.h"
#include "controls/material_control.h"
#include "controls/read_controls.h"
#include "controls/skin.h"
#include "controls/texture_dialog.h"
#include "controls/tile_dialog.h"
#include "effects/effect_table.h"
#include "image/fixed_palettes.h"
#include "platform/encoding.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "platform/text_engine.h"
#include "resources/strings.h"
#include "resources/templates.h"
#include "shell/about_animation.h"
#include "shell/about_box.h"
#include "shell/build_driver.h"
#include "shell/document_menu.h"
#include "shell/effect_panels.h"
#include "shell/help_topics.h"
#include "shell/main_controls.h"
#include "shell/registration.h"
#include "shell/sample_window.h"
#include "shell/settings.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

using namespace MainControl;

constexpr int kSampleTimer = 15, kAboutTimer = 16;
constexpr int kBestPaletteItem = kFixedPaletteCount;  // in the Palette combo
constexpr int kTextLimit = 260, kTitleLimit = 260;
constexpr int kFirstOptionOfTheSample = 50;  // options with lower ids do not affect the sample
constexpr const char* kHelpPage = "TLMPLGM4.HTML";
constexpr const char* kHelpTopic = "PREFACE";
constexpr std::size_t kPathBuffer = 261;  // size of the buffer for a host's path

struct MainDialogState {
  const HostCallTable* hostCalls = nullptr;
  bool settingsLoaded = false;  ///< what was not loaded must not be saved
  int effect = -1;              // the effect of the visible panel
  bool repaintPosted = false;
  bool running = false;            // a Build or a Test
  std::uint32_t fixedPalette = 0;  // number of the last fixed palette
  AboutLetters aboutLetters;
  unsigned aboutTick = 0;
};

// Belongs to a run, which has one main dialog.
MainDialogState& State() { return CurrentRun().Member<MainDialogState>(); }

// --- The host ---

std::uint64_t CallHost(std::uint32_t operation, std::uint64_t a = 0, std::uint64_t b = 0) {
  return State().hostCalls && State().hostCalls->HostCall ? State().hostCalls->HostCall(nullptr, operation, a, b) : 0;
}

std::uint64_t AddressOf(const void* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }

bool HostHas(std::uint32_t flag) { return (State().hostCalls->hostFlags & flag) != 0; }

// --- Options ---

void Report(Dialog& dialog, int text) { ShowMessage(&dialog, LoadText(text)); }

void RepaintSample(Dialog& dialog) {
  if (std::exchange(State().repaintPosted, true)) return;
  Post(dialog, {kMessageRepaintSample, 0, 0});
}

// While the user types, the sample waits for a pause.
void RepaintSampleLater(Dialog& dialog) {
  SetTimer(dialog, kSampleTimer, static_cast<int>(std::min(NumberVariable("UpdateDelay"), 60000u)));
}

void Store(Dialog& dialog, int id) { SendToControl(dialog, id, {kMessageStoreControl, 0, 0}); }

void SetCheckAndStore(Dialog& dialog, int id, bool checked) {
  SetCheck(dialog, id, checked);
  Store(dialog, id);
}

void SetDelays(Dialog& dialog, int delay, int pause) {
  SetNumber(dialog, ControlId::Delay, delay);
  SetNumber(dialog, ControlId::Pause, pause);
  Store(dialog, ControlId::Delay);
  Store(dialog, ControlId::Pause);
}

void EnableBuild(Dialog& dialog) { Enable(dialog, Build, !GetText(dialog, ControlId::Text).empty()); }
void EnablePalette(Dialog& dialog) { Enable(dialog, MainControl::Palette, !ReadCheck(dialog, CustomPalette)); }

void PickColour(Dialog& dialog, int id) {
  glyphmotion::Palette palette;  // offered to the host's picker: 8 steps of red and green, 4 of blue
  LoadFixedPalette(&palette, nullptr, kDefaultFixedPalette);
  HostColorPickRecord record{};
  record.size = sizeof record;
  record.version = HostInterfaceVersion;
  record.palette = reinterpret_cast<const std::uint8_t*>(palette.data());
  record.depth = 24;
  record.color = ReadColour(dialog, id);
  record.ownerWindow = WindowOf(dialog);
  if (!CallHost(HostOpPickColor, 0, AddressOf(&record))) return;
  SetNumber(dialog, id, record.color & 0xFFFFFF);
  Store(dialog, id);
  Invalidate(dialog, id);
  RepaintSample(dialog);
}

// --- Registration, help and the check of the program ---

// Any name with any code is a registration; one without the other is not.
void CheckRegistration() {
  std::string& name = VariableOf("RegistrationName").text;
  std::string& code = VariableOf("RegistrationCode").text;
  if (!name.empty() && !code.empty()) return;
  name.clear();
  code.clear();
}

void ShowTitle(Dialog& dialog) {
  std::string title = LoadText(kTextProgramTitle);
  if (VariableOf("RegistrationName").text.empty()) title += LoadText(kTextUnregisteredSuffix);
  SetDialogTitle(dialog, title.substr(0, kTitleLimit));
}

void RegisterCopy(Dialog& dialog) {
  if (!CallHost(HostOpIsRegistered)) return ShowInformation(&dialog, LoadText(kTextRegisterHostFirst));
  std::string& name = VariableOf("RegistrationName").text;
  std::string& code = VariableOf("RegistrationCode").text;
  Registration registration{name, code};
  if (!AskRegistration(dialog, registration)) return;
  name = CutCharacters(registration.name, kTextLimit);
  code = CutCharacters(registration.code, kTextLimit);
  CheckRegistration();
  ShowTitle(dialog);
}

// A damaged program says so and ends its dialog; the host lives on.
bool CheckIntegrity(Dialog& dialog) {
  if (AreTextsIntact()) return true;
  Report(dialog, kTextDamagedProgram);
  EndDialog(dialog, 0);
  return false;
}

void ShowTopic(Dialog& dialog, const char* topic) {
  const std::string reference = std::string(kHelpPage) + "#" + topic;
  if (!CallHost(HostOpShowHelp, 0, AddressOf(reference.c_str()))) Report(dialog, kTextHelpNotShown);
}

void ShowHelp(Dialog& dialog) {
  ShowTopic(dialog, kHelpTopic);
  CheckIntegrity(dialog);
}

// A host that pumps messages during a run may deliver another click, which is ignored.
struct RunningMark {
  RunningMark() { State().running = true; }
  RunningMark(const RunningMark&) = delete;
  RunningMark& operator=(const RunningMark&) = delete;
  ~RunningMark() { State().running = false; }
};

void Run(Dialog& dialog, bool test) {
  if (State().running || !CheckIntegrity(dialog)) return;
  const RunningMark mark;
  const HostCallTable& host = *State().hostCalls;
  CallHost(HostOpBeforeWork);
  RepaintNow(dialog, test ? Test : Build);
  const bool done = BuildDriver(dialog, host, test);
  if (test) return RepaintNow(dialog, 0);
  // After a failure, which has been reported, the dialog stays open for another try.
  if (done) EndDialog(dialog, 1);
}

// --- The host's services for the editors' windows ---

PackedDib ChoosePictureOfHost(Dialog& dialog) {
  char path[kPathBuffer] = {};
  if (!CallHost(HostOpChooseImageFile, WindowOf(dialog), AddressOf(path)) || !path[0]) return {};
  path[kPathBuffer - 1] = 0;
  return PackedDib(HandleOf(CallHost(HostOpLoadImage, 0, AddressOf(path))));
}

// --- The start ---

// Selects the font by name, including one that is not listed but has a substitute.
bool SelectFont(Dialog& dialog, const std::string& family) {
  if (SelectText(dialog, ControlId::Font, family) >= 0) return true;
  if (family.empty() || !HasFontFamily(family)) return false;
  AddItem(dialog, ControlId::Font, family);
  return SelectText(dialog, ControlId::Font, family) >= 0;
}

void FillFonts(Dialog& dialog) {
  for (const std::string& family : FontFamilies()) AddItem(dialog, ControlId::Font, family);
  if (SelectFont(dialog, TextVariable("MainFontName")) || SelectFont(dialog, "Arial")) return;
  AddItem(dialog, ControlId::Font, "Arial");
  SelectText(dialog, ControlId::Font, "Arial");
}

void FillPalettes(Dialog& dialog) {
  for (int i = 0; i < kFixedPaletteCount; ++i) AddItem(dialog, MainControl::Palette, LoadText(kTextFirstPalette + i));
  const std::uint32_t fixed = NumberVariable("MainPalette");
  AddItem(dialog, MainControl::Palette, LoadText(kTextBestPalette));
  const bool known = fixed < kFixedPaletteCount;
  const int item = NumberVariable("BestPalette") ? kBestPaletteItem : known ? static_cast<int>(fixed) : -1;
  SetSelection(dialog, MainControl::Palette, item);
  State().fixedPalette = fixed;
}

// The item after the fixed palettes has a key of its own; MainPalette keeps the number of a fixed one.
void StorePalette(Dialog& dialog) {
  const bool best = GetSelection(dialog, MainControl::Palette) == kBestPaletteItem;
  VariableOf("BestPalette").number = best;
  std::uint32_t& fixed = VariableOf("MainPalette").number;
  std::uint32_t& last = State().fixedPalette;
  (best ? fixed : last) = best ? last : fixed;
}

// True colour only if the host's format supports it.
void LimitToTrueColour(Dialog& dialog) {
  if (HostHas(HostFlagTrueColorFormat)) return;
  VariableOf("Truecolour").number = 0;
  SetCheck(dialog, TrueColour, false);
  Enable(dialog, TrueColour, false);
}

// A palette format has palettes, a transparent index and 1/100 s; the others have alpha and milliseconds.
void LimitToFormat(Dialog& dialog) {
  const bool palette = HostHas(HostFlagPaletteFormat), shift = IsShiftDown();
  SetText(dialog, ControlId::Delay + kUpDownOffset, palette ? "1,25,4" : "1,250,40");
  if (palette) {
    VariableOf("MainAlphaTrans").number = 0;
    SetCheck(dialog, ControlId::AlphaTransparency, false);
    Enable(dialog, ControlId::AlphaTransparency, false);
    Enable(dialog, ControlId::AlphaBackground, false);
    if (shift) SetDelays(dialog, 4, 100);
    return;
  }
  Enable(dialog, Transparent, false);
  SetCheck(dialog, Supercompress, false);
  Enable(dialog, Supercompress, false);
  Enable(dialog, ControlId::AlphaTransparency, true);
  if (shift) SetDelays(dialog, 10, 1000);
}

void InstallPanels(Dialog& dialog) {
  for (int i = 0; i < kEffectCount; ++i) {
    AddItem(dialog, ControlId::Effect, EffectRow(i).name);
    if (InstallPanel(dialog, *EffectRow(i).panel)) continue;
    Report(dialog, kTextPanelFailed);
    PostCommand(dialog, Cancel);
    return;
  }
  // A file of another version may contain an index that is out of range.
  const int effect = static_cast<int>(NumberVariable("MainEffect"));
  SetSelection(dialog, ControlId::Effect, std::clamp(effect, 0, kEffectCount - 1));
}

void AskFileDialogSize() {
  std::int32_t size[2] = {0, 0};
  CallHost(HostOpGetFileDialogSize, 0, AddressOf(size));
  SetFileDialogSize(size[0], size[1]);
}

void Initialise(Dialog& dialog, const HostCallTable* hostCalls) {
  State() = {};
  State().hostCalls = hostCalls;
  SetEditorServices({ShowTopic, ChoosePictureOfHost});
  SetMaterialWindows({EditGradient, EditTexture, RunTileDialog});
  SetFountainWindows({AskMarkerPosition, ManageFountainLibrary});
  LoadSettings();
  State().settingsLoaded = true;
  CheckRegistration();
  if (!hostCalls->HostCall) {
    Report(dialog, kTextInternalError);
    PostCommand(dialog, Cancel);
  }
  if (IsShiftDown()) ForgetDocument();
  for (const ControlTemplate& control : kMainDialogTemplate.controls) InstallControl(dialog, control);
  LimitToTrueColour(dialog);
  LimitText(dialog, ControlId::Text, kTextLimit);
  FillFonts(dialog);
  FillPalettes(dialog);
  LimitToFormat(dialog);
  InstallPanels(dialog);
  SetFocus(dialog, Build);
  PostCommand(dialog, CustomPalette);
  AskFileDialogSize();
  PaintInScreenPixels(dialog, AboutAnimation);
  SetTimer(dialog, kAboutTimer, kAboutMilliseconds);
  ShowTitle(dialog);
  Post(dialog, {kMessageRefresh, 0, 0});
}

void Refresh(Dialog& dialog) {
  if (IsShiftDown() && HostHas(HostFlagTrueColorFormat)) {
    SetCheckAndStore(dialog, TrueColour, true);
    SetDelays(dialog, 40, 1000);
  } else if (IsShiftDown()) {
    SetDelays(dialog, 4, 100);
  }
  State().effect = ChosenEffect(dialog);
  ShowPanel(dialog, State().effect);
  EnableBuild(dialog);
  EnablePalette(dialog);
  StorePalette(dialog);
  RepaintSample(dialog);
}

// --- The commands ---

void OnTrueColour(Dialog& dialog) {
  Store(dialog, TrueColour);
  RepaintSample(dialog);
  if (!ReadCheck(dialog, TrueColour)) SetCheckAndStore(dialog, ControlId::AlphaTransparency, false);
}

void OnAlphaTransparency(Dialog& dialog) {
  Store(dialog, ControlId::AlphaTransparency);
  RepaintSample(dialog);
  if (ReadCheck(dialog, ControlId::AlphaTransparency)) SetCheckAndStore(dialog, TrueColour, true);
}

void OnAlphaBackground(Dialog& dialog) {
  Store(dialog, ControlId::AlphaBackground);
  RepaintSample(dialog);
}

void OnPalette(Dialog& dialog, int code) {
  if (code != kSelectionChanged) return;
  VariableOf("MainPalette").number =
      static_cast<std::uint32_t>(std::max(GetSelection(dialog, MainControl::Palette), 0));
  StorePalette(dialog);
}

void OnText(Dialog& dialog, int code) {
  if (code != kEditChanged || !IsDialogVisible(dialog)) return;
  Store(dialog, ControlId::Text);
  EnableBuild(dialog);
  RepaintSampleLater(dialog);
}

void OnEffect(Dialog& dialog, int code) {
  const int effect = ChosenEffect(dialog);
  if (code != kSelectionChanged || effect == State().effect) return;
  State().effect = effect;
  ShowPanel(dialog, effect);
  VariableOf("MainEffect").number = static_cast<std::uint32_t>(effect);
  RepaintSample(dialog);
}

// Every other control is handled by its family.
void OnOption(Dialog& dialog, int id, int code) {
  if (!IsDialogVisible(dialog) || !HasControl(dialog, id)) return;
  if (code == kEditLeft) return ShowReadNumber(dialog, id);
  if (KindOf(dialog, id) == ControlKind::ColourButton) return PickColour(dialog, id);
  Store(dialog, id);
  if (id < kFirstOptionOfTheSample) return;
  code == kEditChanged ? RepaintSampleLater(dialog) : RepaintSample(dialog);
}

void OnCommand(Dialog& dialog, int id, int code) {
  switch (id) {
    case Build:
      return PostCommand(dialog, RunBuild);
    case Cancel:
      return EndDialog(dialog, 0);
    case Help:
      return ShowHelp(dialog);
    case TrueColour:
      return OnTrueColour(dialog);
    case MainControl::Palette:
      return OnPalette(dialog, code);
    case CustomPalette:
      return EnablePalette(dialog);
    case Register:
      return RegisterCopy(dialog);
    case About:
      return ShowAboutBox(dialog);
    case Test:
      return PostCommand(dialog, MainControl::RunTest);
    case OpenSave:
      return ShowDocumentMenu(dialog);
    case Open:
      return OpenDocument(dialog);
    case Save:
      return SaveCurrentDocument(dialog);
    case SaveAs:
      return SaveDocumentAs(dialog);
    case RunBuild:
      return Run(dialog, false);
    case MainControl::RunTest:
      return Run(dialog, true);
    case ControlId::Text:
      return OnText(dialog, code);
    case ControlId::Effect:
      return OnEffect(dialog, code);
    case ControlId::AlphaTransparency:
      return OnAlphaTransparency(dialog);
    case ControlId::AlphaBackground:
      return OnAlphaBackground(dialog);
    default:
      return OnOption(dialog, id, code);
  }
}

void OnDrawItem(Dialog& dialog, int id, const DrawRequest& request) {
  if (id == Sample) DrawSampleWindow(dialog, request);
  if (id == SizeText) DrawSizeText(dialog, request);
  if (id == AboutAnimation) PaintAboutPicture(request, State().aboutLetters, State().aboutTick);
}

void OnTimer(Dialog& dialog, int timer) {
  if (timer == kSampleTimer) {
    KillTimer(dialog, kSampleTimer);
    Invalidate(dialog, Sample);
  }
  if (timer == kAboutTimer) {
    ++State().aboutTick;
    RunAboutTimer(dialog, kAboutTimer, AboutAnimation);
  }
}

void OnDestroy(Dialog& dialog) {
  KillTimer(dialog, kAboutTimer);
  KillTimer(dialog, kSampleTimer);
  CheckRegistration();
  if (State().settingsLoaded) SaveSettings();
  UseSkin(false);
  DestroyPanels(dialog);
  State() = {};
}

}  // namespace

std::int64_t MainDialogProcedure(Dialog& dialog, const Message& message) {
  if (message.number == kMessageInitialise) UseSkin(PointerOf<const HostCallTable>(message.b)->skinSwitch != 0);
  if (HandleSkin(dialog, message)) return 1;
  switch (message.number) {
    case kMessageInitialise:
      Initialise(dialog, PointerOf<const HostCallTable>(message.b));
      return 0;  // the focus is already set
    case kMessageRefresh:
      Refresh(dialog);
      return 1;
    case kMessageRepaintSample:
      State().repaintPosted = false;
      Invalidate(dialog, Sample);
      return 1;
    case kMessageHelp:
      ShowTopic(dialog, HelpTopicOf(dialog, static_cast<int>(message.a)).c_str());
      return 1;
    case kMessageTimer:
      OnTimer(dialog, static_cast<int>(message.a));
      return 1;
    case kMessageCommand:
      OnCommand(dialog, static_cast<int>(message.a), static_cast<int>(message.b));
      return 1;
    case kMessageDrawItem:
      OnDrawItem(dialog, static_cast<int>(message.a), *PointerOf<const DrawRequest>(message.b));
      return 1;
    case kMessageDestroy:
      OnDestroy(dialog);
      return 1;
    default:
      return 0;
  }
}

}  // namespace glyphmotion
