// OndDeviceClient.dll, loaded as any host loads it.
#pragma once

#include "frame/contract/OndDeviceClient.h"

#include <tl/expected.hpp>

#include <memory>
#include <string>
#include <vector>

namespace host {

// The loaded module; unloaded by the destructor, which must come after the end of all objects.
class Module {
public:
  struct Kind {
    std::uint32_t type;
    std::string name;
  };
  struct ObjectDeleter {
    OndDeviceClientDeleteInstanceFunction deleteInstance = nullptr;
    void operator()(CONXDeviceClient_0* object) const { deleteInstance(object); }
  };
  using Object = std::unique_ptr<CONXDeviceClient_0, ObjectDeleter>;

  // Loads the module from the folder of this program. Otherwise tells what the system said.
  static tl::expected<Module, std::string> Load();

  std::vector<Kind> Kinds() const;
  // Null when the module has no such object.
  Object Create(std::uint32_t type) const;

private:
  struct Unloader {
    void operator()(void* module) const;
  };
  explicit Module(void* module) : m_module(module) {}
  // The name of an export that is missing when the file is some other module.
  tl::expected<void, const char*> FindExports();

  std::unique_ptr<void, Unloader> m_module;
  OndDeviceClientGetNumObjFunction m_getNumObj = nullptr;
  OndDeviceClientGetObjTypeFunction m_getObjType = nullptr;
  OndDeviceClientGetObjInfoFunction m_getObjInfo = nullptr;
  OndDeviceClientCreateInstanceFunction m_createInstance = nullptr;
  OndDeviceClientDeleteInstanceFunction m_deleteInstance = nullptr;
};

} // namespace host
