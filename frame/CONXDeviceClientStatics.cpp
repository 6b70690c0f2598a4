// The static members, which hand on to util/.
#include "frame/CONXDeviceClient.h"
#include "util/EscapedString.h"
#include "util/Path.h"

std::string CONXDeviceClient::ParseString(const char* input, std::size_t length, char terminator, std::size_t* endPos,
                                          std::string* errorText, int* ok) {
  return ::ParseString(input, length, terminator, endPos, errorText, ok);
}

void CONXDeviceClient::SplitFileName(const std::string& path, std::string* folder, std::string* file) {
  ::SplitFileName(path, folder, file);
}

int CONXDeviceClient::ConcatenatePathAndFile(const std::string& folder, const std::string& file, std::string* result) {
  return ::ConcatenatePathAndFile(folder, file, result);
}

int CONXDeviceClient::IsAbsolutePath(const std::string& path) {
  return ::IsAbsolutePath(path);
}

void CONXDeviceClient::MakeRelativePath(const std::string& baseFolder, const std::string& path, std::string* result) {
  ::MakeRelativePath(baseFolder, path, result);
}

char CONXDeviceClient::toUpperGer(char c) {
  return ::toUpperGer(c);
}

void CONXDeviceClient::FillEntry(std::size_t column, std::string* text, TFILEENTRY* entry, std::string& baseFolder) {
  ::FillEntry(column, text, entry, baseFolder);
}

int CONXDeviceClient::LoadJobFile(const char* jobPath, std::vector<TFILEENTRY>* list) {
  return ::LoadJobFile(jobPath, list);
}

int CONXDeviceClient::SaveJobFile(const char* jobPath, std::vector<TFILEENTRY>* list) {
  return ::SaveJobFile(jobPath, list);
}
