// The contract between OndDeviceClient.dll and the program that hosts it. This is the one header a host needs.
//
// A host
//   1. loads the module on its user-interface thread (the module hooks that thread's keyboard messages for its
//   windows),
//   2. asks `OndDeviceClientGetNumObj`, `OndDeviceClientGetObjType` and `OndDeviceClientGetObjInfo` what there is,
//   3. makes instances with `OndDeviceClientCreateInstance`,
//   4. hands each one its device channel with `Connect`; the channel is the host's own `COndDeviceComm_0`,
//   5. shows windows with `ShowDialogNonModal`, or runs scripts with `Call`,
//   6. ends each instance with `OndDeviceClientDeleteInstance`, and only then the channel and the module.
//
// Ending. On its user-interface thread a host may delete an object, or destroy the window of one (itself or with its
// parent), at any moment: inside a message that the module serves (behind a question, a box, a file dialog, a copy),
// inside an operation of the channel or a callback that the module has called on that thread, and inside a message that
// one on another thread sends.
//   - Open questions of the object are dismissed as by Cancel; its script runs and copies are asked to end.
//   - A run or copy on another thread is waited for. Messages sent to the waiting thread are served meanwhile, and a
//     message of another thread that it is just handling is answered with 0 first. Behind the return nothing of the
//     object's is called any more, its locks are given back, and no output comes.
//   - A run below on the same thread cannot be waited for: the host deletes the object from the run's own output
//     function, say. From then on it calls no operation of the channel but the `Unlock`s that it owes, writes no
//     output, and returns to the host soon. Channel and module stay until then. When only the window is destroyed, it
//     is asked to end and may still do a little.
// `Connect` and `CloseDialogNonModal` may come at the same moments.
//
// Text is 8-bit in the system code page. Records use natural alignment. Both interfaces are plain tables of
// operations: single inheritance, fixed-width integers and pointers, no destructor in the table, no exceptions, so that
// every compiler for 64-bit Windows reaches the same slots. Neither side may throw across them.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(OND_BUILDING_MODULE) && defined(_WIN32)
#define OND_API __declspec(dllexport)
#elif defined(_WIN32)
#define OND_API __declspec(dllimport)
#else
#define OND_API
#endif

// The system's own window handle, named without its header: `HWND` of <windows.h> is this same type.
struct HWND__;
using OndWindow = HWND__*;

// ---------------------------------------------------------------------------------------------------------------------
// Results

// Result of an object's operations. 0 is success.
enum EONX_ERR_ERRCODE_ : std::int32_t {
  EONX_ERR_NONE = 0,
  EONX_ERR_EMPTY_PATH = 6,     // a script file was asked for without a path
  EONX_ERR_NO_CHANNEL = 7,     // no channel is connected
  EONX_ERR_FILE_OPEN = 8,      // the file cannot be resolved or opened
  EONX_ERR_FILE_READ = 9,      // the file cannot be read completely
  EONX_ERR_DIALOG = 17,        // the window could not be created, or there is none to close
  EONX_ERR_OUT_OF_MEMORY = 18, // memory ran out
  EONX_ERR_ABORTED = 19,       // the user aborted
  EONX_ERR_LOCKED = 20,        // the channel could not be locked, or this object runs a script already
  EONX_ERR_SCRIPT = 21,        // the script failed
};

// Object types, as the exports and `GetObjType` give them.
enum : std::uint32_t {
  ONX_OBJ_TERMINAL = 0x1000,
  ONX_OBJ_FILE_MANAGER = 0x1001,
  ONX_OBJ_SCRIPT_PROCESSOR = 0x1002,
  ONX_OBJ_INVALID = 0xFFFFFFFF,
};

// ---------------------------------------------------------------------------------------------------------------------
// The channel: implemented by the host, called by the module

// One file of the device's directory.
struct TDEVDIRENTRY {
  std::uint8_t fileId;
  std::uint8_t fileType;
  std::uint32_t fileSize; // bytes
};
static_assert(sizeof(TDEVDIRENTRY) == 8 && offsetof(TDEVDIRENTRY, fileSize) == 4);

// Summary of the device's directory. The free space in bytes is freeFactorB * freeFactorA, computed in 64 bits
// (free blocks times block size, say).
struct TDEVDIRINFO {
  std::uint32_t freeFactorA;
  std::uint32_t freeFactorB;
  std::uint32_t fileCount;
  std::uint32_t bytesInFiles;
  std::uint32_t bytesOnDevice; // what those files occupy
};
static_assert(sizeof(TDEVDIRINFO) == 20);

