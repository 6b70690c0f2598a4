#include "platform/Platform.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace platform {

namespace {

std::FILE* OpenStream(const char* path, File::Mode mode) {
  switch (mode) {
  case File::Mode::kRead:
    return std::fopen(path, "rb");
  case File::Mode::kUpdate:
    return std::fopen(path, "r+b");
  case File::Mode::kCreate:
    return std::fopen(path, "wb");
  case File::Mode::kCreateNew: {
    const int file = _open(path, _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
    return file < 0 ? nullptr : _fdopen(file, "wb");
  }
  }
  return nullptr;
}

// The move below only promises the name; this brings the bytes to the disk.
bool FlushToDisk(const std::string& path) {
  const HANDLE file =
      CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return false;
  }
  const bool flushed = FlushFileBuffers(file);
  CloseHandle(file);
  return flushed;
}

} // namespace

std::optional<File> File::Open(const std::string& path, Mode mode) {
  std::FILE* stream = OpenStream(path.c_str(), mode);
  return stream ? std::optional(File(stream)) : std::nullopt;
}

std::optional<std::uint64_t> File::Size() {
  if (std::fflush(m_file.get()) != 0) {
    return std::nullopt;
  }
  const __int64 size = _filelengthi64(_fileno(m_file.get()));
  return size < 0 ? std::nullopt : std::optional(static_cast<std::uint64_t>(size));
}

bool File::Seek(std::uint64_t offset) {
  return _fseeki64(m_file.get(), static_cast<__int64>(offset), SEEK_SET) == 0;
}

std::size_t File::Read(char* buffer, std::size_t size) {
  return std::fread(buffer, 1, size, m_file.get());
}

std::size_t File::Write(const char* data, std::size_t size) {
  return std::fwrite(data, 1, size, m_file.get());
}

bool File::Close() {
  const bool sound = !std::ferror(m_file.get());
  return std::fclose(m_file.release()) == 0 && sound;
}

bool MoveFileOver(const std::string& from, const std::string& to) {
  return FlushToDisk(from) && MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

void RemoveFile(const std::string& path) {
  DeleteFileA(path.c_str());
}

} // namespace platform
