#include "platform/Platform.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/SystemPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace platform {

namespace {

int FlagsOf(File::Mode mode) {
  switch (mode) {
  case File::Mode::kRead:
    return O_RDONLY;
  case File::Mode::kUpdate:
    return O_RDWR | O_CREAT;
  case File::Mode::kCreate:
    return O_WRONLY | O_CREAT;
  }
  return O_RDONLY;
}

// Repeats `step` (bytes done so far, bytes left) until all is done, nothing more comes, or it fails.
template <typename Step>
std::size_t Transfer(std::size_t size, bool* sound, Step step) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = step(done, size - done);
    if (count < 0 && errno == EINTR)
      continue;
    *sound = *sound && count >= 0;
    if (count <= 0)
      break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

int DescriptorOf(std::intptr_t handle) {
  return static_cast<int>(handle);
}

} // namespace

std::optional<File> File::Open(const std::string& path, Mode mode) {
  const std::optional<std::string> systemPath = SystemPath(path);
  if (!systemPath)
    return std::nullopt;
  // Without O_NONBLOCK a pipe would block here already; a regular file does not notice.
  Descriptor file(open(systemPath->c_str(), FlagsOf(mode) | O_CLOEXEC | O_NONBLOCK, 0666));
  if (!file.IsOpen() || !file.IsRegularFile())
    return std::nullopt;
  if (mode == Mode::kCreate && ftruncate(file.Get(), 0) != 0)
    return std::nullopt;
  return File(file.Release());
}

std::optional<std::uint64_t> File::Size() {
  struct stat facts;
  if (fstat(DescriptorOf(m_handle), &facts) != 0)
    return std::nullopt;
  return static_cast<std::uint64_t>(facts.st_size);
}

bool File::Seek(std::uint64_t offset) {
  return lseek(DescriptorOf(m_handle), static_cast<off_t>(offset), SEEK_SET) >= 0;
}

std::size_t File::Read(char* buffer, std::size_t size) {
  return Transfer(size, &m_sound, [&](std::size_t done, std::size_t left) {
    return read(DescriptorOf(m_handle), buffer + done, left);
  });
}

std::size_t File::Write(const char* data, std::size_t size) {
  return Transfer(size, &m_sound,
                  [&](std::size_t done, std::size_t left) { return write(DescriptorOf(m_handle), data + done, left); });
}

bool File::Close() {
  const std::intptr_t handle = std::exchange(m_handle, kClosed);
  return handle != kClosed && close(DescriptorOf(handle)) == 0 && m_sound;
}

} // namespace platform
