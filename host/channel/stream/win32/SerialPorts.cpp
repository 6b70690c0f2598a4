#include "host/channel/stream/SerialPorts.h"

#include <windows.h> // before the rest of the system's

#include <algorithm>
#include <devguid.h>
#include <map>
#include <memory>
#include <setupapi.h>
#include <tuple>

namespace host {
namespace {

struct KeyCloser {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

struct DeviceListCloser {
  void operator()(HDEVINFO list) const { SetupDiDestroyDeviceInfoList(list); }
};

constexpr DWORD kLongestText = 256; // of names in the registry; longer ones are left out

// Friendly names by the names of their ports: "USB Serial Port (COM3)".
std::map<std::string, std::string> FriendlyNames() {
  std::map<std::string, std::string> names;
  const HDEVINFO found = SetupDiGetClassDevsA(&GUID_DEVCLASS_PORTS, nullptr, nullptr, DIGCF_PRESENT);
  if (found == INVALID_HANDLE_VALUE)
    return names;
  const std::unique_ptr<void, DeviceListCloser> list(found);
  SP_DEVINFO_DATA device = {};
  device.cbSize = sizeof device;
  for (DWORD i = 0; SetupDiEnumDeviceInfo(found, i, &device) != FALSE; ++i) {
    HKEY opened = SetupDiOpenDevRegKey(found, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
    if (opened == INVALID_HANDLE_VALUE)
      continue;
    const Key key(opened);
    char port[kLongestText] = "";
    char name[kLongestText] = "";
    DWORD size = sizeof port;
    if (RegGetValueA(key.get(), nullptr, "PortName", RRF_RT_REG_SZ, nullptr, port, &size) == ERROR_SUCCESS &&
        SetupDiGetDeviceRegistryPropertyA(found, &device, SPDRP_FRIENDLYNAME, nullptr, reinterpret_cast<BYTE*>(name),
                                          sizeof name - 1, nullptr) != FALSE)
      names[port] = name;
  }
  return names;
}

} // namespace

// The drivers write their ports into a key; who the device is, the set-up knows.
std::vector<SerialPort> ListSerialPorts(const std::string&) {
  std::vector<SerialPort> ports;
  HKEY opened = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &opened) != ERROR_SUCCESS)
    return ports;
  const Key key(opened);
  auto friendlyNames = FriendlyNames();
  LSTATUS status = ERROR_SUCCESS;
  for (DWORD i = 0; status == ERROR_SUCCESS || status == ERROR_MORE_DATA; ++i) {
    char driver[kLongestText] = "";
    char port[kLongestText] = "";
    DWORD driverSize = sizeof driver;
    DWORD portSize = sizeof port - 1; // a text need not have its zero
    status =
        RegEnumValueA(key.get(), i, driver, &driverSize, nullptr, nullptr, reinterpret_cast<BYTE*>(port), &portSize);
    if (status != ERROR_SUCCESS)
      continue;
    const std::string& friendly = friendlyNames[port];
    ports.push_back({port, friendly.empty() ? std::string("driver ") + driver : friendly, ""});
  }
  // COM10 behind COM2
  const auto order = [](const SerialPort& port) { return std::tuple(port.name.size(), port.name); };
  std::sort(ports.begin(), ports.end(), [&](const auto& a, const auto& b) { return order(a) < order(b); });
  return ports;
}

} // namespace host
