// SPDX-License-Identifier: MIT
// Dialogs and their controls, reached by id: real windows on Windows, elsewhere the dialog in memory, which is a real
// dialog without a screen (the same templates, the same procedure, the same control procedures, a queue of posted
// messages, timers).
//
// The model of the program is its dialog: options live in the controls and nowhere else. Everything here runs on one
// thread. Functions on an id that does not exist in the dialog do nothing and answer empty, 0 or false.
//
// A pixel is one of a screen with 96 to the inch. On a finer screen faces are painted in such pixels and then
// stretched, places and the mouse's are told in them, and the text of a face is drawn by the machine in its own pixels.
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
  PictureList,  ///< one column of items that the dialog draws
  PictureGrid,  ///< columns of them, filled from top to bottom
  Trackbar,
  OwnerDrawn,
  ColourButton,
  MaterialButton,
  FountainButton,
  ShadowDirection,
  ScrollFour,
  ScrollTwo,
  ScrollAxis,
  Drawn  ///< looks and behaves as the procedure it is given
};

/// One control of a template. Places and sizes are dialog units (a quarter of the font's average width, an eighth of
/// its height).
struct ControlTemplate {
  ControlKind kind = ControlKind::Label;
  int id = 0;  ///< -1 for labels and groups that nothing refers to
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

/// Numbers of the messages a dialog procedure or a control procedure may get; private ones are listed where they are
/// used.
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

/// Place in the dialog, in pixels.
struct ControlRectangle {
  int left = 0, top = 0, right = 0, bottom = 0;
};

/// A line of UTF-8 on a face, in the dialogs' font, in the middle of the place's height.
struct FaceText {
  ControlRectangle place;
  std::string text;
  std::uint32_t colour = 0;  ///< 0x00BBGGRR
  bool centred = false;
  bool mnemonic = false;  ///< an & underlines the character after it
};

/// Pixels to paint on: 24-bit rows, top down, blue green red. Owned by the platform. They begin as what lies behind the
/// control.
struct DrawRequest {
  std::uint8_t* pixels = nullptr;
  int width = 0, height = 0;
  std::ptrdiff_t stride = 0;                             ///< bytes from a row to the one below
  int item = -1;                                         ///< of a list: the item whose place this is
  bool selected = false, focused = false;                ///< that item; `focused` also of a button
  bool pressed = false, hot = false, isDefault = false;  ///< of a button: held, under the pointer, what Enter presses
  bool hidesMnemonics = false;                           ///< until a person uses the keyboard
  double scale = 1;                                      ///< of these pixels to one; 1 unless PaintInScreenPixels
  std::vector<FaceText>* texts = nullptr;  ///< lines that the machine is to draw over the face; null: the face does
};

/// Nonzero: the message was handled.
using DialogProcedure = std::int64_t (*)(Dialog& dialog, const Message& message);
/// The result is the message's own; 0 for messages it does not know.
using ControlProcedure = std::int64_t (*)(Dialog& dialog, int id, const Message& message);

/// Runs a dialog until EndDialog. `owner` is the host's window or null (then the dialog that runs, if one does).
/// Returns EndDialog's result, or -1 when it could not be made. In memory: the procedure gets kMessageInitialise with
/// `parameter`, the queue is pumped, then the driver runs; when the driver returns and nothing has ended the dialog, it
/// ends with 0. kMessageDestroy comes last: to the dialog's procedure, while its controls still stand, then to the
/// procedure of every control that has one, in the order of the children; there a control frees what its word holds. It
/// comes whatever was thrown, which then goes on.
std::int64_t RunModal(const DialogTemplate& dialogTemplate, void* owner, DialogProcedure procedure, void* parameter);
void EndDialog(Dialog& dialog, std::int64_t result);
bool HasEnded(const Dialog& dialog);

/// Copies a template's controls into a running dialog, hidden, after those it has; combos and lists keep their drop
/// height. The Tab key comes to them after the control `tabAfter`. (In memory nobody presses Tab.) False, and none
/// copied, when memory is out.
bool AddControls(Dialog& dialog, const DialogTemplate& panel, int tabAfter);

std::string DialogTitle(const Dialog& dialog);
void SetDialogTitle(Dialog& dialog, const std::string& title);
/// What a host may be given as the dialog's window: an HWND on Windows, elsewhere the dialog itself.
std::uint64_t WindowOf(Dialog& dialog);

/// RunModal over another dialog.
inline std::int64_t RunModal(const DialogTemplate& dialogTemplate, Dialog& owner, DialogProcedure procedure,
                             void* parameter) {
  return RunModal(dialogTemplate, PointerOf<void>(static_cast<std::int64_t>(WindowOf(owner))), procedure, parameter);
}

/// Ids of all children in their order, -1 for those without one.
std::vector<int> Children(const Dialog& dialog);
bool HasControl(const Dialog& dialog, int id);
ControlKind KindOf(const Dialog& dialog, int id);

/// The text of a combo or a list is that of its selected item. A trackbar's text is its position.
std::string GetText(const Dialog& dialog, int id);
/// Like a person's typing: an edit notifies the dialog with kEditChanged. Combos and lists ignore it (SelectText).
void SetText(Dialog& dialog, int id, const std::string& text);
/// The control's text as a decimal number, as a machine's own dialogs read it: leading blanks skipped, 0 when there is
/// none or it does not fit; a minus counts only when `isSigned`.
std::int64_t GetNumber(const Dialog& dialog, int id, bool isSigned);
void SetNumber(Dialog& dialog, int id, std::int64_t value);
/// An edit takes no more than this many characters from a person; SetText is not cut.
void LimitText(Dialog& dialog, int id, int characters);

/// Of a check or a radio. Setting notifies nobody.
bool GetCheck(const Dialog& dialog, int id);
void SetCheck(Dialog& dialog, int id, bool checked);

/// Items of a combo or a list. Selection is -1 when none. Setting notifies nobody; an index that does not exist selects
/// none.
int AddItem(Dialog& dialog, int id, const std::string& text);
/// All of these in their order: for hundreds of items much quicker than one by one.
void AddItems(Dialog& dialog, int id, std::span<const std::string> texts);
void ClearItems(Dialog& dialog, int id);
int ItemCount(const Dialog& dialog, int id);
std::string ItemText(const Dialog& dialog, int id, int index);
void DeleteItem(Dialog& dialog, int id, int index);
std::uint64_t ItemData(const Dialog& dialog, int id, int index);
void SetItemData(Dialog& dialog, int id, int index, std::uint64_t data);
/// Width (of a grid's columns) and height of the items of a picture list or grid, in pixels.
void SetItemSize(Dialog& dialog, int id, int width, int height);
/// Where an item of a list is, in pixels of the list.
ControlRectangle RectangleOfItem(const Dialog& dialog, int id, int index);
int GetSelection(const Dialog& dialog, int id);
void SetSelection(Dialog& dialog, int id, int index);
/// Selects the item of this text, case ignored. Its index, or -1 with the selection as it was.
int SelectText(Dialog& dialog, int id, const std::string& text);

/// The control's own word: a pointer to its persistent variable, or a block handle.
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
/// Makes the dialog larger, or smaller, and keeps it in the middle of what it stands over.
void GrowDialog(Dialog& dialog, int across, int down);

/// How large a text of several lines is in the dialog's font, wrapped at blanks to at most `width` pixels.
struct TextExtent {
  int width = 0, height = 0;
};
TextExtent MeasureText(const Dialog& dialog, const std::string& text, int width);

/// The control's face is painted in the screen's own pixels, of which request.scale are one of 96 to the inch: for
/// faces of smooth shapes, which are sharp at any size.
void PaintInScreenPixels(Dialog& dialog, int id);

/// The range of an up-down, which its edit's arrow keys keep to, or of a trackbar: 0 to 100 until it is set. An
/// up-down's text sets it ("minimum,maximum,default"). Into the edit of a range without negative numbers a person types
/// digits only.
struct ControlRange {
  int minimum = 0, maximum = 100;
};
void SetRange(Dialog& dialog, int id, int minimum, int maximum);
/// 0 to 100 for a control that does not exist.
ControlRange RangeOf(const Dialog& dialog, int id);

/// Marks on a trackbar at the multiples of `every` within its range, which is also its step by page.
void SetTicks(Dialog& dialog, int id, int every);
/// Whether the Tab key stops at a control. (In memory nobody presses Tab.)
void SetTabStop(Dialog& dialog, int id, bool stops);

/// Gives a control its behaviour; `family` is kept with it for the procedure's own use. A push button then looks as the
/// procedure paints it, and goes on behaving as a button.
void SetControlProcedure(Dialog& dialog, int id, ControlProcedure procedure, const void* family);
const void* FamilyOf(const Dialog& dialog, int id);
/// The procedure's answer; 0 when the control has none.
std::int64_t SendToControl(Dialog& dialog, int id, const Message& message);

std::int64_t Send(Dialog& dialog, const Message& message);
void Post(Dialog& dialog, const Message& message);
void PostCommand(Dialog& dialog, int id, int code = kClicked);
void PostToControl(Dialog& dialog, int id, const Message& message);
void SetTimer(Dialog& dialog, int timer, int milliseconds);
void KillTimer(Dialog& dialog, int timer);
/// Asks for a repaint of a control, or of the whole dialog with id 0.
void Invalidate(Dialog& dialog, int id);
/// Paints at once what waits to be painted of a control, or of the dialog's own window with id 0: before work that lets
/// no message through. (In memory nothing waits.)
void RepaintNow(Dialog& dialog, int id);
void CaptureMouse(Dialog& dialog, int id);
void ReleaseMouse(Dialog& dialog);
/// Whether the pointer is on the control. (In memory it is wherever it is needed.)
bool IsPointerOver(const Dialog& dialog, int id);
bool HasCapture(const Dialog& dialog, int id);

}  // namespace glyphmotion
