#include "host/trace/CallRecord.h"

#include "host/support/Crc32.h"
#include "host/support/Files.h"

#include <algorithm>

namespace host {
namespace {

// Beyond this a device refuses a file, and nobody should wait until all of it has been read.
constexpr std::uint64_t kLargestFile = 64 * 1024 * 1024;

std::optional<FileContents> ContentsAt(const char* path) {
  const std::string local = path ? FromScriptPath(path) : std::string();
  if (!IsRegularFile(local))
    return std::nullopt;
  const ReadResult bytes = ReadWholeFile(local, kLargestFile);
  return bytes ? std::optional(FileContents{bytes->size(), Crc32(*bytes)}) : std::nullopt;
}

} // namespace

void TakeGiven(const ChannelCall& call, TraceCall& record) {
  const ChannelArguments& given = call.arguments;
  switch (call.operation) {
  case ChannelOperation::kGetInfoString:
    record.numbers = {given.number, given.code};
    break;
  case ChannelOperation::kTransmitFile:
    record.text = given.path ? given.path : "";
    record.contents = ContentsAt(given.path);
    record.numbers = {given.fileId, given.fileType, given.fileMode, given.steps};
    break;
  case ChannelOperation::kTransmitFileFromMemory:
    record.contents = FileContents{given.bytes.size(), Crc32(given.bytes)};
    record.numbers = {given.fileId, given.fileType, given.fileMode, given.steps};
    break;
  case ChannelOperation::kDeleteDeviceFile:
    record.numbers = {given.fileId};
    break;
  default:
    record.numbers = {given.number};
    break;
  }
  record.bytes = given.bytes;
}

void TakeAnswer(const ChannelCall& call, TraceCall& record) {
  const ChannelArguments& given = call.arguments;
  record.result = call.answer;
  if (call.operation == ChannelOperation::kGetInfoString)
    record.text = call.text ? call.text : "";
  if (call.answer != 0)
    return;
  if (call.operation == ChannelOperation::kReceive && given.buffer && call.moved)
    record.bytes.assign(given.buffer, static_cast<std::size_t>(*call.moved));
  if (given.entry)
    record.numbers = {given.number, given.entry->fileId, given.entry->fileType, given.entry->fileSize};
  if (given.info)
    record.numbers = {given.info->freeFactorA, given.info->freeFactorB, given.info->fileCount, given.info->bytesInFiles,
                      given.info->bytesOnDevice};
}

std::size_t GiveAnswer(const TraceCall& record, ChannelCall& call) {
  const ChannelArguments& given = call.arguments;
  call.answer = record.result;
  std::size_t moved = 0;
  if (call.operation == ChannelOperation::kReceive && given.buffer) {
    moved = std::min<std::size_t>(record.bytes.size(), given.number);
    std::copy_n(record.bytes.begin(), moved, given.buffer);
  } else if (call.operation == ChannelOperation::kTransmit && record.result == 0) {
    moved = given.bytes.size();
  }
  if (call.moved)
    *call.moved = moved;
  const auto& numbers = record.numbers;
  if (given.entry && record.result == 0)
    *given.entry = {static_cast<std::uint8_t>(numbers[1]), static_cast<std::uint8_t>(numbers[2]),
                    static_cast<std::uint32_t>(numbers[3])};
  if (given.info && record.result == 0)
    *given.info = {static_cast<std::uint32_t>(numbers[0]), static_cast<std::uint32_t>(numbers[1]),
                   static_cast<std::uint32_t>(numbers[2]), static_cast<std::uint32_t>(numbers[3]),
                   static_cast<std::uint32_t>(numbers[4])};
  return moved;
}

} // namespace host
