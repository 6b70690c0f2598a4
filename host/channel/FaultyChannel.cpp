#include "host/channel/FaultyChannel.h"

#include "host/support/Text.h"

#include <utility>

namespace host {
namespace {

// Of the operations that can fail.
std::optional<ChannelOperation> FindOperation(std::string_view name) {
  for (const ChannelOperationTraits& known : kChannelOperations) {
    if (known.canFail && EqualIgnoringCase(known.name, name))
      return known.operation;
  }
  return std::nullopt;
}

std::string UnknownOperation(std::string_view name) {
  std::string text = "unknown operation " + Quoted(name) + "; there are";
  std::string_view separator = " ";
  for (const ChannelOperationTraits& known : kChannelOperations) {
    if (known.canFail)
      text.append(std::exchange(separator, ", ")).append(known.name);
  }
  return text;
}

} // namespace

tl::expected<Fault, std::string> ParseFault(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos)
    return tl::unexpected<std::string>("expected OPERATION[:N]=CODE, as in TransmitFile:2=6");
  const std::string_view target = text.substr(0, equals);
  const std::string_view code = text.substr(equals + 1);
  const std::size_t colon = target.find(':');
  const std::string_view name = target.substr(0, colon);

  const auto operation = FindOperation(name);
  if (!operation)
    return tl::unexpected(UnknownOperation(name));
  Fault fault{*operation, 0, 0};
  if (colon != std::string_view::npos && (!ParseNumber(target.substr(colon + 1), fault.call) || fault.call == 0))
    return tl::unexpected(Quoted(target.substr(colon + 1)) + " is not the number of a call (1, 2, ...)");
  if (!ParseNumber(code, fault.code))
    return tl::unexpected(Quoted(code) + " is not a code (-2147483648 to 2147483647)");
  return fault;
}

FaultyChannel::FaultyChannel(std::unique_ptr<Channel> inner, std::vector<Fault> faults)
    : ForwardingChannel(std::move(inner)), m_faults(std::move(faults)) {}

void FaultyChannel::Around(ChannelCall& call) {
  const auto code = NextFault(call.operation);
  // Nobody looks at what `Unlock` answers, so a lock that stayed taken would only lock every client out for good.
  if (!code || call.operation == ChannelOperation::kUnlock)
    call.Forward();
  if (code)
    call.AnswerInstead(*code);
}

std::optional<std::int32_t> FaultyChannel::NextFault(ChannelOperation operation) {
  std::uint64_t call = 0;
  {
    const std::lock_guard guard(m_mutex);
    call = ++m_calls[IndexOf(operation)];
  }
  for (const Fault& fault : m_faults) {
    if (fault.operation == operation && (fault.call == 0 || fault.call == call))
      return fault.code;
  }
  return std::nullopt;
}

} // namespace host
