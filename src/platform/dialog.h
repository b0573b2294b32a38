// SPDX-License-Identifier: MIT
// Dialogs and their controls, addressed by id: real windows on Windows, elsewhere the in-memory dialog, a complete
// dialog without a screen (the same templates, the same procedure, the same control procedures, a queue of posted
// messages, timers). The dialog is the program's model: options are stored in the controls and nowhere else. All
// functions of a dialog are called on one thread. Given an id that does not exist in the dialog they do nothing and
// return empty, 0 or false. Pixels are logical pixels of a 96 dpi screen. On a screen of higher density faces are
// painted in logical pixels and then scaled, positions (also of the mouse) are reported in them, and the system draws
// the text of a face in device pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace glyphmotion {

/// One dialog; owned by RunModal for as long as it runs.
struct Dialog;

enum class ControlKind : std::uint8_t {
  Label,
  Paragraph,  ///< a label whose text wraps at its width
  Group,
  Button,
  DefaultButton,
  Check,
  Radio,
  Edit,
  NumberEdit,
  UpDown,
  Combo,
  SortedCombo,
  List,
  PictureList,  ///< one column of owner-drawn items
  PictureGrid,  ///< several columns of them, filled from top to bottom
  Trackbar,
  OwnerDrawn,
  ColourButton,
  MaterialButton,
  FountainButton,
  ShadowDirection,
  ScrollFour,
  ScrollTwo,
  ScrollAxis,
  Drawn  ///< appearance and behaviour are its procedure's
};

/// One control of a template. Positions and sizes are in dialog units (a quarter of the font's average width, an eighth
/// of its height).
struct ControlTemplate {
  ControlKind kind = ControlKind::Label;
  int id = 0;  ///< -1 for labels and groups that are never addressed
  const char* caption =
      "";  ///< window text; for an up-down "minimum,maximum,default"; for a combo its items by semicolons
  std::int16_t x = 0, y = 0, width = 0, height = 0;
  const char* key = nullptr;  ///< persistent key of the settings, or null
  std::uint32_t initial = 0;  ///< initial colour of a material button; value of a control without a key
};

struct DialogTemplate {
  int id = 0;
  const char* title = "";
  std::int16_t width = 0, height = 0;  ///< dialog units
  std::span<const ControlTemplate> controls;
};

/// Message numbers of dialog and control procedures; private ones are declared where they are used.
enum MessageNumber : std::uint32_t {
  kMessageDestroy = 0x0002,
  kMessagePaint = 0x000F,            ///< to a drawn control: b is a DrawRequest*
  kMessagePaintBackground = 0x0014,  ///< to the dialog: b is a DrawRequest* of its whole inside, in the screen's own
                                     ///< pixels; 0: it has the plain face
  kMessageDrawItem = 0x002B,  ///< to the dialog: a is the id of an owner-drawn control or of a list whose item is to be
                              ///< drawn, b a DrawRequest*
  kMessageHelp = 0x0053,      ///< to the dialog: F1; a is the id of the control with the keyboard, 0 for none
  kMessageKeyDown = 0x0100,   ///< to a drawn control: a is a KeyCode
  kMessageInitialise = 0x0110,  ///< to the dialog, once, before it shows: b is RunModal's parameter
  kMessageCommand = 0x0111,     ///< to the dialog: a is the control's id, b a CommandCode
  kMessageTimer = 0x0113,       ///< to the dialog: a is the timer's id
  kMessageCopy = 0x0301,        ///< to the dialog: Ctrl+C on one of its buttons
  kMessageLeftDown = 0x0201,  ///< to a drawn control: a is x, b is y, in pixels of the control; likewise the next three
  kMessageLeftUp = 0x0202,
  kMessageDoubleClick = 0x0203,
  kMessageRightUp = 0x0205,
  kMessageMouseMove = 0x0200,
  kMessageCaptureLost = 0x0215  ///< to a drawn control: the mouse it had captured was taken from it
};

enum CommandCode : int {
  kClicked = 0,           ///< a button, a check, a menu item, or a posted command
  kSelectionChanged = 1,  ///< a combo or a list
  kDoubleClicked = 2,     ///< an item of a list
  kItemMenu = 3,          ///< the right button on an item of a list, which is selected by then
  kDeletePressed = 4,     ///< the Delete key in a list
  kRenamePressed = 5,     ///< F2 in a list
  kItemMenuByKey = 6,     ///< the menu key or Shift+F10 on the selected item of a list
  kEditLeft = 0x200,      ///< the keyboard has left an edit
  kEditChanged = 0x300    ///< an edit's text, a trackbar's position
};

enum KeyCode : int {
  kKeyLeft = 0x25,
  kKeyUp = 0x26,
  kKeyRight = 0x27,
  kKeyDown = 0x28,
  kKeyInsert = 0x2D,
  kKeyDelete = 0x2E,
  kKeySpace = 0x20,
  kKeyMenu = 0x5D,  ///< or Shift+F10
  kKeyF1 = 0x70,
  kKeyF2 = 0x71
};

