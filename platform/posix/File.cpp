#include "platform/Platform.h"
#include "platform/posix/SystemPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

// Owns an open file until a stream takes it over.
class Descriptor {
public:
  explicit Descriptor(int value) : m_value(value) {}
  ~Descriptor() {
    if (m_value >= 0) {
      close(m_value);
    }
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Get() const { return m_value; }
  bool IsRegularFile() const {
    struct stat facts;
    return fstat(m_value, &facts) == 0 && S_ISREG(facts.st_mode);
  }
  std::FILE* ToStream(const char* mode) {
    std::FILE* stream = fdopen(m_value, mode);
    if (stream) {
      m_value = -1;
    }
    return stream;
  }

private:
  int m_value;
};

struct HowToOpen {
  int flags;
  const char* streamMode;
};

HowToOpen FlagsOf(File::Mode mode) {
  switch (mode) {
  case File::Mode::kRead:
    return {O_RDONLY, "rb"};
  case File::Mode::kUpdate:
    return {O_RDWR, "r+b"};
  case File::Mode::kCreate:
    return {O_WRONLY | O_CREAT, "wb"};
  case File::Mode::kCreateNew:
    return {O_WRONLY | O_CREAT | O_EXCL, "wb"};
  }
  return {O_RDONLY, "rb"};
}

// True too when there is nothing at `path` yet.
bool MayBeReplaced(const std::string& path) {
  struct stat facts;
  return stat(path.c_str(), &facts) != 0 || (S_ISREG(facts.st_mode) && access(path.c_str(), W_OK) == 0);
}

bool FlushToDisk(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  return file.Get() >= 0 && fsync(file.Get()) == 0;
}

} // namespace

std::optional<File> File::Open(const std::string& path, Mode mode) {
  const std::optional<std::string> systemPath = SystemPath(path);
  if (!systemPath) {
    return std::nullopt;
  }
  const HowToOpen how = FlagsOf(mode);
  // Without O_NONBLOCK a pipe would block here already; a regular file does not notice.
  Descriptor file(open(systemPath->c_str(), how.flags | O_CLOEXEC | O_NONBLOCK, 0666));
  if (file.Get() < 0 || !file.IsRegularFile() || (mode == Mode::kCreate && ftruncate(file.Get(), 0) != 0)) {
    return std::nullopt;
  }
  std::FILE* stream = file.ToStream(how.streamMode);
  return stream ? std::optional(File(stream)) : std::nullopt;
}

std::optional<std::uint64_t> File::Size() {
  struct stat facts;
  if (std::fflush(m_file.get()) != 0 || fstat(fileno(m_file.get()), &facts) != 0) {
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(facts.st_size);
}

bool File::Seek(std::uint64_t offset) {
  return fseeko(m_file.get(), static_cast<off_t>(offset), SEEK_SET) == 0;
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
  const std::optional<std::string> source = SystemPath(from);
  const std::optional<std::string> target = SystemPath(to);
  return source && target && MayBeReplaced(*target) && FlushToDisk(*source) &&
         std::rename(source->c_str(), target->c_str()) == 0;
}

void RemoveFile(const std::string& path) {
  if (const std::optional<std::string> systemPath = SystemPath(path)) {
    unlink(systemPath->c_str());
  }
}

} // namespace platform