// Called by the channel while a transfer runs, on the thread that asked for the transfer, with `stepsDone` counting
// from 0 up to the number of steps that the transfer was asked to report. A non-zero answer asks the channel to abort:
// the transfer then ends with a non-zero code of the channel's choice.
using TransferProgressCallback = std::int32_t (*)(void* context, std::uint32_t stepsDone);

// How a transferred file is stored.
enum : std::uint32_t {
  OND_FILE_NORMAL = 0,
  OND_FILE_BIT_REVERSE = 1, // every byte with its bits in reverse order
  OND_FILE_PROGRAM = 2,     // loaded into the device's logic, not stored; id and type have no effect
};

// What `GetInfoString` is asked for.
enum : std::uint32_t {
  OND_INFO_DESCRIPTION = 0,   // the channel, in words; code is 0
  OND_INFO_CONFIGURATION = 1, // its settings, in words; code is 0
  OND_INFO_ERROR = 2,         // the text of the error `code`
};

// The host's link to one device. The module calls it from the user-interface thread, from its workers and, while a
// script runs there, from the thread that came by `Call`; apart from `GetInfoString`, `Lock`, `Unlock` and `GetState`
// it does so only between a successful `Lock` and its `Unlock`. Any operation may serve messages of its thread. One
// that needs the user-interface thread sends it a message: posted ones are not served there while the module waits for
// the operation's end (see "Ending" above). Operations that return `int32_t` answer 0 for success and otherwise an
// error of the channel's own, whose text is `GetInfoString(OND_INFO_ERROR, code)`; the module shows that text as it
// stands.
//
// The `Reserved` operations are the host's own: the module never calls them, they keep the others in their places.
struct COndDeviceComm_0 {
  virtual void Reserved00() {}
  virtual void Reserved01() {}
  virtual void Reserved02() {}
  virtual void Reserved03() {}
  virtual void Reserved04() {}
  virtual void Reserved05() {}
  virtual void Reserved06() {}
  virtual void Reserved07() {}
  virtual void Reserved08() {}
  virtual void Reserved09() {}

  // The text asked for by `what` (OND_INFO_…), never null. It stays the channel's and is valid at least until the same
  // thread's next call of the channel. [any thread]
  virtual const char* GetInfoString(std::uint32_t what, std::int64_t code) = 0;

  // Reserves the channel for `owner`, waiting up to `timeoutMs` (0: no wait) while another owner holds it. 0 is
  // success. The owner that holds the channel gets it again at once, on any thread; every success is paired with one
  // `Unlock`. [any thread]
  virtual std::int32_t Lock(void* owner, std::uint32_t timeoutMs) = 0;
  virtual void Reserved12() {}
  // Gives back one `Lock` of the same owner. The module does not look at the answer. [any thread]
  virtual std::int32_t Unlock(void* owner) = 0;
  virtual void Reserved14() {}

  // 1 = open; any other value = closed. Must answer at once. [any thread]
  virtual std::uint32_t GetState() = 0;
  virtual void Reserved16() {}
  virtual void Reserved17() {}
  virtual void Reserved18() {}

  // Puts up to `bufferSize` waiting bytes into `buffer` and their number into `received` (0: nothing waits). Does not
  // wait for bytes to arrive. [any of these threads, locked]
  virtual std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) = 0;
  // Sends `length` bytes of any value. `written` is provided by the module and never read by it. [as Receive]
  virtual std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) = 0;
  virtual void Reserved21() {}
  virtual void Reserved22() {}

  // Sends bytes from memory as a device file. `flag` is always 1. `callback` (may be null) is told the progress in
  // `steps` steps. Returns when the transfer has ended. [workers and `Call`'s thread, locked]
  virtual std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                              std::uint8_t fileType, std::uint32_t fileMode,
                                              TransferProgressCallback callback, void* context, std::uint32_t flag,
                                              std::uint32_t steps) = 0;
  virtual void Reserved24() {}
  // The same with the bytes of a local file. [as TransmitFileFromMemory]
  virtual std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType,
                                    std::uint32_t fileMode, TransferProgressCallback callback, void* context,
                                    std::uint32_t flag, std::uint32_t steps) = 0;
  virtual void Reserved26() {}

  // Reads the device's directory; the channel holds it for the three operations that follow. [user-interface thread,
  // locked]
  virtual std::int32_t ReadDirectory() = 0;
  virtual std::uint64_t GetDirectoryEntryCount() = 0;
  virtual std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) = 0; // answer not looked at
  virtual std::int32_t GetDirectoryInfo(TDEVDIRINFO* info) = 0;                         // answer not looked at
  virtual std::int32_t DeleteDeviceFile(std::uint8_t fileId) = 0;
  // 0 = every block, 1 = only the blocks that are marked as used.
  virtual std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) = 0;

