#include "host/channel/stream/LineOptions.h"

#include "host/support/Text.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace host {
namespace {

using std::chrono::milliseconds;

bool ReadPause(std::string_view value, milliseconds& pause) {
  unsigned number = 0;
  if (!ParseNumber(value, number) || number > 60000)
    return false;
  pause = milliseconds(number);
  return true;
}

bool ReadSwitch(std::string_view value, std::optional<bool>& on) {
  if (value == "on" || value == "off")
    on = value == "on";
  return on.has_value();
}

bool ReadFlow(std::string_view value, LineOptions& options) {
  constexpr std::pair<std::string_view, FlowControl> kFlows[] = {
      {"none", FlowControl::kNone}, {"xonxoff", FlowControl::kXonXoff}, {"rtscts", FlowControl::kRtsCts}};
  for (const auto& [name, flow] : kFlows) {
    if (value == name) {
      options.serial.flow = flow;
      return true;
    }
  }
  return false;
}

// The only list of options.
struct OptionKind {
  std::string_view name;
  std::string_view value; // what it looks like in the forms; empty: there is none
  bool serialOnly;
  bool (*read)(std::string_view value, LineOptions& options);
  std::string_view expected;
};

constexpr std::string_view kPauseRange = "milliseconds, 0 to 60000";
constexpr std::array kOptions = std::to_array<OptionKind>({
    {"reconnect", "", false, [](std::string_view, LineOptions& options) { return options.reconnect = true; }, ""},
    {"chardelay", "MS", false,
     [](std::string_view value, LineOptions& options) { return ReadPause(value, options.pace.afterCharacter); },
     kPauseRange},
    {"linedelay", "MS", false,
     [](std::string_view value, LineOptions& options) { return ReadPause(value, options.pace.afterLine); },
     kPauseRange},
    {"dtr", "on|off", true,
     [](std::string_view value, LineOptions& options) { return ReadSwitch(value, options.serial.dtr); }, "on or off"},
    {"rts", "on|off", true,
     [](std::string_view value, LineOptions& options) { return ReadSwitch(value, options.serial.rts); }, "on or off"},
    {"break", "MS", true,
     [](std::string_view value, LineOptions& options) {
       return ReadPause(value, options.serial.breakTime) && options.serial.breakTime >= milliseconds(1) &&
              options.serial.breakTime <= milliseconds(5000);
     },
     "milliseconds, 1 to 5000"},
    {"flow", "none|xonxoff|rtscts", true, ReadFlow, "none, xonxoff or rtscts"},
});

bool IsOf(const OptionKind& option, LineKind kind) {
  return kind == LineKind::kSerial || !option.serialOnly;
}

std::string FormOf(const OptionKind& option) {
  std::string form(option.name);
  return option.value.empty() ? form : form.append("=").append(option.value);
}

// What is wrong with one option; empty: nothing.
std::string Read(LineKind kind, std::string_view text, LineOptions& options, std::set<std::string_view>& given) {
  const std::size_t equals = std::min(text.find('='), text.size());
  const std::string_view name = text.substr(0, equals);
  const auto* const option =
      std::find_if(kOptions.begin(), kOptions.end(), [&](const OptionKind& each) { return each.name == name; });
  if (option == kOptions.end())
    return Quoted(text) + " is no option; there are: " + LineOptionForms(kind);
  if (!IsOf(*option, kind))
    return std::string(name) + " is for serial ports only";
  if (!given.insert(option->name).second)
    return std::string(name) + " is given twice";
  if (option->value.empty() && equals != text.size())
    return std::string(name) + " takes no value";
  const std::string_view value = equals == text.size() ? std::string_view() : text.substr(equals + 1);
  if (!option->read(value, options))
    return std::string(text) + ": expected " + std::string(option->expected);
  return {};
}

} // namespace

std::string LineOptionForms(LineKind kind) {
  std::string forms;
  for (const OptionKind& option : kOptions) {
    if (IsOf(option, kind))
      forms.append(forms.empty() ? "" : ", ").append(FormOf(option));
  }
  return forms;
}

std::pair<std::string, std::string> SplitLineOptions(const std::string& settings) {
  const std::size_t colon = settings.rfind(':');
  const std::size_t comma = settings.find(',', colon == std::string::npos ? 0 : colon);
  if (comma == std::string::npos)
    return {settings, ""};
  return {settings.substr(0, comma), settings.substr(comma)};
}

tl::expected<LineOptions, std::string> ParseLineOptions(LineKind kind, const std::string& text) {
  LineOptions options;
  std::set<std::string_view> given;
  std::string_view rest = text;
  while (!rest.empty()) {
    rest.remove_prefix(1); // the comma
    const std::string_view option = rest.substr(0, rest.find(','));
    if (std::string mistake = Read(kind, option, options, given); !mistake.empty())
      return tl::unexpected(std::move(mistake));
    rest.remove_prefix(option.size());
  }
  if (options.serial.rts && options.serial.flow == FlowControl::kRtsCts)
    return tl::unexpected<std::string>("rts does not go with flow=rtscts, which moves that line itself");
  return options;
}

} // namespace host
