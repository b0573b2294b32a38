// SPDX-License-Identifier: MIT
// Tries the system's services of this folder's platform from inside: blocks that a host made, files, folders, fonts and
// what a dialog of real windows promises. Exits with 0 when every check passed.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "platform/dialog.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "platform/text_engine.h"

namespace {

using namespace glyphmotion;

int failures = 0;
void Check(bool right, const char* what) {
  if (right) return;
  ++failures;
  std::printf("FAILED: %s\n", what);
}

void TryBlocks() {
  const HGLOBAL hosts = GlobalAlloc(GHND, 100);
  auto* bytes = static_cast<unsigned char*>(LockBlock(hosts));
  Check(bytes && BlockSize(hosts) >= 100, "a host's block can be locked");
  if (bytes) bytes[99] = 7;
  Check(LiveBlocks().locks == 1 && LiveBlocks().blocks == 0, "a lock of a host's block counts, the block does not");
  UnlockBlock(hosts);
  FreeBlock(hosts);
  Check(GlobalFlags(hosts) == GMEM_INVALID_HANDLE && LiveBlocks().locks == 0, "a host's block can be freed");
  std::uint64_t local[4] = {};
  for (const std::uintptr_t garbage :
       {std::uintptr_t{8}, std::uintptr_t{0x18}, std::uintptr_t{0xDEADBEE8}, ~std::uintptr_t{0},
        reinterpret_cast<std::uintptr_t>(&local[0]), reinterpret_cast<std::uintptr_t>(&local[1]),
        reinterpret_cast<std::uintptr_t>(hosts)}) {
    const auto handle = reinterpret_cast<BlockHandle>(garbage);
    Check(!LockBlock(handle) && !BlockSize(handle) && !ResizeBlock(handle, 8), "garbage is not a block");
    UnlockBlock(handle);
    FreeBlock(handle);
  }
  MovableBlock ours(AllocateBlock(0));
  Check(ours && GlobalLock(ours.Handle()), "a host can lock our blocks, the empty one too");
  GlobalUnlock(ours.Handle());
}

void TryFiles() {
  const std::string folder = DataFolder() + "Zürich\\日本\\", path = folder + "a.txt";
  Check(EnsureFolder(folder) && EnsureFolder(folder), "folders of any name can be made, and made again");
  Check(AtomicWriteFile(path, "one") && AtomicWriteFile(path, "two") && ReadWholeFile(path) == "two",
        "a file is replaced whole");
  WIN32_FIND_DATAW found;
  Check(FindFirstFileW(L"C:\\glyphmotion\\data\\Z*\\*\\.glyphmotion*", &found) == INVALID_HANDLE_VALUE,
        "no half-written file is left");
  Check(!ReadWholeFile(path, 2) && !ReadWholeFile(folder) && !ReadWholeFile(folder + "none"),
        "what is too large, a folder or missing is not read");
  Check(!AtomicWriteFile(folder + "none\\b.txt", "x") && !AtomicWriteFile(folder, "x"),
        "what cannot be written is not");
  Check(!OwnFolder().empty() && OwnFolder().back() == '\\', "a program knows its folder");
}

// Under a registry of our own in the place of the machine's.
void TryOwner() {
  HKEY root = nullptr;
  constexpr const wchar_t* kRoot = L"Software\\GlyphmotionTry";
  RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
  if (RegCreateKeyW(HKEY_CURRENT_USER, kRoot, &root) != ERROR_SUCCESS ||
      RegOverridePredefKey(HKEY_LOCAL_MACHINE, root) != ERROR_SUCCESS) {
    return Check(false, "a registry of our own can be had");
  }
  const auto put = [&](const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    RegSetKeyValueW(root, (L"SOFTWARE\\Microsoft\\" + key).c_str(), name, REG_SZ, value.c_str(),
                    static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  };
  Check(RegisteredOwner().empty() && RegisteredOrganization().empty(), "a machine may have no registered owner");
  put(L"Windows NT\\CurrentVersion\\Winlogon", L"DefaultUserName", L"logon");
  Check(RegisteredOwner() == "logon", "without a registered owner it is the logged-on user");
  put(L"Windows NT\\CurrentVersion", L"RegisteredOwner", L"Zürich");
  put(L"Windows NT\\CurrentVersion", L"RegisteredOrganization", L"later");
  put(L"Windows\\CurrentVersion", L"RegisteredOwner", L"");
  put(L"Windows\\CurrentVersion", L"RegisteredOrganization", L"first");
  Check(RegisteredOwner() == "Zürich" && RegisteredOrganization() == "first", "the first place that knows counts");
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegCloseKey(root);
  RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
}

// Hebrew is turned round, Arabic joined; text that needs neither stays as it is.
void TryShapes(const FontRequest& font) {
  const auto coverageOf = [&](char32_t code) {
    GlyphBitmap glyph;
    Check(IsCluster(code) && RenderGlyph(font, code, true, glyph), "a cluster can be drawn");
    return glyph.coverage;
  };
  const auto shape = [&](const char32_t* text) { return ShapeText(font, text).codes; };
  Check(shape(U"Plain \u00E9") == U"Plain \u00E9", "plain text is not shaped");
  const std::u32string word = shape(U"\u05D0\u05D1\u05D2");
  Check(word.size() == 3 && ShapeText(font, U"\u05D0").rightToLeft.at(0), "Hebrew has a cluster a letter");
  Check(coverageOf(word[0]) == coverageOf(shape(U"\u05D2")[0]) &&
            coverageOf(word[2]) == coverageOf(shape(U"\u05D0")[0]) && coverageOf(word[0]) != coverageOf(word[1]),
        "Hebrew runs from right to left");
  const std::u32string joined = shape(U"\u0628\u0628\u0628");
  GlyphBox box;
  Check(joined.size() == 3 && coverageOf(joined[0]) != coverageOf(joined[2]) && MeasureGlyph(font, joined[0], box) &&
            box.joined && box.advance > 0,
        "Arabic letters join");
  const std::u32string mark = shape(U"e\u0301x");
  Check(mark.size() == 2 && coverageOf(mark[0]) != coverageOf(shape(U"e\u0302")[0]), "a mark is part of its letter");
}

void TryFonts() {
  Check(StartTextEngine(), "the text engine starts");
  const auto families = FontFamilies();
  Check(!families.empty() && HasFontFamily(families.front()) && !HasFontFamily("No Such Family"), "families are known");
  const FontRequest font{"Arial", 56, true, false};
  GlyphBox letter, blank;
  GlyphBitmap smooth, oneBit, outline, filled;
  const FontMetrics metrics = MeasureFont(font);
  Check(metrics.height == 56 && metrics.ascent > 40 && metrics.ascent < 56, "the cell is as high as asked");
  Check(MeasureGlyph(font, U'H', letter) && MeasureGlyph(font, U' ', blank), "characters can be measured");
  const double em = 3 * blank.width;
  Check(em > 45 && em < 56 && letter.width > blank.width + 30, "a box is the advance and two margins");
  Check(RenderGlyph(font, U'H', true, smooth) && RenderGlyph(font, U'H', false, oneBit) &&
            RenderGlyphOutline(font, U'H', true, 0, filled) && RenderGlyphOutline(font, U'H', true, 2, outline),
        "characters can be drawn");
  const auto ink = [](const GlyphBitmap& glyph) {
    double sum = 0;
    for (const std::uint8_t c : glyph.coverage) sum += c;
    return sum / 255;
  };
  Check(std::all_of(oneBit.coverage.begin(), oneBit.coverage.end(), [](int c) { return c == 0 || c == 255; }),
        "one-bit text has two values");
  Check(ink(smooth) > 400 && ink(oneBit) > 0.9 * ink(smooth) && ink(oneBit) < 1.1 * ink(smooth) &&
            ink(filled) > 0.85 * ink(smooth) && ink(filled) < 1.15 * ink(smooth) && ink(outline) > 100 &&
            ink(outline) < ink(filled),
        "the four drawing modes cover the same area");
  GlyphBox pair;
  Check(MeasureGlyph(font, U'\U0001F600', pair) && pair.width > 0, "characters beyond 16 bits can be measured");
  TryShapes(font);
  StopTextEngine();
  Check(!MeasureGlyph(font, U'H', letter), "a stopped engine measures nothing");
}

// --- A dialog ---

constexpr ControlTemplate kControls[] = {
    {ControlKind::Edit, 100, "Zürich", 5, 5, 50, 13},       {ControlKind::NumberEdit, 101, "5", 5, 20, 50, 13},
    {ControlKind::UpDown, 10101, "-7,9,1", 55, 20, 10, 13}, {ControlKind::Combo, 102, "one;two;three", 5, 40, 50, 13},
    {ControlKind::Check, 103, "&Check", 5, 60, 50, 10},     {ControlKind::ScrollAxis, 104, "", 60, 5, 30, 30},
    {ControlKind::Trackbar, 105, "", 60, 40, 50, 13},       {ControlKind::Label, -1, "Label", 5, 80, 50, 8}};
constexpr ControlTemplate kPanel[] = {{ControlKind::SortedCombo, 200, "b;a", 5, 90, 50, 13}};
constexpr DialogTemplate kDialog = {7, "Try", 150, 120, kControls}, kPanelTemplate = {8, "", 0, 0, kPanel};
constexpr std::uint32_t kPrivate = 1224;

std::string order;

std::int64_t ControlProcedureOfTry(Dialog&, int id, const Message& message) {
  if (message.number == kMessageDestroy) order += " control" + std::to_string(id);
  return message.number == 1335 ? 42 : 0;
}

void LookAround(Dialog& dialog) {
  Check(Children(dialog) == std::vector<int>{100, 101, 10101, 102, 103, 104, 105, -1}, "children keep their order");
  Check(GetText(dialog, 100) == "Zürich" && GetText(dialog, 10101) == "-7,9,1", "captions are texts");
  SetRange(dialog, 10101, -7, 9);
  SetNumber(dialog, 101, -3);
  Check(GetNumber(dialog, 101, true) == -3 && GetNumber(dialog, 101, false) == 0, "a minus counts when signed");
  Check(ItemCount(dialog, 102) == 3 && SelectText(dialog, 102, "TWO") == 1 && GetText(dialog, 102) == "two",
        "items come from the caption");
  SetSelection(dialog, 102, 99);
  Check(GetSelection(dialog, 102) == -1 && SelectText(dialog, 102, "four") == -1, "what is not there is not selected");
  SetRange(dialog, 105, 0, 500);
  SetNumber(dialog, 105, 321);
  Check(GetText(dialog, 105) == "321", "a trackbar's text is its position");
  SetData(dialog, 103, 0x123456789ABCDEFu);
  Check(GetData(dialog, 103) == 0x123456789ABCDEFu, "a word has 64 bits");
  SetControlProcedure(dialog, 104, ControlProcedureOfTry, &order);
  const HWND drawn = GetDlgItem(reinterpret_cast<HWND>(WindowOf(dialog)), 104);
  Check(SendMessageW(drawn, 1335, 0, 0) == 42 && FamilyOf(dialog, 104) == &order,
        "a window's messages reach the family");
  Check(AddControls(dialog, kPanelTemplate, 102) && !IsVisible(dialog, 200) && ItemText(dialog, 200, 0) == "a",
        "a panel is added hidden");
  const ControlRectangle field = RectangleOf(dialog, 200);
  Check(field.bottom - field.top < 40, "a combo's drop height is not part of its place");
}

std::int64_t Procedure(Dialog& dialog, const Message& message) {
  switch (message.number) {
    case kMessageInitialise:
      LookAround(dialog);
      order = PointerOf<const char>(message.b);
      SetText(dialog, 100, "typed");
      Post(dialog, {kPrivate, 5, -6});
      return 0;
    case kMessageCommand:
      if (message.b == kEditChanged) order += " edit" + std::to_string(message.a);
      if (message.a == 900) throw std::runtime_error("out of the procedure");
      return 1;
    case kPrivate:
      order += " private";
      Check(message.a == 5 && message.b == -6, "a posted message keeps its arguments");
      SetTimer(dialog, 15, 10);
      return 1;
    case kMessageTimer:
      order += " timer" + std::to_string(message.a);
      KillTimer(dialog, 15);
      PostCommand(dialog, 900);
      return 1;
    case kMessageDestroy:
      order += " destroy";
      Check(HasControl(dialog, 100) && GetText(dialog, 100) == "typed", "controls exist while the dialog is destroyed");
      return 0;
    default:
      return 0;
  }
}

void TryDialog() {
  bool thrown = false;
  try {
    char start[] = "start";
    RunModal(kDialog, nullptr, Procedure, start);
  } catch (const std::runtime_error&) {
    thrown = true;
  }
  Check(thrown, "what a procedure throws comes out of RunModal");
  Check(order == "start edit100 private timer15 destroy control104", "messages come in their order");
  if (failures) std::printf("%s\n", order.c_str());
}

}  // namespace

int main() {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  TryBlocks();
  TryFiles();
  TryOwner();
  TryFonts();
  TryDialog();
  Check(LiveBlocks().blocks == 0 && LiveBlocks().locks == 0, "nothing is left");
  std::printf("services: %s\n", failures ? "FAILED" : "all right");
  return failures ? 1 : 0;
}
