// SPDX-License-Identifier: MIT
// Documents: the state of all persistent controls of the main dialog as lines of text, one per control, written and
// read by the controls' families (docs/formats/document.md). Errors are reported in a message over the dialog.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dialog.h"

namespace glyphmotion {

/// Lines of a document that differ from what the controls show.
struct DocumentChanges {
  std::string_view remark;                          ///< a comment line after the header; empty: none
  std::vector<std::pair<int, std::string>> values;  ///< by control id
};

/// Writes the dialog's state to a file, which appears whole or not at all. 1 on success, otherwise 0 after a message.
int SaveDocument(Dialog& dialog, const std::string& path, const DocumentChanges& changes = {}) noexcept;

/// Passes each control its line of the file, then refreshes the dialog. Lines of controls that this dialog does not
/// have, and lines that a control's family does not know, are skipped. 1 on success. A file that cannot be opened or is
/// not a document changes nothing: 0 after a message.
int LoadDocument(Dialog& dialog, const std::string& path) noexcept;

/// The document that SaveDocument writes.
std::string DocumentText(Dialog& dialog, const DocumentChanges& changes = {});
/// LoadDocument of a text, without a message: false when it is not a document.
bool TakeDocumentText(Dialog& dialog, std::string_view text);

/// What a document says beyond what loading it does.
struct DocumentSummary {
  std::string font;                ///< the family it was saved with; empty: none. (Loading leaves the font as it is.)
  std::set<std::string> controls;  ///< the stems and ids of its lines: "SPNBTN11"
  bool milliseconds = false;       ///< the unit of its times (kMillisecondsRemark)
  bool complete = false;           ///< the closing line is present
};
/// Of a file that is not a document, everything is empty. Throws std::bad_alloc.
DocumentSummary SummariseDocument(const std::string& path);
DocumentSummary SummariseDocumentText(std::string_view text);

}  // namespace glyphmotion
