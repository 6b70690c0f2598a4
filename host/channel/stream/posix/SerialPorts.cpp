#include "host/channel/stream/SerialPorts.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <system_error>
#include <tuple>

namespace host {
namespace {

namespace fs = std::filesystem;

// A file of the kernel's that holds one line; empty when there is none.
std::string ReadLine(const fs::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line;
}

// Throws nothing when the folder is missing or goes away.
std::vector<fs::path> EntriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    entries.push_back(entry->path());
  return entries;
}

// What a USB device tells about itself stands in one of the folders above its ports.
std::string UsbDescription(fs::path folder, const fs::path& top) {
  for (; folder != top && folder != folder.root_path(); folder = folder.parent_path()) {
    const std::string product = ReadLine(folder / "product");
    if (product.empty())
      continue;
    const std::string maker = ReadLine(folder / "manufacturer");
    const std::string number = ReadLine(folder / "serial");
    // Some makers put their name into the product's.
    return (maker.empty() || product.starts_with(maker) ? product : maker + " " + product) +
           (number.empty() ? "" : ", serial number " + number);
  }
  return {};
}

// Of the first folder upwards whose driver belongs to the device: newer kernels have some that all ports share.
std::string DriverOf(fs::path folder, const fs::path& top) {
  std::error_code error;
  while (folder != top && folder != folder.root_path() &&
         (!exists(folder / "driver", error) || read_symlink(folder / "subsystem", error).filename() == "serial-base"))
    folder = folder.parent_path();
  return read_symlink(folder / "driver", error).filename().string();
}

std::string Describe(const fs::path& device, const fs::path& root) {
  std::error_code error;
  const fs::path folder = canonical(device, error);
  const fs::path top = canonical(root / "sys/devices", error);
  std::string usb = UsbDescription(folder, top);
  return usb.empty() ? "driver " + DriverOf(folder, top) : usb;
}

// The kernel also lists terminals without a device, and places for ports that nothing is plugged into.
bool IsPort(const fs::path& terminal) {
  std::error_code error;
  return exists(terminal / "device" / "driver", error) && ReadLine(terminal / "type") != "0";
}

// By the names of the devices they stand for.
std::map<std::string, std::string> StableNames(const fs::path& root) {
  std::map<std::string, std::string> names;
  for (const fs::path& link : EntriesOf(root / "dev/serial/by-id")) {
    std::error_code error;
    names[read_symlink(link, error).filename().string()] = "/dev/serial/by-id/" + link.filename().string();
  }
  return names;
}

} // namespace

std::vector<SerialPort> ListSerialPorts(const std::string& root) {
  const fs::path top = root.empty() ? "/" : root;
  auto stableNames = StableNames(top);
  std::vector<SerialPort> ports;
  for (const fs::path& terminal : EntriesOf(top / "sys/class/tty")) {
    const std::string name = terminal.filename().string();
    if (IsPort(terminal))
      ports.push_back({"/dev/" + name, Describe(terminal / "device", top), stableNames[name]});
  }
  // ttyUSB10 behind ttyUSB2
  const auto key = [](const SerialPort& port) { return std::tuple(port.name.size(), port.name); };
  std::sort(ports.begin(), ports.end(), [&](const auto& a, const auto& b) { return key(a) < key(b); });
  return ports;
}

} // namespace host
