#include "scriptrt/builtin/BuiltIns.h"

#include "scriptrt/builtin/ControlFunctions.h"
#include "scriptrt/builtin/DeviceFileFunctions.h"
#include "scriptrt/builtin/DeviceStringFunctions.h"
#include "scriptrt/builtin/FileFunctions.h"
#include "scriptrt/builtin/NumberFunctions.h"
#include "scriptrt/builtin/QuestionFunctions.h"
#include "scriptrt/builtin/StringFunctions.h"
#include "scriptrt/builtin/SubScriptFunctions.h"

namespace {

using Made = std::unique_ptr<CONXScriptSysFunc>;

struct BuiltIn {
  std::string_view name;
  ArgumentRule rule;
  Made (*make)(const RunServices& services);
};

template <typename Function, auto... kArguments>
Made Make(const RunServices& services) {
  return std::make_unique<Function>(services, kArguments...);
}

template <typename T, NumberFormat kFormat>
Made MakeScan(const RunServices& services) {
  return std::make_unique<CONXStrToNumFunc<T, kFormat>>(services);
}

// 3, 5 or 6 arguments: limits come in pairs.
constexpr ArgumentRule NumberQuestion(DataType type) {
  return {ArgumentCounts(3) | ArgumentCounts(5, 6), "ssnnnv", type};
}

constexpr auto kDecimal = CONXNumToStrFunc::Base::kDecimal;
constexpr auto kHexadecimal = CONXNumToStrFunc::Base::kHexadecimal;

// The only list of built-ins: name, argument counts, argument types ('s' string, 'n' number, 'v' any variable, '*'
// anything), the type of the value.
constexpr BuiltIn kBuiltIns[] = {
    {"print", {0, "*"}, Make<CONXPrintFunc>},
    {"delay", {ArgumentCounts(1), "n"}, Make<CONXDelayFunc>},
    {"strlen", {ArgumentCounts(1), "s", DataType::kUint32}, Make<CONXStrlenFunc>},
    {"substr", {ArgumentCounts(2, 3), "snn", DataType::kString}, Make<CONXSubStrFunc>},
    {"instr", {ArgumentCounts(2, 3), "ssn", DataType::kInt32}, Make<CONXInstrFunc>},
    {"strtodword", {ArgumentCounts(1), "s", DataType::kUint32}, MakeScan<std::uint32_t, NumberFormat::kUnsigned>},
    {"strtouint32", {ArgumentCounts(1), "s", DataType::kUint32}, MakeScan<std::uint32_t, NumberFormat::kUnsigned>},
    {"strtoint32", {ArgumentCounts(1), "s", DataType::kInt32}, MakeScan<std::int32_t, NumberFormat::kSigned>},
    {"strtouint64", {ArgumentCounts(1), "s", DataType::kUint64}, MakeScan<std::uint64_t, NumberFormat::kUnsigned>},
    {"strtoint64", {ArgumentCounts(1), "s", DataType::kInt64}, MakeScan<std::int64_t, NumberFormat::kSigned>},
    {"dwordtostr", {ArgumentCounts(1), "n", DataType::kString}, Make<CONXNumToStrFunc, kDecimal>},
    {"numtostr", {ArgumentCounts(1), "n", DataType::kString}, Make<CONXNumToStrFunc, kDecimal>},
    {"hexstrtodword", {ArgumentCounts(1), "s", DataType::kUint32}, MakeScan<std::uint32_t, NumberFormat::kHexadecimal>},
    {"hexstrtouint32",
     {ArgumentCounts(1), "s", DataType::kUint32},
     MakeScan<std::uint32_t, NumberFormat::kHexadecimal>},
    {"hexstrtoint32", {ArgumentCounts(1), "s", DataType::kInt32}, MakeScan<std::int32_t, NumberFormat::kHexadecimal>},
    {"hexstrtouint64",
     {ArgumentCounts(1), "s", DataType::kUint64},
     MakeScan<std::uint64_t, NumberFormat::kHexadecimal>},
    {"hexstrtoint64", {ArgumentCounts(1), "s", DataType::kInt64}, MakeScan<std::int64_t, NumberFormat::kHexadecimal>},
    {"dwordtohexstr", {ArgumentCounts(1), "n", DataType::kString}, Make<CONXNumToStrFunc, kHexadecimal>},
    {"numtohexstr", {ArgumentCounts(1), "n", DataType::kString}, Make<CONXNumToStrFunc, kHexadecimal>},
    {"ascii", {ArgumentCounts(1), "s", DataType::kUint32}, Make<CONXASCIIFunc>},
    {"chr", {ArgumentCounts(1), "n", DataType::kString}, Make<CONXChrFunc>},
    {"exit", {ArgumentCounts(0), ""}, Make<CONXExitFunc>},
    {"executesubscript", {ArgumentCounts(1), "s"}, Make<CONXExecuteSubScript>},
    {"executesubscriptfunc", {0, "ss*"}, Make<CONXExecuteSubScriptFunc>},
    {"writestringtofile", {ArgumentCounts(2, 5), "ssnnn", DataType::kUint32}, Make<CONXWriteStringToFileFunc>},
    {"readstringfromfile", {ArgumentCounts(1, 3), "snn", DataType::kString}, Make<CONXReadStringFromFileFunc>},
    {"getfilesize", {ArgumentCounts(1), "s", DataType::kUint32}, Make<CONXGetFileSizeFunc>},
    {"getbasepath", {ArgumentCounts(0), "", DataType::kString}, Make<CONXGetBasePathFunc>},
    {"getsysdate", {ArgumentCounts(0), "", DataType::kString}, Make<CONXGetSysDateFunc>},
    {"getsystime", {ArgumentCounts(0), "", DataType::kString}, Make<CONXGetSysTimeFunc>},
    {"transmitstring", {ArgumentCounts(1), "s"}, Make<CONXTransmitString>},
    {"receivestring", {ArgumentCounts(0), "", DataType::kString}, Make<CONXReceiveString>},
    {"transmitfile", {ArgumentCounts(4, 5), "snnnn", DataType::kUint32}, Make<CONXTransmitFile>},
    {"transmitfilefromstring", {ArgumentCounts(4, 5), "snnnn", DataType::kUint32}, Make<CONXTransmitFileFromString>},
    {"executejobfile", {ArgumentCounts(1, 3), "snn", DataType::kUint32}, Make<CONXExecuteJobFile>},
    {"messagebox", {ArgumentCounts(2), "ss"}, Make<CONXMessageBoxDialog>},
    {"userinputdword", NumberQuestion(DataType::kUint32), Make<CONXUserInputNumDialog, DataType::kUint32>},
    {"userinputuint32", NumberQuestion(DataType::kUint32), Make<CONXUserInputNumDialog, DataType::kUint32>},
    {"userinputint32", NumberQuestion(DataType::kInt32), Make<CONXUserInputNumDialog, DataType::kInt32>},
    {"userinputuint64", NumberQuestion(DataType::kUint64), Make<CONXUserInputNumDialog, DataType::kUint64>},
    {"userinputint64", NumberQuestion(DataType::kInt64), Make<CONXUserInputNumDialog, DataType::kInt64>},
    {"userinputstring", {ArgumentCounts(3, 4), "sssv", DataType::kString}, Make<CONXUserInputStringDialog>},
    {"userlistinput", {ArgumentCounts(4, 5), "sssnv", DataType::kInt32}, Make<CONXUserListInputDialog>},
};

} // namespace

BuiltIns::BuiltIns(const RunServices& services) : m_services(services) {
  for (const BuiltIn& builtIn : kBuiltIns) {
    Made function = builtIn.make(m_services);
    function->SetRule(builtIn.rule);
    m_byName.emplace_back(builtIn.name, function.get());
    m_functions.push_back(std::move(function));
  }
}
