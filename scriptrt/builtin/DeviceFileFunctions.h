// Built-ins that transfer files to the device. While a transfer runs, a line of the output shows how far it is; a stop
// request asks the channel to give up. A failure is told in the output and ends the script unless it asked to go on.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"

class CONXFileOp : public CONXScriptSysFunc {
protected:
  using CONXScriptSysFunc::CONXScriptSysFunc;

  // One line with a bar that fills in place, and the stop event that the channel learns of through it.
  class Progress;

  // The channel's text for its error.
  std::string ChannelText(const SysCall& call, std::int32_t code) const;
  void Write(const std::string& text) const { CONXScriptSysFunc::Write(text.c_str()); }
  // The channel's code becomes the call's value; what a failure means for the script is decided here.
  static ScriptError Finish(const SysCall& call, std::int32_t code, bool ignoreFailure);
};

// transmitfile(file, fileId, fileType, fileMode [, ignoreFailure]): the channel's code, as uint32
class CONXTransmitFile final : public CONXFileOp {
public:
  using CONXFileOp::CONXFileOp;

private:
  ScriptError Perform(const SysCall& call) override;
};

// transmitfilefromstring(data, fileId, fileType, fileMode [, ignoreFailure]): the channel's code, as uint32
class CONXTransmitFileFromString final : public CONXFileOp {
public:
  using CONXFileOp::CONXFileOp;

private:
  ScriptError Perform(const SysCall& call) override;
};

// executejobfile(jobFile [, continueAfterError [, ignoreFailure]]): the code of the first transfer that failed, as
// uint32
class CONXExecuteJobFile final : public CONXFileOp {
public:
  using CONXFileOp::CONXFileOp;

private:
  ScriptError Perform(const SysCall& call) override;
};