struct Message {
  std::uint32_t number = 0;
  std::uint64_t a = 0;
  std::int64_t b = 0;
};

template <typename T>
std::int64_t PointerArgument(T* pointer) {
  return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(pointer));
}
template <typename T>
T* PointerOf(std::int64_t argument) {
  return reinterpret_cast<T*>(static_cast<std::intptr_t>(argument));
}

/// A position in the dialog, in pixels.
struct ControlRectangle {
  int left = 0, top = 0, right = 0, bottom = 0;
};

/// A line of UTF-8 on a face, in the dialogs' font, vertically centred in its rectangle.
struct FaceText {
  ControlRectangle place;
  std::string text;
  std::uint32_t colour = 0;  ///< 0x00BBGGRR
  bool centred = false;
  bool mnemonic = false;  ///< an & underlines the character after it
};

/// Pixels to paint on: 24-bit rows, top down, blue green red. Owned by the platform. Initially they show what is behind
/// the control.
struct DrawRequest {
  std::uint8_t* pixels = nullptr;
  int width = 0, height = 0;
  std::ptrdiff_t stride = 0;                             ///< bytes from a row to the one below
  int item = -1;                                         ///< of a list: the item to draw
  bool selected = false, focused = false;                ///< that item; `focused` also of a button
  bool pressed = false, hot = false, isDefault = false;  ///< of a button: held, under the pointer, what Enter presses
  bool hidesMnemonics = false;                           ///< until the user presses a key
  double scale = 1;                                      ///< pixels per logical pixel; 1 unless PaintInScreenPixels
  std::vector<FaceText>* texts = nullptr;  ///< lines for the system to draw over the face; null: the face draws its own
};

/// Nonzero: the message was handled.
using DialogProcedure = std::int64_t (*)(Dialog& dialog, const Message& message);
/// The result depends on the message; 0 for unknown messages.
using ControlProcedure = std::int64_t (*)(Dialog& dialog, int id, const Message& message);

/// Runs a dialog until EndDialog. `owner` is the host's window or null (then the running dialog, if any). Returns
/// EndDialog's result, or -1 when the dialog could not be created. In memory: the procedure gets kMessageInitialise
/// with `parameter`, the queue is pumped, then the driver runs; if the dialog has not ended when the driver returns, it
/// ends with 0. kMessageDestroy is sent last: to the dialog's procedure, while its controls still exist, then to the
/// procedure of every control that has one, in the order of the children; there a control frees what its word holds. It
/// is sent even after an exception, which is then rethrown.
std::int64_t RunModal(const DialogTemplate& dialogTemplate, void* owner, DialogProcedure procedure, void* parameter);
void EndDialog(Dialog& dialog, std::int64_t result);
bool HasEnded(const Dialog& dialog);

/// Copies a template's controls into a running dialog, hidden, after those it has; combos and lists keep their drop
/// height. In the tab order they follow the control `tabAfter`. (The in-memory dialog has no tab order.) False, and
/// none copied, when out of memory.
bool AddControls(Dialog& dialog, const DialogTemplate& panel, int tabAfter);

std::string DialogTitle(const Dialog& dialog);
void SetDialogTitle(Dialog& dialog, const std::string& title);
/// The dialog's window for the host: an HWND on Windows, elsewhere the dialog itself.
std::uint64_t WindowOf(Dialog& dialog);

/// RunModal over another dialog.
inline std::int64_t RunModal(const DialogTemplate& dialogTemplate, Dialog& owner, DialogProcedure procedure,
                             void* parameter) {
  return RunModal(dialogTemplate, PointerOf<void>(static_cast<std::int64_t>(WindowOf(owner))), procedure, parameter);
}

/// Ids of all children in order, -1 for those without one.
std::vector<int> Children(const Dialog& dialog);
bool HasControl(const Dialog& dialog, int id);
ControlKind KindOf(const Dialog& dialog, int id);

/// The text of a combo or a list is that of its selected item. A trackbar's text is its position.
std::string GetText(const Dialog& dialog, int id);

/// Whether any thread may read the controls while the dialog's own thread changes nothing. Not so on Windows, where
/// each question is answered by the window's thread.
bool ReadableOnAnyThread() noexcept;
/// Like typing: an edit notifies the dialog with kEditChanged. Combos and lists ignore it (see SelectText).
void SetText(Dialog& dialog, int id, const std::string& text);
/// The control's text as a decimal number, as native dialogs parse it: leading blanks skipped, 0 when there is none or
/// it does not fit; a minus counts only when `isSigned`.
std::int64_t GetNumber(const Dialog& dialog, int id, bool isSigned);
void SetNumber(Dialog& dialog, int id, std::int64_t value);
/// Limits the characters that a user can type into an edit; SetText is not limited.
void LimitText(Dialog& dialog, int id, int characters);

