// From exit codes to verdicts about parts, and from several scripts to one code.
#pragma once

#include "host/report/RunRecord.h"

#include <span>
#include <string_view>

namespace host {

// A run exits with this when its script ran, and the part is bad.
inline constexpr int kExitPartFailed = 10;

Verdict VerdictOf(int code);
// "passed", "failed", "not tested", "not run"
std::string_view TextOf(Verdict verdict);
// What a call exits with: the first code that says that something was not tested; otherwise that the part failed if any
// script says so.
int CodeOf(std::span<const ScriptRecord> scripts);

} // namespace host
