// SPDX-License-Identifier: MIT
// The program's own painting: faces, on a bitmap that is then copied to the window, and the dialog's background, which
// shows through every control that does not fill its rectangle.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/stretch_face.h"
#include "platform/win32/dialog_state.h"
#include "platform/win32/wide_text.h"

namespace glyphmotion {
namespace {

constexpr std::ptrdiff_t StrideOf(int width) { return (std::ptrdiff_t{3} * width + 3) / 4 * 4; }

/// A bitmap to paint on, selected into its own device context.
struct Canvas {
  HDC context = nullptr;
  HBITMAP bitmap = nullptr;
  HGDIOBJ before = nullptr;
  DrawRequest request;

  Canvas(HDC like, int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // top down
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* pixels = nullptr;
    context = CreateCompatibleDC(like);
    bitmap = context ? CreateDIBSection(context, &info, DIB_RGB_COLORS, &pixels, nullptr, 0) : nullptr;
    if (bitmap) before = SelectObject(context, bitmap);
    request.pixels = static_cast<std::uint8_t*>(pixels);
    request.width = width;
    request.height = height;
    request.stride = StrideOf(width);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    if (before) SelectObject(context, before);
    if (bitmap) DeleteObject(bitmap);
    if (context) DeleteDC(context);
  }
  explicit operator bool() const { return bitmap != nullptr; }
};

/// Sets the brush origin, which is in device coordinates whatever the origin of the context. Returns the previous one.
POINT StartBrushAt(HDC context, POINT place) {
  POINT before{};
  LPtoDP(context, &place, 1);
  SetBrushOrgEx(context, place.x, place.y, &before);
  return before;
}

void DrawBackground(const Dialog& dialog, HDC context, const RECT& place, POINT inDialog) {
  if (!dialog.background) {
    FillRect(context, &place, GetSysColorBrush(COLOR_3DFACE));
    return;
  }
  const POINT before = StartBrushAt(context, {place.left - inDialog.x, place.top - inDialog.y});
  FillRect(context, &place, dialog.background);
  SetBrushOrgEx(context, before.x, before.y, nullptr);
}

/// Samples the background at each pixel of the logical face.
void TakeBackground(const DrawRequest& from, const DrawRequest& to) {
  for (int y = 0; y < to.height; ++y) {
    const std::uint8_t* row = from.pixels + from.stride * (y * from.height / to.height);
    for (int x = 0; x < to.width; ++x) {
      std::memcpy(to.pixels + to.stride * y + 3 * x, row + 3 * (x * from.width / to.width), 3);
    }
  }
}

void DrawTexts(const Dialog& dialog, const Canvas& canvas, const std::vector<FaceText>& texts, double scale,
               bool hidesMnemonics) {
  if (texts.empty()) return;
  const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(dialog.window, WM_GETFONT, 0, 0));
  const HGDIOBJ before = font ? SelectObject(canvas.context, font) : nullptr;
  SetBkMode(canvas.context, TRANSPARENT);
  const auto scaled = [&](int v) { return static_cast<LONG>(std::lround(v * scale)); };
  for (const FaceText& text : texts) {
    RECT place{scaled(text.place.left), scaled(text.place.top), scaled(text.place.right), scaled(text.place.bottom)};
    UINT format = DT_SINGLELINE | DT_VCENTER | (text.centred ? DT_CENTER : DT_LEFT);
    if (!text.mnemonic) format |= DT_NOPREFIX;
    if (text.mnemonic && hidesMnemonics) format |= DT_HIDEPREFIX;
    SetTextColor(canvas.context, text.colour);
    DrawTextW(canvas.context, WideOf(text.text).c_str(), -1, &place, format);
  }
  if (before) SelectObject(canvas.context, before);
}

/// Children that do not fill their rectangle.
bool ShowsBackground(ControlKind kind) {
  return kind == ControlKind::Label || kind == ControlKind::Paragraph || kind == ControlKind::Group;
}

}  // namespace

double ScaleOf(const Dialog& dialog) {
  using DpiOfWindow = UINT(WINAPI*)(HWND);
  static const auto ask = reinterpret_cast<DpiOfWindow>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32"), "GetDpiForWindow")));
  UINT dots = ask && dialog.window ? ask(dialog.window) : 0;
  if (!dots) {
    const HDC screen = GetDC(nullptr);
    dots = static_cast<UINT>(std::max(GetDeviceCaps(screen, LOGPIXELSX), 0));
    ReleaseDC(nullptr, screen);
  }
  return dots ? dots / 96.0 : 1;
}

