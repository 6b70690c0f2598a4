// The contract header alone, twice, and used as a host uses it: with every compiler that a host may be built with.
#include "frame/contract/OndDeviceClient.h"

#include "frame/contract/OndDeviceClient.h"

static_assert(sizeof(void*) == 8, "the contract is for 64-bit programs");

std::uint32_t Use(COndDeviceComm_0* channel);

std::uint32_t Use(COndDeviceComm_0* channel) {
  const OndDeviceClientGetNumObjFunction count = &OndDeviceClientGetNumObj;
  const OndDeviceClientGetObjTypeFunction type = &OndDeviceClientGetObjType;
  const OndDeviceClientGetObjInfoFunction info = &OndDeviceClientGetObjInfo;
  const OndDeviceClientCreateInstanceFunction create = &OndDeviceClientCreateInstance;
  const OndDeviceClientDeleteInstanceFunction end = &OndDeviceClientDeleteInstance;
  CONXDeviceClient_0* client = create(type(count() - 1));
  client->Connect(channel);
  const EONX_ERR_ERRCODE_ result = client->Call(ONX_CALL_EXECUTE_SCRIPT, info(ONX_OBJ_TERMINAL, 0), 0, 0, 0);
  end(client);
  return result == EONX_ERR_NONE ? channel->GetState() : 0;
}
