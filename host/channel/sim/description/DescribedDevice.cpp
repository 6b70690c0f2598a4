#include "host/channel/sim/description/DescribedDevice.h"

#include "host/channel/sim/DeviceConsole.h"
#include "host/channel/sim/description/DescribedConsole.h"
#include "host/channel/sim/description/DeviceReader.h"
#include "host/support/Files.h"
#include "host/support/Text.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <utility>

namespace host {
namespace {

constexpr std::uint64_t kLongestFile = 1 << 20;
constexpr std::uint64_t kLargestFileAtStart = 16 << 20;
constexpr std::size_t kMostMistakes = 20; // that are told

struct Settings {
  std::string file;
  std::optional<std::uint32_t> seed;
};

tl::expected<Settings, std::string> ReadSettings(const std::string& text) {
  constexpr std::string_view kSeed = ",seed=";
  Settings settings{text, {}};
  if (const std::size_t at = text.rfind(kSeed); at != std::string::npos) {
    const std::string number = text.substr(at + kSeed.size());
    std::uint32_t seed = 0;
    if (!ParseNumber(number, seed))
      return tl::unexpected("the seed " + Quoted(number) + " is not a number from 0 to 4294967295");
    settings = {text.substr(0, at), seed};
  }
  if (settings.file.empty())
    return tl::unexpected("expected " + std::string(kSimForm));
  return settings;
}

// A path in a device file, as seen from where the file lies.
std::string BesideFile(const std::string& file, const std::string& path) {
  const bool isWhole = path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
  const std::size_t separator = file.find_last_of("/\\:");
  return isWhole || separator == std::string::npos ? path : file.substr(0, separator + 1) + path;
}

std::string MistakesText(const std::string& file, const std::vector<Mistake>& mistakes) {
  std::string text;
  for (std::size_t i = 0; i < std::min(mistakes.size(), kMostMistakes); ++i) {
    const Mistake& mistake = mistakes[i];
    text += (i == 0 ? "" : "\n") + file + ":" + std::to_string(mistake.line) + ":" + std::to_string(mistake.column) +
            ": " + mistake.text;
  }
  if (mistakes.size() > kMostMistakes)
    text += "\n" + std::to_string(mistakes.size() - kMostMistakes) + " more lines are wrong";
  return text;
}

tl::expected<DeviceDescription, PartsFailure> ReadDevice(const std::string& file) {
  const ReadResult text = ReadWholeFile(file, kLongestFile);
  if (!text && text.error() == ReadFailure::kTooLarge)
    return tl::unexpected(PartsFailure{file + ": the file is too long for a description of a device", true});
  if (!text)
    return tl::unexpected(PartsFailure{file + ": the file cannot be read"});
  auto device = ParseDevice(*text);
  if (!device)
    return tl::unexpected(PartsFailure{MistakesText(file, device.error()), true});
  return std::move(*device);
}

tl::expected<std::optional<StoreFolder>, PartsFailure> OpenFolder(const std::string& path) {
  if (path.empty())
    return std::nullopt;
  auto folder = StoreFolder::Open(path);
  if (!folder)
    return tl::unexpected(PartsFailure{"cannot use the folder " + path + " for the device's files"});
  return folder;
}

// Puts the files at the start into a store that has as many blocks as the description wants.
tl::expected<FileStore, PartsFailure> MakeStore(StoreDescription& wanted, const std::string& file) {
  auto folder = OpenFolder(wanted.folder);
  if (!folder)
    return tl::unexpected(folder.error());
  std::uint64_t blocks = wanted.blocks;
  for (FileAtStart& each : wanted.files) {
    if (!each.path.empty()) {
      ReadResult bytes = ReadWholeFile(BesideFile(file, each.path), kLargestFileAtStart);
      if (!bytes)
        return tl::unexpected(PartsFailure{
            file + ":" + std::to_string(each.line) + ": " + Quoted(each.path) +
                (bytes.error() == ReadFailure::kTooLarge ? " is too large for the device" : " cannot be read"),
            true});
      each.bytes = std::move(*bytes);
    }
    if (wanted.areFree)
      blocks += BlocksFor(each.bytes.size());
  }
  FileStore store(static_cast<std::uint32_t>(std::min<std::uint64_t>(blocks, UINT32_MAX)), std::move(*folder));
  for (const FileAtStart& each : wanted.files) {
    if (const ChannelError error = store.Store({each.bytes, each.id, each.type, OND_FILE_NORMAL}); error != kChannelOk)
      return tl::unexpected(PartsFailure{file + ":" + std::to_string(each.line) +
                                             ": the file cannot be on the device: " + ErrorCodeText(error),
                                         error == kDeviceFull});
  }
  return store;
}

} // namespace

tl::expected<DeviceParts, PartsFailure> BuiltInParts(const SimulatedDeviceOptions& options) {
  auto folder = OpenFolder(options.folder);
  if (!folder)
    return tl::unexpected(folder.error());
  DeviceParts parts{FileStore(options.blocks, std::move(*folder)),
                    [](const FileStore& files) { return std::make_unique<DeviceConsole>(files); }};
  parts.blockTime = options.blockTime.value_or(parts.blockTime);
  return parts;
}

tl::expected<DeviceParts, PartsFailure>
DescribedParts(const std::string& settings, const SimulatedDeviceOptions& options, std::vector<Fault>& faults) {
  const auto wanted = ReadSettings(settings);
  if (!wanted)
    return tl::unexpected(PartsFailure{wanted.error(), true});
  auto device = ReadDevice(wanted->file);
  if (!device)
    return tl::unexpected(device.error());
  if (!options.folder.empty())
    device->store.folder = options.folder;
  else if (!device->store.folder.empty())
    device->store.folder = BesideFile(wanted->file, device->store.folder);
  auto store = MakeStore(device->store, wanted->file);
  if (!store)
    return tl::unexpected(store.error());

  const auto makeConsole = [console = std::move(device->console)](const FileStore& files) {
    return std::make_unique<DescribedConsole>(console, files, std::chrono::steady_clock::now());
  };
  DeviceParts parts{std::move(*store), makeConsole};
  parts.name = device->name;
  parts.remark = "described by " + wanted->file;
  parts.hasFiles = device->store.exists;
  parts.blockTime = options.blockTime.value_or(device->store.blockTime);
  parts.cable = device->cable;
  if (parts.cable.AreRandom()) {
    const auto seed = wanted->seed ? wanted->seed : device->seed;
    parts.seed = seed ? *seed : std::random_device()();
    parts.remark += ", seed " + std::to_string(parts.seed);
    parts.notice = "the faults of " + wanted->file + " are random: --channel \"sim:" + wanted->file +
                   ",seed=" + std::to_string(parts.seed) + "\" repeats them";
  }
  faults.insert(faults.end(), device->faults.begin(), device->faults.end());
  return parts;
}

} // namespace host
