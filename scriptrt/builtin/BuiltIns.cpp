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

template <typename T, NumberFormat kFormat, DataType kType>
Made MakeScan(const RunServices& services) {
  return std::make_unique<CONXStrToNumFunc<T>>(services, kFormat, kType);
}

// 3, 5 or 6 arguments: limits come in pairs.
constexpr ArgumentRule kNumberQuestion = {ArgumentCounts(3) | ArgumentCounts(5, 6), "ssnnnv"};

constexpr auto kDecimal = CONXNumToStrFunc::Base::kDecimal;
constexpr auto kHexadecimal = CONXNumToStrFunc::Base::kHexadecimal;

// The only list of built-ins: name, argument counts, argument types ('s' string, 'n' number, 'v' any variable, '*'
// anything).
constexpr BuiltIn kBuiltIns[] = {
    {"print", {0, "*"}, Make<CONXPrintFunc>},
    {"delay", {ArgumentCounts(1), "n"}, Make<CONXDelayFunc>},
    {"strlen", {ArgumentCounts(1), "s"}, Make<CONXStrlenFunc>},
    {"substr", {ArgumentCounts(2, 3), "snn"}, Make<CONXSubStrFunc>},
    {"instr", {ArgumentCounts(2, 3), "ssn"}, Make<CONXInstrFunc>},
    {"strtodword", {ArgumentCounts(1), "s"}, MakeScan<std::uint32_t, NumberFormat::kUnsigned, DataType::kUint32>},
    {"strtouint32", {ArgumentCounts(1), "s"}, MakeScan<std::uint32_t, NumberFormat::kUnsigned, DataType::kUint32>},
    {"strtoint32", {ArgumentCounts(1), "s"}, MakeScan<std::int32_t, NumberFormat::kSigned, DataType::kInt32>},
    {"strtouint64", {ArgumentCounts(1), "s"}, MakeScan<std::uint64_t, NumberFormat::kUnsigned, DataType::kUint64>},
    {"strtoint64", {ArgumentCounts(1), "s"}, MakeScan<std::int64_t, NumberFormat::kSigned, DataType::kInt64>},
    {"dwordtostr", {ArgumentCounts(1), "n"}, Make<CONXNumToStrFunc, kDecimal>},
    {"numtostr", {ArgumentCounts(1), "n"}, Make<CONXNumToStrFunc, kDecimal>},
    {"hexstrtodword", {ArgumentCounts(1), "s"}, MakeScan<std::uint32_t, NumberFormat::kHexadecimal, DataType::kUint32>},
    {"hexstrtouint32",
     {ArgumentCounts(1), "s"},
     MakeScan<std::uint32_t, NumberFormat::kHexadecimal, DataType::kUint32>},
    {"hexstrtoint32", {ArgumentCounts(1), "s"}, MakeScan<std::int32_t, NumberFormat::kHexadecimal, DataType::kInt32>},
    {"hexstrtouint64",
     {ArgumentCounts(1), "s"},
     MakeScan<std::uint64_t, NumberFormat::kHexadecimal, DataType::kUint64>},
    {"hexstrtoint64", {ArgumentCounts(1), "s"}, MakeScan<std::int64_t, NumberFormat::kHexadecimal, DataType::kInt64>},
    {"dwordtohexstr", {ArgumentCounts(1), "n"}, Make<CONXNumToStrFunc, kHexadecimal>},
    {"numtohexstr", {ArgumentCounts(1), "n"}, Make<CONXNumToStrFunc, kHexadecimal>},
    {"ascii", {ArgumentCounts(1), "s"}, Make<CONXASCIIFunc>},
    {"chr", {ArgumentCounts(1), "n"}, Make<CONXChrFunc>},
    {"exit", {ArgumentCounts(0), ""}, Make<CONXExitFunc>},
    {"executesubscript", {ArgumentCounts(1), "s"}, Make<CONXExecuteSubScript>},
    {"executesubscriptfunc", {0, "ss*"}, Make<CONXExecuteSubScriptFunc>},
    {"writestringtofile", {ArgumentCounts(2, 5), "ssnnn"}, Make<CONXWriteStringToFileFunc>},
    {"readstringfromfile", {ArgumentCounts(1, 3), "snn"}, Make<CONXReadStringFromFileFunc>},
    {"getfilesize", {ArgumentCounts(1), "s"}, Make<CONXGetFileSizeFunc>},
    {"getbasepath", {ArgumentCounts(0), ""}, Make<CONXGetBasePathFunc>},
    {"getsysdate", {ArgumentCounts(0), ""}, Make<CONXGetSysDateFunc>},
    {"getsystime", {ArgumentCounts(0), ""}, Make<CONXGetSysTimeFunc>},
    {"transmitstring", {ArgumentCounts(1), "s"}, Make<CONXTransmitString>},
    {"receivestring", {ArgumentCounts(0), ""}, Make<CONXReceiveString>},
    {"transmitfile", {ArgumentCounts(4, 5), "snnnn"}, Make<CONXTransmitFile>},
    {"transmitfilefromstring", {ArgumentCounts(4, 5), "snnnn"}, Make<CONXTransmitFileFromString>},
    {"executejobfile", {ArgumentCounts(1, 3), "snn"}, Make<CONXExecuteJobFile>},
    {"messagebox", {ArgumentCounts(2), "ss"}, Make<CONXMessageBoxDialog>},
    {"userinputdword", kNumberQuestion, Make<CONXUserInputNumDialog, DataType::kUint32>},
    {"userinputuint32", kNumberQuestion, Make<CONXUserInputNumDialog, DataType::kUint32>},
    {"userinputint32", kNumberQuestion, Make<CONXUserInputNumDialog, DataType::kInt32>},
    {"userinputuint64", kNumberQuestion, Make<CONXUserInputNumDialog, DataType::kUint64>},
    {"userinputint64", kNumberQuestion, Make<CONXUserInputNumDialog, DataType::kInt64>},
    {"userinputstring", {ArgumentCounts(3, 4), "sssv"}, Make<CONXUserInputStringDialog>},
    {"userlistinput", {ArgumentCounts(4, 5), "sssnv"}, Make<CONXUserListInputDialog>},
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
