// Built-ins for local files. Names are relative to the script's folder; offsets and counts are 32 bits wide. A file
// that cannot be opened is an answer (0, the empty text), not an error.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"

// writestringtofile(file, text [, offset [, start [, count]]]): the number of bytes written, as uint32. With an offset
// the file keeps what is not overwritten; without one it is made anew.
class CONXWriteStringToFileFunc final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};

// readstringfromfile(file [, offset [, length]]): the bytes that are there
class CONXReadStringFromFileFunc final : public CONXValueFunc {
public:
  using CONXValueFunc::CONXValueFunc;

private:
  ScriptError Compute(const SysCall& call) override;
};

// getfilesize(file): bytes, as uint32
class CONXGetFileSizeFunc final : public CONXValueFunc {
public:
  using CONXValueFunc::CONXValueFunc;

private:
  ScriptError Compute(const SysCall& call) override;
};

// getbasepath(): the folder that names are relative to, without trailing backslash
class CONXGetBasePathFunc final : public CONXValueFunc {
public:
  using CONXValueFunc::CONXValueFunc;

private:
  ScriptError Compute(const SysCall& call) override;
};
