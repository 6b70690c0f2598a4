// Places in a script's text, as people look at them.
#pragma once

#include "scriptrt/check/ScriptProblem.h"

#include <string>
#include <string_view>

// From 1. A zero byte is a byte like any other.
std::uint64_t LineOf(std::string_view text, std::uint32_t position);

// Behind the last token in front of `position`; 0 if there is none.
std::uint32_t EndOfTokenBefore(std::string_view text, std::uint32_t position);

// Bytes of the text as one writes them in a message: in backquotes, cut when they are many, with nothing that a
// terminal would obey.
std::string Quoted(std::string_view bytes);
