// SPDX-License-Identifier: MIT
// The command line that makes what a dialog shows: a person who has clicked it together can go on in a script.
#pragma once

#include <string>
#include <vector>

#include "platform/dialog.h"

namespace glyphmotion {

/// `options`: more words of the command line. `blank` and `document` are texts of documents, of a new one and of the
/// current. Quoted for a POSIX shell.
std::string CommandFor(const Dialog& dialog, const std::string& blank, const std::string& document,
                       const std::vector<std::string>& options, const std::string& name);

/// A word for a POSIX shell, in quotes where it needs them.
std::string ShellWord(const std::string& text);

}  // namespace glyphmotion
