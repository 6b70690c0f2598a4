// What the page about the language says about the built-in functions, for a terminal.
#pragma once

#include <string>
#include <string_view>

// docs/language.md, as it is.
extern const char* const kLanguagePage;

// The functions' names, by the page's headings.
std::string ListBuiltIns();
// How a function is called and what it does; empty: there is none of this name. Case does not matter.
std::string HelpForBuiltIn(std::string_view name);
