// What stands behind the commas of `tcp:` and `serial:` in the text of a channel.
#pragma once

#include "host/channel/stream/Pacer.h"
#include "host/channel/stream/StreamSettings.h"

#include <string>
#include <utility>

namespace host {

struct LineOptions {
  bool reconnect = false; // a lost line is opened again
  Pace pace;
  SerialOptions serial;
};

enum class LineKind { kTcp, kSerial };

// "reconnect, chardelay=MS, …": the options of a kind, for users.
std::string LineOptionForms(LineKind kind);

// Cuts a channel's settings at the comma that begins the options, which keep it. Names of ports may hold commas; the
// last colon stands behind the name.
std::pair<std::string, std::string> SplitLineOptions(const std::string& settings);

// Reads options, each with its comma; none in an empty text. Otherwise what is wrong, for users.
tl::expected<LineOptions, std::string> ParseLineOptions(LineKind kind, const std::string& text);

} // namespace host
