#include "host/console/Module.h"

#include <windows.h>

#include <shlwapi.h>

namespace host {
namespace {

constexpr const char* kModuleName = "OndDeviceClient.dll";

std::string SystemMessage(DWORD code) {
  char text[512];
  DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text,
                                static_cast<DWORD>(sizeof text), nullptr);
  while (length != 0 && (text[length - 1] == '\n' || text[length - 1] == '\r' || text[length - 1] == ' '))
    --length;
  return length != 0 ? std::string(text, length) : "system error " + std::to_string(code);
}

// The folder of this program's file with its backslash.
std::string ProgramFolder() {
  std::string path(MAX_PATH, '\0');
  DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  while (length == path.size()) { // cut off: ask again with more room
    path.resize(path.size() * 2);
    length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  }
  path.resize(length);
  const char* const name = PathFindFileNameA(path.c_str()); // knows which backslash is half a character
  return path.substr(0, static_cast<std::size_t>(name - path.c_str()));
}

template <class Function>
tl::expected<void, const char*> Find(void* module, const char* name, Function& function) {
  const FARPROC address = GetProcAddress(static_cast<HMODULE>(module), name);
  if (!address)
    return tl::unexpected(name);
  function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(address));
  return {};
}

} // namespace

void Module::Unloader::operator()(void* module) const {
  FreeLibrary(static_cast<HMODULE>(module));
}

tl::expected<Module, std::string> Module::Load() {
  const std::string path = ProgramFolder() + kModuleName;
  const HMODULE handle = LoadLibraryA(path.c_str());
  if (!handle)
    return tl::unexpected("cannot load " + path + ": " + SystemMessage(GetLastError()));
  Module module(handle);
  if (const auto found = module.FindExports(); !found)
    return tl::unexpected(path + " has no function " + found.error());
  return module;
}

tl::expected<void, const char*> Module::FindExports() {
  void* const module = m_module.get();
  return Find(module, "OndDeviceClientGetNumObj", m_getNumObj)
      .and_then([&] { return Find(module, "OndDeviceClientGetObjType", m_getObjType); })
      .and_then([&] { return Find(module, "OndDeviceClientGetObjInfo", m_getObjInfo); })
      .and_then([&] { return Find(module, "OndDeviceClientCreateInstance", m_createInstance); })
      .and_then([&] { return Find(module, "OndDeviceClientDeleteInstance", m_deleteInstance); });
}

std::vector<Module::Kind> Module::Kinds() const {
  std::vector<Kind> kinds;
  const std::uint32_t count = m_getNumObj();
  for (std::uint32_t index = 0; index < count; ++index) {
    const std::uint32_t type = m_getObjType(index);
    const auto* name = reinterpret_cast<const char*>(m_getObjInfo(type, 0));
    kinds.push_back({type, name ? name : ""});
  }
  return kinds;
}

Module::Object Module::Create(std::uint32_t type) const {
  return Object(m_createInstance(type), {m_deleteInstance});
}

} // namespace host
