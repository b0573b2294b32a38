// SPDX-License-Identifier: MIT
// What --list prints, as a table.
#pragma once

#include <string>
#include <vector>

#include "host/options/arguments.h"

namespace glyphmotion {

struct ListTable {
  struct Column {
    const char* name;       ///< the key of the JSON
    int width = 0;          ///< in words, in characters
    bool isNumber = false;  ///< of whole numbers; an empty cell means none
  };
  std::vector<Column> columns;
  std::vector<std::vector<std::string>> rows;
};

/// The table of a list, other than None. Without rows, `trouble` gets one sentence.
ListTable TableOf(ListKind kind, const Catalogue& catalogue, std::string& trouble);

/// One line a row.
std::string WordsOf(const ListTable& table);

}  // namespace glyphmotion
