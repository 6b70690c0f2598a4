#include "host/support/SoleFile.h"

#include "host/support/Files.h"
#include "host/support/SystemError.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {
namespace {

bool IsRegular(int file) {
  struct stat status = {};
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

tl::expected<SoleFile, std::string> SoleFile::Open(const std::string& path) {
  return OpenLocked(path, O_RDWR | O_CREAT, LOCK_EX);
}

tl::expected<SoleFile, std::string> SoleFile::Hold(const std::string& path) {
  return OpenLocked(path, O_RDONLY | O_NONBLOCK, LOCK_SH);
}

tl::expected<SoleFile, std::string> SoleFile::OpenLocked(const std::string& path, int mode, int lock) {
  const int descriptor = open(SystemPath(path).c_str(), mode | O_CLOEXEC, 0666);
  if (descriptor < 0)
    return tl::unexpected(SystemErrorText(errno));
  SoleFile file(descriptor);
  if (flock(descriptor, lock | LOCK_NB) != 0)
    return tl::unexpected(errno == EWOULDBLOCK ? std::string("it is in use") : SystemErrorText(errno));
  return file;
}

void SoleFile::Close() {
  if (m_native != kNone)
    close(static_cast<int>(m_native));
}

std::string SoleFile::Beginning(std::size_t size) const {
  const int file = static_cast<int>(m_native);
  std::string bytes(size, '\0');
  const ssize_t count = IsRegular(file) ? pread(file, bytes.data(), size, 0) : 0;
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return bytes;
}

bool SoleFile::Clear() {
  const int file = static_cast<int>(m_native);
  return !IsRegular(file) || (ftruncate(file, 0) == 0 && lseek(file, 0, SEEK_SET) == 0);
}

int SoleFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(static_cast<int>(m_native), bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR)
      return errno;
    bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
  return 0;
}

} // namespace host
