// SPDX-License-Identifier: MIT
// Control families: how each kind of option control writes itself to a document, reads itself from a document's line,
// and stores its value into the persistent variable it is tied to. A family is a row; one control procedure serves them
// all, so the code of documents and of the main dialog knows no control by name.
#pragma once

#include <cstdint>
#include <string>

#include "controls/variables.h"
#include "platform/dialog.h"

namespace glyphmotion {

enum ControlMessage : std::uint32_t {
  kMessageSaveControl = 1334,  ///< b: std::string*, to which the control appends its line, line feed included; result 0
  kMessageLoadControl =
      1335,  ///< b: const std::string*, one line without its end; result 1 when it was for this control
  kMessageStoreControl = 1336  ///< the control's value goes into its variable
};

/// A row's functions may be null where a family has nothing to do. A line is stem, id, "=", value; the one procedure
/// writes and takes apart all but the value.
struct ControlFamily {
  const char* stem;                                         ///< six capitals, "CHKBOX"; empty: no line of its own
  void (*save)(Dialog& dialog, int id, std::string& line);  ///< appends the value
  void (*load)(Dialog& dialog, int id, const std::string& value);     ///< takes the value of a line
  void (*store)(Dialog& dialog, int id, Variable& variable);          ///< control to variable
  void (*show)(Dialog& dialog, int id, const Variable& variable);     ///< variable to control
  void (*paint)(Dialog& dialog, int id, const DrawRequest& request);  ///< drawn controls only
  std::int64_t (*input)(Dialog& dialog, int id,
                        const Message& message);  ///< drawn controls only: mouse, keys, private messages; their result
  void (*destroy)(Dialog& dialog, int id) = nullptr;  ///< on kMessageDestroy: frees what the control's word holds
};

/// The family for a kind of control, or null for kinds that persist nothing (labels, groups, plain buttons). Up-downs
/// have a family without a line: asked to store, they pass the request on to their edit.
/// SPNSGN is for numbers whose variable is a text; FNTBOX for the font combo, whose load never applies the value.
const ControlFamily* FamilyOfKind(ControlKind kind) noexcept;
extern const ControlFamily kColourFamily, kNumberFamily, kSignedNumberFamily, kUpDownFamily, kCheckFamily, kTextFamily,
    kSelectionFamily, kFontFamily;

/// Ties a control to its family and its variable (null: none) and shows the variable's value in it. The variable is
/// in the control's word; direction pickers get a data block there that begins with the 32-bit index; material and
/// fountain buttons get theirs from InitialiseMaterial and the like.
void InstallFamily(Dialog& dialog, int id, const ControlFamily& family, Variable* variable);

/// The variable a control is tied to, or null; material and fountain buttons have none.
Variable* VariableOfControl(const Dialog& dialog, int id) noexcept;

}  // namespace glyphmotion
