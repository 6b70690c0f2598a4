// Local files and folders as the host needs them. Bodies of the system part: win32/ and posix/.
//
// A path is 8-bit text as the system takes it. Outside Windows a path may also look as scripts see it: backslashes
// between the names, and drive "Z:" for the root of the file system.
#pragma once

#include <tl/expected.hpp>

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace host {

enum class ReadFailure { kUnreadable, kTooLarge };
using ReadResult = tl::expected<std::string, ReadFailure>;

// Reads until the end; more than `limit` bytes are too large.
ReadResult ReadToEnd(std::FILE* file, std::uint64_t limit);
// The same of a whole file; folders, devices and pipes, whose end may never come, count as unreadable.
ReadResult ReadWholeFile(const std::string& path, std::uint64_t limit);
// The first bytes of a file, `most` of them at most; empty when it is no regular one or cannot be read.
std::string ReadBeginning(const std::string& path, std::size_t most);
// Writes beside the file and then puts the result in its place: a file that was there before is unharmed by a failure,
// and so is whatever else lies there. A link stays one, its file gets the bytes. What is no regular file, or may not be
// written, stays as it is, and the writing fails.
bool WriteWholeFile(const std::string& path, const std::string& bytes);
// Writes behind what is there; the file is made if need be.
bool AppendToFile(const std::string& path, const std::string& bytes);
// Whether writing a whole file has a chance: a file can be made there, and nothing but a file has the path's name.
bool CanWriteFile(const std::string& path);

// --- the system part

// The path as the C library takes it.
std::string SystemPath(const std::string& path);
// A path as scripts and job files mean it, for the functions here; empty when the system has no such path.
std::string FromScriptPath(const std::string& path);
// A path that a user typed as scripts see paths.
std::string ScriptPath(const std::string& typed);
// A full path as scripts see paths, as short as a user in the current folder would type it.
std::string ShownPath(const std::string& scriptPath);
// `folder` and a name within it.
std::string PathInFolder(const std::string& folder, const std::string& name);
// Whether a file is there, and no folder, device or pipe, whose end may never come.
bool IsRegularFile(const std::string& path);
// Whether anything has that name, as far as the system tells: of what it hides, yes.
bool IsAnythingAt(const std::string& path);
// Where the bytes of a file have to be put, behind links; nothing when something that may not be replaced lies there.
std::optional<std::string> ReplaceablePath(const std::string& path);
// A new file to write to; null when there cannot be one, with EEXIST in errno when something has that name.
std::FILE* CreateNewFile(const std::string& path);
bool ReplaceLocalFile(const std::string& from, const std::string& to);
bool RemoveLocalFile(const std::string& path);
// True when the folder is there afterwards. Folders above it must exist.
bool MakeFolder(const std::string& path);
// The names of everything in a folder, sorted; nothing when it cannot be listed.
std::optional<std::vector<std::string>> ListFolder(const std::string& path);

} // namespace host
