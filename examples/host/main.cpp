// Runs one script on a channel of its own and exchanges two variables with it.
#include "LoopChannel.h"

#include <cstdio>
#include <memory>

namespace {

struct DeleteClient {
  void operator()(CONXDeviceClient_0* client) const { OndDeviceClientDeleteInstance(client); }
};
using Client = std::unique_ptr<CONXDeviceClient_0, DeleteClient>;

template <typename T>
std::uint64_t Argument(T* pointer) {
  return reinterpret_cast<std::uint64_t>(pointer);
}

void Print(void*, const char* text) {
  std::fputs(text, stdout);
}

constexpr char kScript[] = R"(
  transmitstring("measure " + channel + "\n");
  print("the device got: ", receivestring());
  rounds += 1;
)";

} // namespace

int main() {
  LoopChannel channel; // outlives the client that is connected to it
  const Client processor(OndDeviceClientCreateInstance(ONX_OBJ_SCRIPT_PROCESSOR));
  if (!processor)
    return 1;
  processor->Connect(&channel);

  // Numbers are handed in through a pointer to 64 bits, strings through a pointer and a length.
  const std::uint64_t rounds = 41;
  TONXSCRIPTVARIABLE given[2] = {};
  given[0].name = "rounds";
  given[0].type = ONX_TYPE_INT32;
  given[0].value = Argument(&rounds);
  given[1].name = "channel";
  given[1].type = ONX_TYPE_STRING;
  given[1].value = Argument("A1");
  given[1].length = 2;
  processor->Call(ONX_CALL_SET_VARIABLES, Argument(given), 2, 0, 0);

  const EONX_ERR_ERRCODE_ result = processor->Call(ONX_CALL_EXECUTE_SCRIPT, Argument(kScript), Argument(Print), 0, 0);
  if (result != EONX_ERR_NONE)
    return result;

  // Reading back, the number itself stands in the record.
  TONXSCRIPTVARIABLE asked = {};
  asked.name = "rounds";
  std::uint64_t found = 0;
  processor->Call(ONX_CALL_GET_VARIABLES, Argument(&asked), 1, Argument(&found), 0);
  std::printf("rounds = %d\n", static_cast<std::int32_t>(asked.value));
  return found == 1 ? 0 : 1;
}