void PaintFace(const Control& control, HDC context, const RECT& place, const DrawRequest& state,
               const std::function<void(const DrawRequest&)>& paint) {
  const Dialog& dialog = *control.dialog;
  const int width = place.right - place.left, height = place.bottom - place.top;
  if (width < 1 || height < 1) return;
  const Canvas canvas(context, width, height);
  if (!canvas) return;
  POINT inDialog{place.left, place.top};
  MapWindowPoints(control.window, dialog.window, &inDialog, 1);
  DrawBackground(dialog, canvas.context, {0, 0, width, height}, inDialog);
  GdiFlush();
  const double scale = ScaleOf(dialog);
  std::vector<FaceText> texts;
  DrawRequest request = state;
  request.pixels = canvas.request.pixels;
  request.width = width;
  request.height = height;
  request.stride = canvas.request.stride;
  request.texts = &texts;
  if (control.inScreenPixels || scale == 1) {
    request.scale = scale;
    paint(request);
    DrawTexts(dialog, canvas, texts, 1, state.hidesMnemonics);
  } else {
    request.width = std::max(static_cast<int>(std::lround(width / scale)), 1);
    request.height = std::max(static_cast<int>(std::lround(height / scale)), 1);
    request.stride = StrideOf(request.width);
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(request.stride * request.height));
    request.pixels = pixels.data();
    TakeBackground(canvas.request, request);
    paint(request);
    StretchFace(request, canvas.request);
    DrawTexts(dialog, canvas, texts, scale, state.hidesMnemonics);
  }
  BitBlt(context, place.left, place.top, width, height, canvas.context, 0, 0, SRCCOPY);
}

void MakeBackground(Dialog& dialog) {
  RECT inside{};
  GetClientRect(dialog.window, &inside);
  if (dialog.hasBackground && inside.right == dialog.backgroundSize.cx && inside.bottom == dialog.backgroundSize.cy)
    return;
  ForgetBackground(dialog);
  dialog.hasBackground = true;
  dialog.backgroundSize = {inside.right, inside.bottom};
  const HDC screen = GetDC(dialog.window);
  {
    Canvas canvas(screen, std::max<int>(inside.right, 1), std::max<int>(inside.bottom, 1));
    canvas.request.scale = ScaleOf(dialog);
    if (canvas && Send(dialog, {kMessagePaintBackground, 0, PointerArgument(&canvas.request)})) {
      GdiFlush();
      dialog.background = CreatePatternBrush(canvas.bitmap);
    }
  }
  ReleaseDC(dialog.window, screen);
}

void ForgetBackground(Dialog& dialog) {
  if (dialog.background) DeleteObject(dialog.background);
  dialog.background = nullptr;
  dialog.hasBackground = false;
}

// Only the dialog's own window has children to clip: a transparent child requests its background with its own context.
void EraseBackground(Dialog& dialog, HDC context) {
  MakeBackground(dialog);
  RECT inside{};
  GetClientRect(dialog.window, &inside);
  const int saved = SaveDC(context);
  if (WindowFromDC(context) == dialog.window) {
    for (const Control& control : dialog.controls) {
      RECT place;
      if (ShowsBackground(control.kind) || !IsWindowVisible(control.window) || !GetWindowRect(control.window, &place)) {
        continue;
      }
      MapWindowPoints(nullptr, dialog.window, reinterpret_cast<POINT*>(&place), 2);
      ExcludeClipRect(context, place.left, place.top, place.right, place.bottom);
    }
  }
  DrawBackground(dialog, context, inside, {0, 0});
  RestoreDC(context, saved);
}

void EraseBehind(const Control& control) {
  MakeBackground(*control.dialog);
  RECT place;
  POINT inDialog{};
  const HDC context = GetDC(control.window);
  if (context && GetClientRect(control.window, &place)) {
    MapWindowPoints(control.window, control.dialog->window, &inDialog, 1);
    DrawBackground(*control.dialog, context, place, inDialog);
  }
  if (context) ReleaseDC(control.window, context);
}

// Labels, and controls that do not fill their rectangle, show the dialog's background. Fields keep their own.
INT_PTR BrushBehind(Dialog& dialog, HDC context, HWND window) {
  const auto found = std::find_if(dialog.controls.begin(), dialog.controls.end(),
                                  [&](const Control& control) { return control.window == window; });
  if (found == dialog.controls.end() || found->kind == ControlKind::Edit || found->kind == ControlKind::NumberEdit) {
    return 0;
  }
  MakeBackground(dialog);
  SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
  SetBkMode(context, TRANSPARENT);
  if (found->kind == ControlKind::Label) return reinterpret_cast<INT_PTR>(GetStockObject(NULL_BRUSH));
  if (!dialog.background) return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_3DFACE));
  POINT place{0, 0};
  MapWindowPoints(window, dialog.window, &place, 1);
  StartBrushAt(context, {-place.x, -place.y});
  return reinterpret_cast<INT_PTR>(dialog.background);
}

}  // namespace glyphmotion
