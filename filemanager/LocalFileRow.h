// A row of the local list as text, and what it means. The rows are the only store of the files' properties.
#pragma once

#include "util/JobFile.h"

#include <string>

// The texts of the four columns, in their order.
struct TLOCALFILEROW {
  std::string path;
  std::string fileId;   // decimal
  std::string fileType; // decimal
  std::string fileMode; // "normal", "bit reverse" or "program"
};

TLOCALFILEROW RowOf(const TFILEENTRY& entry);
// Of a file that was just chosen: a name ending in ".rbf" is a program.
TLOCALFILEROW DefaultRowOf(const std::string& path);
// Text that is no number reads as id 0 and type 1, text that is no mode as normal. Of numbers the low 8 bits count.
TFILEENTRY EntryOf(const TLOCALFILEROW& row);
