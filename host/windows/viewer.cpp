// SPDX-License-Identifier: MIT
#include "host/windows/viewer.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <utility>
#include <vector>

#include "host/windows/desktop.h"

namespace glyphmotion {
namespace {

constexpr wchar_t kClass[] = L"GlyphmotionViewer";
constexpr UINT_PTR kTimer = 1;
constexpr UINT kTick = 10;  // milliseconds
constexpr int kMargin = 12, kCheckerSide = 8;
constexpr COLORREF kSurround = RGB(0x3A, 0x3F, 0x47), kFrameLine = RGB(0x23, 0x26, 0x2B), kHint = RGB(0xD8, 0xDC, 0xE2),
                   kQuietHint = RGB(0x9A, 0xA2, 0xAE);
constexpr std::uint8_t kLightSquare = 0xFF, kDarkSquare = 0xDC;

struct Viewer {
  std::unique_ptr<Player> player;
  HWND dialog = nullptr;
  RECT lastArea{};  ///< where the picture was centred
  Field field = Field::Checkered;
  std::vector<std::uint32_t> shown;  ///< the composed picture, 0x00RRGGBB, top down
  HFONT headline = nullptr, text = nullptr;
};

Viewer* StateOf(HWND window) { return reinterpret_cast<Viewer*>(GetWindowLongPtrW(window, GWLP_USERDATA)); }

std::int64_t Now() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

HFONT MakeFont(int height, int weight) {
  return CreateFontW(-Scaled(height), 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, CLEARTYPE_QUALITY,
                     VARIABLE_PITCH | FF_SWISS, L"Segoe UI");
}

// --- Composing the picture ---

Rgb FieldAt(const Viewer& viewer, int x, int y) {
  switch (viewer.field) {
    case Field::White:
      return {255, 255, 255};
    case Field::Black:
      return {0, 0, 0};
    case Field::Background: {
      const Colour background = viewer.player->Shown().background;
      return RgbOf(background == kNoColour ? 0xFFFFFF : background);
    }
    default: {
      const std::uint8_t grey = (x / kCheckerSide + y / kCheckerSide) % 2 ? kDarkSquare : kLightSquare;
      return {grey, grey, grey};
    }
  }
}

void LayOnField(Viewer& viewer) {
  const Screen& screen = viewer.player->Picture();
  viewer.shown.resize(screen.pixels.size() / 4);
  const std::uint8_t* in = screen.pixels.data();
  std::uint32_t* out = viewer.shown.data();
  for (int y = 0; y < screen.height; ++y) {
    for (int x = 0; x < screen.width; ++x, in += 4, ++out) {
      const int alpha = in[3];
      const Rgb field = alpha == 255 ? Rgb{} : FieldAt(viewer, x, y);
      *out = static_cast<std::uint32_t>(BlendChannel(field.red, in[0], alpha)) << 16 |
             static_cast<std::uint32_t>(BlendChannel(field.green, in[1], alpha)) << 8 |
             BlendChannel(field.blue, in[2], alpha);
    }
  }
}

// --- Placing the picture ---

// The scale of a picture: its own size, a whole multiple on high-density screens, or reduced to fit.
double ZoomIn(const RECT& area, int width, int height) {
  const double roomX = std::max(area.right - area.left - 2 * Scaled(kMargin), 1L),
               roomY = std::max(area.bottom - area.top - 2 * Scaled(kMargin), 1L);
  const double fit = std::min(roomX / width, roomY / height);
  const double dense = Scaled(96) / 96;
  return fit >= dense ? dense : std::min(fit, 1.0);
}

RECT PlaceIn(const RECT& area, int width, int height) {
  const double zoom = ZoomIn(area, width, height);
  const int w = std::max(static_cast<int>(width * zoom), 1), h = std::max(static_cast<int>(height * zoom), 1);
  const int left = (area.left + area.right - w) / 2, top = (area.top + area.bottom - h) / 2;
  return {left, top, left + w, top + h};
}

// Of the areas that the dialog leaves free, the one that shows the picture largest.
RECT FreeArea(HWND window, const Viewer& viewer) {
  RECT whole, covered;
  GetClientRect(window, &whole);
  if (!viewer.player || !IsWindowVisible(viewer.dialog) || !GetWindowRect(viewer.dialog, &covered)) return whole;
  MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&covered), 2);
  RECT overlap;
  if (!IntersectRect(&overlap, &whole, &covered)) return whole;
  const RECT strips[] = {{whole.left, whole.top, overlap.left, whole.bottom},
                         {overlap.right, whole.top, whole.right, whole.bottom},
                         {whole.left, whole.top, whole.right, overlap.top},
                         {whole.left, overlap.bottom, whole.right, whole.bottom}};
  const Screen& picture = viewer.player->Picture();
  const auto zoom = [&](const RECT& strip) { return ZoomIn(strip, picture.width, picture.height); };
  const RECT best =
      *std::max_element(std::begin(strips), std::end(strips), [&](auto& a, auto& b) { return zoom(a) < zoom(b); });
  // A narrow strip shows less than the part of the picture that the dialog leaves visible.
  const int least = Scaled(64);
  return best.right - best.left < least || best.bottom - best.top < least ? whole : best;
}

