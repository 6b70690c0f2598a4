// The five exported functions and the table of the objects that the module makes.
#include "filemanager/CONXFileManager.h"
#include "frame/contract/OndDeviceClient.h"
#include "scriptrt/window/CONXScriptProcessor.h"
#include "terminal/CONXTerminal.h"
#include "util/NoThrow.h"

#include <iterator>

namespace {

struct Kind {
  std::uint32_t type;
  const char* name;
  CONXDeviceClient* (*create)();
};

template <typename Client>
CONXDeviceClient* Create() {
  return new Client;
}

constexpr Kind kKinds[] = {
    {ONX_OBJ_TERMINAL, "Terminal", Create<CONXTerminal>},
    {ONX_OBJ_FILE_MANAGER, "File Manager", Create<CONXFileManager>},
    {ONX_OBJ_SCRIPT_PROCESSOR, "Script Processor", Create<CONXScriptProcessor>},
};

const Kind* FindKind(std::uint32_t type) {
  for (const Kind& kind : kKinds)
    if (kind.type == type)
      return &kind;
  return nullptr;
}

} // namespace

extern "C" {

std::uint32_t OndDeviceClientGetNumObj() {
  return std::size(kKinds);
}

std::uint32_t OndDeviceClientGetObjType(std::size_t index) {
  return index < std::size(kKinds) ? kKinds[index].type : std::uint32_t{ONX_OBJ_INVALID};
}

std::uintptr_t OndDeviceClientGetObjInfo(std::uint32_t type, std::uint32_t what) {
  const Kind* kind = FindKind(type);
  if (!kind)
    return 0;
  switch (what) {
  case 0:
    return reinterpret_cast<std::uintptr_t>(kind->name);
  case 1:
    return 1;
  default:
    return 0;
  }
}

CONXDeviceClient_0* OndDeviceClientCreateInstance(std::uint32_t type) {
  const Kind* kind = FindKind(type);
  CONXDeviceClient* const none = nullptr;
  return kind ? NoThrow(none, kind->create) : none;
}

void OndDeviceClientDeleteInstance(CONXDeviceClient_0* object) {
  // Everything that answers one of the module's types is of the module's making, whose objects all have this base.
  if (object && FindKind(object->GetObjType()))
    delete static_cast<CONXDeviceClient*>(object);
}
}
