// Local paths as text. Nothing here asks the system: files need not exist, and the backslash is the only separator.
#pragma once

#include <string>

// The folder ends in front of the backslash. Either output may be null, or be `path` itself.
void SplitFileName(const std::string& path, std::string* folder, std::string* file);
// 1 = joined; 0 = `file` climbs above the start, *result is then `file` as it was. May throw std::out_of_range.
int ConcatenatePathAndFile(const std::string& folder, const std::string& file, std::string* result);
int IsAbsolutePath(const std::string& path);
void MakeRelativePath(const std::string& baseFolder, const std::string& path, std::string* result);
char toUpperGer(char c);