// --- Drawing ---

void Fill(HDC dc, const RECT& r, COLORREF colour) {
  SetBkColor(dc, colour);
  ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &r, nullptr, 0, nullptr);
}

void DrawHint(HDC dc, const Viewer& viewer, RECT area) {
  SetBkMode(dc, TRANSPARENT);
  const HGDIOBJ before = SelectObject(dc, viewer.headline);
  SetTextColor(dc, kHint);
  RECT line = {area.left, (area.top + area.bottom) / 2 - Scaled(34), area.right,
               (area.top + area.bottom) / 2 + Scaled(8)};
  DrawTextW(dc, L"One line of text in, an animation out", -1, &line, DT_CENTER | DT_SINGLELINE | DT_VCENTER);
  SelectObject(dc, viewer.text);
  SetTextColor(dc, kQuietHint);
  line = {area.left, line.bottom, area.right, line.bottom + Scaled(24)};
  DrawTextW(dc, L"Click here or press Ctrl+N to begin", -1, &line, DT_CENTER | DT_SINGLELINE | DT_VCENTER);
  SelectObject(dc, before);
}

void DrawPicture(HDC dc, Viewer& viewer, const RECT& area) {
  const Screen& screen = viewer.player->Picture();
  const RECT place = PlaceIn(area, screen.width, screen.height);
  RECT line = place;
  InflateRect(&line, 1, 1);
  Fill(dc, line, kFrameLine);
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = screen.width;
  info.bmiHeader.biHeight = -screen.height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  SetStretchBltMode(dc, place.right - place.left < screen.width ? HALFTONE : COLORONCOLOR);
  SetBrushOrgEx(dc, 0, 0, nullptr);
  StretchDIBits(dc, place.left, place.top, place.right - place.left, place.bottom - place.top, 0, 0, screen.width,
                screen.height, viewer.shown.data(), &info, DIB_RGB_COLORS, SRCCOPY);
}

void Paint(HWND window, Viewer& viewer) {
  PAINTSTRUCT paint;
  const HDC dc = BeginPaint(window, &paint);
  RECT all;
  GetClientRect(window, &all);
  const HDC memory = CreateCompatibleDC(dc);
  const HBITMAP bitmap = CreateCompatibleBitmap(dc, std::max(all.right, 1L), std::max(all.bottom, 1L));
  const HGDIOBJ before = SelectObject(memory, bitmap);
  Fill(memory, all, kSurround);
  viewer.lastArea = FreeArea(window, viewer);
  if (viewer.player)
    DrawPicture(memory, viewer, viewer.lastArea);
  else
    DrawHint(memory, viewer, viewer.lastArea);
  const RECT& part = paint.rcPaint;
  BitBlt(dc, part.left, part.top, part.right - part.left, part.bottom - part.top, memory, part.left, part.top, SRCCOPY);
  SelectObject(memory, before);
  DeleteObject(bitmap);
  DeleteDC(memory);
  EndPaint(window, &paint);
}