protected:
  ~COndDeviceComm_0() = default;
};

// ---------------------------------------------------------------------------------------------------------------------
// The objects: implemented by the module, called by the host on its user-interface thread

struct CONXDeviceClient_0;

// What happened to an object's window.
enum : std::uint32_t {
  ONX_DLGEVENT_OK = 0,     // OK pressed
  ONX_DLGEVENT_CLOSE = 1,  // closed by the caption's button
  ONX_DLGEVENT_CANCEL = 2, // Escape or Cancel
};

using OndDialogEventCallback = std::uint32_t (*)(CONXDeviceClient_0* client, void* userData, std::uint32_t event);

// How the host wants to hear of those events. Every route that is set fires: the thread message is posted, the window
// message is sent, the callback is called, in this order. The window hides itself only when the last route that can
// answer (window, callback) answered 1, or when no route is set; a thread message alone leaves it open, and the host
// decides.
struct _TONX_DLGEVENTDATA {
  OndDialogEventCallback callback; // null: not used
  void* userData;                  // handed back to the callback
  OndWindow hWnd;                  // null: not used; gets uMsg with wParam = the object, lParam = the event
  std::uint32_t uMsg;
  std::uint32_t threadId;
  std::uint32_t threadMsg; // 0: not used; posted to threadId with the same parameters
};
static_assert(sizeof(_TONX_DLGEVENTDATA) == 40 && offsetof(_TONX_DLGEVENTDATA, hWnd) == 16 &&
              offsetof(_TONX_DLGEVENTDATA, uMsg) == 24 && offsetof(_TONX_DLGEVENTDATA, threadMsg) == 32);

// Root of every object.
struct CONXObject_0 {
  virtual std::uint32_t GetObjType() = 0; // ONX_OBJ_…

protected:
  ~CONXObject_0() = default;
};

struct CONXDeviceClient_0 : CONXObject_0 {
  // The three parameter operations are there for later objects: every object answers -1 and touches nothing.
  virtual std::int32_t GetParam(std::uint32_t id, std::uint64_t* value1, std::uint64_t* value2, std::uint64_t* value3,
                                std::uint64_t* value4) = 0;
  virtual std::int32_t SetParam(std::uint32_t id, std::uint64_t value1, std::uint64_t value2, std::uint64_t value3,
                                std::uint64_t value4) = 0;
  virtual std::int32_t GetParamLimits(std::uint32_t id, std::uint64_t* min1, std::uint64_t* max1, std::uint64_t* min2,
                                      std::uint64_t* max2, std::uint64_t* min3, std::uint64_t* max3,
                                      std::uint64_t* min4, std::uint64_t* max4) = 0;

  // Hands over the channel; null disconnects. The channel stays the host's and must outlive the connection, and a
  // script run or a copy that began on it, which keep it and give its lock back to it. Everything else has left the old
  // channel when this returns, but for an operation in which this is called. Always 0.
  virtual EONX_ERR_ERRCODE_ Connect(COndDeviceComm_0* channel) = 0;

  // A command of the object's own (ONX_CALL_… for the Script Processor). Unknown commands return 0 and do nothing.
  virtual EONX_ERR_ERRCODE_ Call(std::uint32_t function, std::uint64_t a, std::uint64_t b, std::uint64_t c,
                                 std::uint64_t d) = 0;

  // Shows the object's window, creating it on the first call as a child of `parent`'s window group, and restores one
  // that is minimised. 0 or EONX_ERR_DIALOG.
  virtual EONX_ERR_ERRCODE_ ShowDialogNonModal(OndWindow parent) = 0;
  // Hides it; a copy of the File Manager's ends first. EONX_ERR_DIALOG when there is none.
  virtual EONX_ERR_ERRCODE_ CloseDialogNonModal() = 0;
  virtual std::int32_t IsNonModalDialogOpen() = 0; // 1 while the window exists and is visible, else 0
  // Copies the record.
  virtual void SetDlgEventData(_TONX_DLGEVENTDATA* data) = 0;

protected:
  ~CONXDeviceClient_0() = default;
};