/// Of a check or a radio. Setting sends no notification.
bool GetCheck(const Dialog& dialog, int id);
void SetCheck(Dialog& dialog, int id, bool checked);

/// Items of a combo or a list. Selection is -1 when none. Setting sends no notification; an invalid index selects none.
int AddItem(Dialog& dialog, int id, const std::string& text);
/// Adds all of these in order; much faster than one by one for hundreds of items.
void AddItems(Dialog& dialog, int id, std::span<const std::string> texts);
void ClearItems(Dialog& dialog, int id);
int ItemCount(const Dialog& dialog, int id);
std::string ItemText(const Dialog& dialog, int id, int index);
void DeleteItem(Dialog& dialog, int id, int index);
std::uint64_t ItemData(const Dialog& dialog, int id, int index);
void SetItemData(Dialog& dialog, int id, int index, std::uint64_t data);
/// Width (of a grid's columns) and height of the items of a picture list or grid, in pixels.
void SetItemSize(Dialog& dialog, int id, int width, int height);
/// The rectangle of a list's item, in pixels of the list.
ControlRectangle RectangleOfItem(const Dialog& dialog, int id, int index);
int GetSelection(const Dialog& dialog, int id);
void SetSelection(Dialog& dialog, int id, int index);
/// Selects the item of this text, case ignored. Its index, or -1 with the selection unchanged.
int SelectText(Dialog& dialog, int id, const std::string& text);

/// The control's user data: a pointer to its persistent variable, or a block handle.
std::uint64_t GetData(const Dialog& dialog, int id);
void SetData(Dialog& dialog, int id, std::uint64_t data);

bool IsEnabled(const Dialog& dialog, int id);
void Enable(Dialog& dialog, int id, bool enabled);
bool IsVisible(const Dialog& dialog, int id);
void Show(Dialog& dialog, int id, bool visible);
bool IsDialogVisible(const Dialog& dialog);
void SetFocus(Dialog& dialog, int id);
int FocusOf(const Dialog& dialog);

ControlRectangle RectangleOf(const Dialog& dialog, int id);
void ResizeControl(Dialog& dialog, int id, int width, int height);
void MoveControl(Dialog& dialog, int id, int left, int top);
/// Resizes the dialog and keeps it centred over its owner.
void GrowDialog(Dialog& dialog, int across, int down);

/// The size of a text in the dialog's font, wrapped at spaces to at most `width` pixels.
struct TextExtent {
  int width = 0, height = 0;
};
TextExtent MeasureText(const Dialog& dialog, const std::string& text, int width);

/// Paints the control's face in device pixels, request.scale of which are one logical pixel: for faces of smooth
/// shapes, which are sharp at any size.
void PaintInScreenPixels(Dialog& dialog, int id);

/// The range of an up-down, which its edit's arrow keys keep to, or of a trackbar: 0 to 100 until it is set. An
/// up-down's text sets it ("minimum,maximum,default"). Without negative numbers in the range, the edit accepts digits
/// only.
struct ControlRange {
  int minimum = 0, maximum = 100;
};
void SetRange(Dialog& dialog, int id, int minimum, int maximum);
/// 0 to 100 for a control that does not exist.
ControlRange RangeOf(const Dialog& dialog, int id);

/// Sets tick marks on a trackbar at the multiples of `every` within its range; `every` is also its page step.
void SetTicks(Dialog& dialog, int id, int every);
/// Whether the Tab key stops at a control. (Ignored in memory.)
void SetTabStop(Dialog& dialog, int id, bool stops);

/// Gives a control its behaviour; `family` is stored with it for the procedure's own use. A push button is then painted
/// by the procedure but still behaves as a button.
void SetControlProcedure(Dialog& dialog, int id, ControlProcedure procedure, const void* family);
const void* FamilyOf(const Dialog& dialog, int id);
/// The procedure's result; 0 when the control has none.
std::int64_t SendToControl(Dialog& dialog, int id, const Message& message);

std::int64_t Send(Dialog& dialog, const Message& message);
void Post(Dialog& dialog, const Message& message);
void PostCommand(Dialog& dialog, int id, int code = kClicked);
void PostToControl(Dialog& dialog, int id, const Message& message);
void SetTimer(Dialog& dialog, int timer, int milliseconds);
void KillTimer(Dialog& dialog, int timer);
/// Requests a repaint of a control, or of the whole dialog with id 0.
void Invalidate(Dialog& dialog, int id);
/// Performs pending painting of a control, or of the dialog's own window with id 0, before work that handles no
/// messages. (In memory nothing is ever pending.)
void RepaintNow(Dialog& dialog, int id);
void CaptureMouse(Dialog& dialog, int id);
void ReleaseMouse(Dialog& dialog);
/// Whether the pointer is over the control. (Always true in memory.)
bool IsPointerOver(const Dialog& dialog, int id);
bool HasCapture(const Dialog& dialog, int id);

}  // namespace glyphmotion