// --- The window ---

void Notify(HWND window, int code) {
  SendMessageW(GetParent(window), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(window), code), reinterpret_cast<LPARAM>(window));
}

void Refresh(HWND window, Viewer& viewer) {
  if (viewer.player) LayOnField(viewer);
  InvalidateRect(window, nullptr, FALSE);
  Notify(window, kViewerChanged);
}

void Tick(HWND window, Viewer& viewer) {
  if (viewer.player && viewer.player->Advance(Now())) return Refresh(window, viewer);
  if (!viewer.dialog) return;
  const RECT area = FreeArea(window, viewer);
  if (!EqualRect(&area, &viewer.lastArea)) InvalidateRect(window, nullptr, FALSE);  // the dialog was moved
}

LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  Viewer* viewer = StateOf(window);
  switch (message) {
    case WM_CREATE:
      viewer = new Viewer;
      viewer->headline = MakeFont(24, FW_LIGHT);
      viewer->text = MakeFont(14, FW_NORMAL);
      SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(viewer));
      return 0;
    case WM_NCDESTROY:
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      DeleteObject(viewer->headline);
      DeleteObject(viewer->text);
      delete viewer;
      return 0;
    case WM_ERASEBKGND:
      return 1;  // WM_PAINT covers everything
    case WM_PAINT:
      Paint(window, *viewer);
      return 0;
    case WM_TIMER:
      Tick(window, *viewer);
      return 0;
    case WM_LBUTTONDOWN:
      if (viewer->player)
        TogglePause(window);
      else
        Notify(window, kViewerBegin);
      return 0;
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  try {
    if (message == WM_NCCREATE || message == WM_CREATE || StateOf(window))
      return Handle(window, message, wParam, lParam);
  } catch (const std::bad_alloc&) {
    if (message == WM_CREATE) return -1;
    return 0;  // a frame is skipped when out of memory
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateViewer(HWND parent, int id) {
  WNDCLASSW windowClass{};
  windowClass.style = CS_HREDRAW | CS_VREDRAW;
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kClass;
  RegisterClassW(&windowClass);
  return CreateWindowExW(0, kClass, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, parent,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), windowClass.hInstance, nullptr);
}

void ShowInViewer(HWND window, std::shared_ptr<const Animation> animation) {
  Viewer& viewer = *StateOf(window);
  viewer.player = animation ? std::make_unique<Player>(std::move(animation), Now()) : nullptr;
  SetTimer(window, kTimer, kTick, nullptr);
  Refresh(window, viewer);
}

void SetCoveringDialog(HWND window, HWND dialog) {
  StateOf(window)->dialog = dialog;
  InvalidateRect(window, nullptr, FALSE);
}

void SetField(HWND window, Field field) {
  StateOf(window)->field = field;
  Refresh(window, *StateOf(window));
}

Field FieldOf(HWND window) { return StateOf(window)->field; }

void TogglePause(HWND window) {
  Viewer& viewer = *StateOf(window);
  if (!viewer.player || viewer.player->FrameCount() < 2) return;
  viewer.player->Pause(!viewer.player->IsPaused(), Now());
  Refresh(window, viewer);
}

void StepFrame(HWND window, int direction) {
  Viewer& viewer = *StateOf(window);
  if (!viewer.player) return;
  viewer.player->Step(direction);
  Refresh(window, viewer);
}

const Player* PlayerOf(HWND window) { return StateOf(window)->player.get(); }

}  // namespace glyphmotion
