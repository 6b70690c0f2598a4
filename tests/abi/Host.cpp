// A host made by another compiler: the C++ ABI and the linker of Microsoft's tools, no library at all, nothing of the
// module's but the contract header. It links against the import library that such hosts get, and passes the module its
// own channel.
#include "EchoChannel.h"

namespace {

struct Output {
  char text[1024] = {};
  std::size_t length = 0;

  static void Append(void* context, const char* text) {
    auto& output = *static_cast<Output*>(context);
    while (*text != 0 && output.length + 1 < sizeof output.text)
      output.text[output.length++] = *text++;
  }
};

std::uint64_t Address(const void* pointer) {
  return reinterpret_cast<std::uint64_t>(pointer);
}
std::uint64_t Address(OndScriptOutput function) {
  return reinterpret_cast<std::uint64_t>(function);
}

EONX_ERR_ERRCODE_ RunScript(CONXDeviceClient_0& processor, const char* script, Output& output) {
  return processor.Call(ONX_CALL_EXECUTE_SCRIPT, Address(script), Address(Output::Append), Address(&output), 0);
}

// Every place of the channel's table, called by number as the module's compiler would.
void WalkChannelTable() {
  constexpr int kPlaceCount = 33;
  const char* names[kPlaceCount];
  for (const char*& name : names)
    name = "reserved";
  names[10] = "GetInfoString";
  names[11] = "Lock";
  names[13] = "Unlock";
  names[15] = "GetState";
  names[19] = "Receive";
  names[20] = "Transmit";
  names[23] = "TransmitFileFromMemory";
  names[25] = "TransmitFile";
  names[27] = "ReadDirectory";
  names[28] = "GetDirectoryEntryCount";
  names[29] = "GetDirectoryEntry";
  names[30] = "GetDirectoryInfo";
  names[31] = "DeleteDeviceFile";
  names[32] = "FormatDevice";
  constexpr int kLock = 11, kUnlock = 13;
  // With zeros for arguments; operations that take fewer do not look at the rest. A count is written to the third one
  // by Receive and Transmit.
  using Call = std::uint64_t (*)(void* self, void* a, std::uint64_t b, void* c, std::uint64_t d, std::uint64_t e,
                                 std::uint64_t f, std::uint64_t g, std::uint64_t h, std::uint64_t i);
  EchoChannel channel;
  void* self = static_cast<COndDeviceComm_0*>(&channel);
  const Call* table = *static_cast<const Call* const*>(self);
  std::uint64_t count = 0;
  const auto call = [&](int place) {
    channel.lastCall = "nothing";
    table[place](self, nullptr, 0, &count, 0, 0, 0, 0, 0, 0);
    Check(Same(channel.lastCall, names[place]), names[place]);
  };
  call(kLock);
  for (int place = 0; place < kPlaceCount; ++place) {
    if (place != kLock && place != kUnlock)
      call(place);
  }
  call(kUnlock);
  Check(channel.trapCalls == 19, "every reserved place leads to a reserved operation");
  Check(channel.IsFree(), "the walk leaves the channel free");
}

void TestExports() {
  Check(OndDeviceClientGetNumObj() == 3, "three kinds of object");
  static const struct {
    std::uint32_t type;
    const char* name;
  } kKinds[] = {{ONX_OBJ_TERMINAL, "Terminal"},
                {ONX_OBJ_FILE_MANAGER, "File Manager"},
                {ONX_OBJ_SCRIPT_PROCESSOR, "Script Processor"}};
  for (std::size_t i = 0; i < 3; ++i) {
    Check(OndDeviceClientGetObjType(i) == kKinds[i].type, "type of a kind");
    const auto* name = reinterpret_cast<const char*>(OndDeviceClientGetObjInfo(kKinds[i].type, 0));
    Check(name && Same(name, kKinds[i].name), "name of a kind");
    Check(OndDeviceClientGetObjInfo(kKinds[i].type, 1) == 1, "every kind answers 1");
    Check(OndDeviceClientGetObjInfo(kKinds[i].type, 2) == 0, "there is no third question");
  }
  Check(OndDeviceClientGetObjType(3) == ONX_OBJ_INVALID, "no fourth kind");
  Check(OndDeviceClientGetObjType(~std::size_t{0}) == ONX_OBJ_INVALID, "an index of all ones");
  Check(OndDeviceClientGetObjInfo(0x0FFF, 0) == 0, "no name for an unknown type");
  Check(OndDeviceClientCreateInstance(0x0FFF) == nullptr, "no object of an unknown type");
  OndDeviceClientDeleteInstance(nullptr);
}

std::uint32_t CountEvent(CONXDeviceClient_0*, void* count, std::uint32_t) {
  ++*static_cast<int*>(count);
  return 1;
}

// What every object does, whatever its kind: each operation of its table once.
void TestObject(std::uint32_t type, EchoChannel& channel) {
  CONXDeviceClient_0* object = OndDeviceClientCreateInstance(type);
  Check(object != nullptr, "an object is made");
  if (!object)
    return;
  std::uint64_t value = 7;
  Check(object->GetObjType() == type, "GetObjType");
  Check(object->GetParam(1, &value, &value, &value, &value) == -1 && value == 7, "GetParam");
  Check(object->SetParam(1, 1, 2, 3, 4) == -1, "SetParam");
  Check(object->GetParamLimits(1, &value, &value, &value, &value, &value, &value, &value, &value) == -1 && value == 7,
        "GetParamLimits");
  Check(object->Connect(&channel) == EONX_ERR_NONE, "Connect");
  Check(object->Call(0x4711, 1, 2, 3, 4) == EONX_ERR_NONE, "Call with an unknown command");
  int events = 0;
  _TONX_DLGEVENTDATA data{};
  data.callback = CountEvent;
  data.userData = &events;
  object->SetDlgEventData(&data);
  Check(object->CloseDialogNonModal() == EONX_ERR_DIALOG, "there is no window to close yet");
  Check(object->IsNonModalDialogOpen() == 0, "no window is open yet");
  // Whether there is a window depends on the display; either way the three operations agree.
  const EONX_ERR_ERRCODE_ shown = object->ShowDialogNonModal(nullptr);
  Check(shown == EONX_ERR_NONE || shown == EONX_ERR_DIALOG, "ShowDialogNonModal");
  Check(object->IsNonModalDialogOpen() == (shown == EONX_ERR_NONE ? 1 : 0), "IsNonModalDialogOpen");
  Check(object->CloseDialogNonModal() == shown, "CloseDialogNonModal");
  Check(object->IsNonModalDialogOpen() == 0, "the window is closed");
  Check(events == 0, "hiding a window by the host is no event");
  Check(object->Connect(nullptr) == EONX_ERR_NONE, "Connect with null");
  OndDeviceClientDeleteInstance(object);
}

void TestScript(CONXDeviceClient_0& processor, EchoChannel& channel) {
  Output output;
  channel.lockCalls = 0;
  const char* script = "func ask(var string question) {\n"
                       "  transmitstring(question);\n"
                       "  ask = receivestring();\n"
                       "}\n"
                       "print(\"the device says \", ask(\"hello\\r\\n\"));\n";
  Check(RunScript(processor, script, output) == EONX_ERR_NONE, "a script that talks to the device");
  Check(Same(output.text, "the device says hello\r\n"), "what that script prints");
  Check(channel.lockCalls > 0 && channel.IsFree(), "locks pair after a script");
  Print(output.text);

  Output failed;
  Check(RunScript(processor, "x = 1;", failed) == EONX_ERR_SCRIPT, "a script with an unknown name");
  Check(Same(failed.text, "Unknown identifier near line 1/column 1 (offset 0) during parsing\n"),
        "its diagnostic line");
  Check(channel.IsFree(), "locks pair after a failed script");
  Print(failed.text);

  Check(processor.Call(ONX_CALL_STOP_SCRIPT, 0, 0, 0, 0) == EONX_ERR_NONE, "a stop request without a run");
  Check(processor.Call(ONX_CALL_EXECUTE_SCRIPT, Address("print(1);"), 0, 0, 0) == EONX_ERR_NONE,
        "a run after it, without a function for the output");
  Check(processor.Call(ONX_CALL_EXECUTE_SCRIPT_FILE, Address("no such file.dcs"), 0, 0, 0) == EONX_ERR_FILE_OPEN,
        "a file that is not there");
  channel.refuseLock = true; // and must not be given back
  Check(processor.Call(ONX_CALL_EXECUTE_SCRIPT, Address("print(1);"), 0, 0, 0) == EONX_ERR_LOCKED, "a locked channel");
  channel.refuseLock = false;
}

TONXSCRIPTVARIABLE Record(const char* name, std::uint32_t type, const void* value, std::uint64_t length) {
  TONXSCRIPTVARIABLE record{};
  record.name = name;
  record.type = type;
  record.value = Address(value);
  record.length = length;
  return record;
}

// Records lie one behind the other, and their fields where both sides look.
void TestVariables(CONXDeviceClient_0& processor) {
  const std::uint64_t number = 41, wide = 0x123456789ABCDEF0;
  TONXSCRIPTVARIABLE given[] = {Record("Counter", ONX_TYPE_INT32, &number, 0), Record("Odd", 7, nullptr, 0),
                                Record("Text", ONX_TYPE_STRING, "a\0b", 3), Record("Wide", ONX_TYPE_UINT64, &wide, 0)};
  Check(processor.Call(ONX_CALL_SET_VARIABLES, Address(given), 3, 0, 0) == EONX_ERR_NONE, "variables are set");
  Check(processor.Call(ONX_CALL_SET_VARIABLES, Address(given + 3), 1, 1, 0) == EONX_ERR_NONE, "a variable is added");
  Output output;
  Check(RunScript(processor, "counter += 1; text += \"!\"; wide += 1;", output) == EONX_ERR_NONE, "a script uses them");

  TONXSCRIPTVARIABLE asked[] = {Record("COUNTER", 0, nullptr, 0), Record("odd", 0, nullptr, 0),
                                Record("text", 0, nullptr, 0), Record("wide", 0, nullptr, 0)};
  std::uint64_t found = 99;
  Check(processor.Call(ONX_CALL_GET_VARIABLES, Address(asked), 4, Address(&found), 0) == EONX_ERR_NONE && found == 3,
        "three of four names are found");
  Check(asked[0].type == ONX_TYPE_INT32 && static_cast<std::uint32_t>(asked[0].value) == 42, "the number");
  Check(asked[1].type == 0 && asked[1].value == 0, "a record of an unknown type was passed over");
  const auto* text = reinterpret_cast<const char*>(asked[2].value);
  Check(asked[2].type == ONX_TYPE_STRING && asked[2].length == 4 && text && text[0] == 'a' && text[1] == 0 &&
            text[2] == 'b' && text[3] == '!',
        "the string with a zero byte");
  Check(asked[3].type == ONX_TYPE_UINT64 && asked[3].value == wide + 1, "the 64-bit number");
}

// An object of the host's own, which the module must not end. Asking its type is all the module may do; what other
// operations would have to do does not matter, so they are one function.
int g_otherCalls = 0;
std::uint64_t ForeignType(void*) {
  return 0x2000;
}
std::uint64_t OtherCall(void*) {
  return static_cast<std::uint64_t>(++g_otherCalls);
}

void TestForeignObject() {
  using Operation = std::uint64_t (*)(void* self);
  static const Operation kTable[] = {ForeignType, OtherCall, OtherCall, OtherCall, OtherCall,
                                     OtherCall,   OtherCall, OtherCall, OtherCall, OtherCall};
  const Operation* foreign = kTable; // an object begins with the address of its table
  auto* object = reinterpret_cast<CONXDeviceClient_0*>(&foreign);
  OndDeviceClientDeleteInstance(object);
  Check(object->GetObjType() == 0x2000 && g_otherCalls == 0, "a foreign object is left alone");
}

} // namespace

void Run() {
  WalkChannelTable();
  TestExports();
  EchoChannel channel;
  for (std::size_t kind = 0; kind < OndDeviceClientGetNumObj(); ++kind)
    TestObject(OndDeviceClientGetObjType(kind), channel);

  TestForeignObject();
  CONXDeviceClient_0* processor = OndDeviceClientCreateInstance(ONX_OBJ_SCRIPT_PROCESSOR);
  Check(processor != nullptr, "a Script Processor is made");
  if (!processor)
    return;
  Check(processor->Call(ONX_CALL_EXECUTE_SCRIPT, Address("print(1);"), 0, 0, 0) == EONX_ERR_NO_CHANNEL, "no channel");
  processor->Connect(&channel);
  TestScript(*processor, channel);
  TestVariables(*processor);
  OndDeviceClientDeleteInstance(processor);
  Check(channel.trapCalls == 0, "the module calls no reserved operation");
  Check(channel.IsFree(), "the channel is free at the end");
}
