// Texts built by printf's formats.
#pragma once

#include <string>

// As long as it needs to be.
[[gnu::format(gnu_printf, 1, 2)]] std::string FormatText(const char* format, ...);