// ---------------------------------------------------------------------------------------------------------------------
// Commands of the Script Processor's `Call`

// Receives a script's output, piece by piece as it comes: a zero-terminated text that may hold line feeds and carriage
// returns anywhere. Called on the thread that runs the script. On the user-interface thread it may delete the object
// that runs the script; on another one it must not.
using OndScriptOutput = void (*)(void* context, const char* text);

enum : std::uint32_t {
  // Runs the script text a (const char*) with output function b (OndScriptOutput or null) and its context c.
  ONX_CALL_EXECUTE_SCRIPT = 0x1000,
  // Runs the script file a (const char*), b and c as above.
  ONX_CALL_EXECUTE_SCRIPT_FILE = 0x1001,
  // Takes b records at a (TONXSCRIPTVARIABLE*) as variables that every later run sees; c = 0 forgets the earlier ones
  // first.
  ONX_CALL_SET_VARIABLES = 0x1002,
  // Reads the variables named in b records at a; c (uint64_t* or null) receives how many were found.
  ONX_CALL_GET_VARIABLES = 0x1003,
  // Asks the running script to end with "Processing aborted"; without one, nothing happens. Always 0. The one command
  // that other threads may send, and that may come while a script runs. [any thread]
  ONX_CALL_STOP_SCRIPT = 0x1004,
};

// Data types of the script language.
enum : std::uint32_t {
  ONX_TYPE_UINT32 = 1,
  ONX_TYPE_STRING = 2,
  ONX_TYPE_INT32 = 3,
  ONX_TYPE_UINT64 = 4,
  ONX_TYPE_INT64 = 5,
};

// clang-format off
// One variable exchanged with a script.
//
//            setting                                     reading back
//   name     the variable's name                         the name asked for (ASCII case does not matter)
//   type     ONX_TYPE_…; records of other types are      written by the module
//            passed over
//   value    pointer to a uint64_t (numbers) or to       the number, widened to 64 bits by its type, or a pointer
//            the bytes (strings)                         to the bytes, valid until the variables change
//   length   bytes of the string; the low 32 bits count  bytes of the string
// clang-format on
struct TONXSCRIPTVARIABLE {
  const char* name;
  std::uint32_t type;
  std::uint64_t value;
  std::uint64_t length;
  std::uint8_t reserved[112];
};
static_assert(sizeof(TONXSCRIPTVARIABLE) == 144 && offsetof(TONXSCRIPTVARIABLE, type) == 8 &&
              offsetof(TONXSCRIPTVARIABLE, value) == 16 && offsetof(TONXSCRIPTVARIABLE, length) == 24);

// ---------------------------------------------------------------------------------------------------------------------
// Exports [user-interface thread]

extern "C" {

// How many kinds of object there are: 3.
OND_API std::uint32_t OndDeviceClientGetNumObj();
// The type of the kind at `index` (from 0), or ONX_OBJ_INVALID.
OND_API std::uint32_t OndDeviceClientGetObjType(std::size_t index);
// what = 0: the kind's name, a constant zero-terminated text of the module's; what = 1: 1. Anything unknown: 0.
OND_API std::uintptr_t OndDeviceClientGetObjInfo(std::uint32_t type, std::uint32_t what);
// A new object without channel and window, or null. The caller owns it.
OND_API CONXDeviceClient_0* OndDeviceClientCreateInstance(std::uint32_t type);
// Ends an object, its window and what it does, at any moment (see "Ending" above). Nothing may be asked of the object
// any more, on any thread, not even while this waits. Null, and objects that answer a type the module does not make,
// are left alone.
OND_API void OndDeviceClientDeleteInstance(CONXDeviceClient_0* object);
}

// The same as function types, for `GetProcAddress`.
using OndDeviceClientGetNumObjFunction = std::uint32_t (*)();
using OndDeviceClientGetObjTypeFunction = std::uint32_t (*)(std::size_t index);
using OndDeviceClientGetObjInfoFunction = std::uintptr_t (*)(std::uint32_t type, std::uint32_t what);
using OndDeviceClientCreateInstanceFunction = CONXDeviceClient_0* (*)(std::uint32_t type);
using OndDeviceClientDeleteInstanceFunction = void (*)(CONXDeviceClient_0* object);
