// SPDX-License-Identifier: MIT
// Documents: the state of all persistent controls of the main dialog as lines of text, one a control, written and read
// by the controls' families (docs/formats/document.md). What goes wrong is told in a message over the dialog.
#pragma once

#include <string>
#include <string_view>

#include "platform/dialog.h"

namespace glyphmotion {

/// Writes the dialog's state to a file, which appears whole or not at all. 1 on success, otherwise 0 after a message.
int SaveDocument(Dialog& dialog, const std::string& path) noexcept;

/// The document that SaveDocument writes.
std::string DocumentText(Dialog& dialog);
/// Takes the lines of a document's text, then has the dialog refresh itself. False when it is no document.
bool TakeDocumentText(Dialog& dialog, std::string_view text);

/// Gives every control its line of the file, then has the dialog refresh itself. Lines of controls that this dialog
/// does not have, and lines that a control's family does not know, are passed over. A file that cannot be opened or is
/// no document changes nothing.
void LoadDocument(Dialog& dialog, const std::string& path) noexcept;

/// The font family in a document's text; empty when it says none. (Loading leaves the font as it is.)
std::string FontOfDocumentText(std::string_view text);
/// The same of a file.
std::string FontOfDocument(const std::string& path) noexcept;

}  // namespace glyphmotion
