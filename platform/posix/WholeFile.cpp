#include "platform/Platform.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/SystemPath.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>

namespace platform {

namespace {

std::string FolderWithSlash(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

// Where a path leads in the end: the file itself, or the one that a link names, which need not exist. Nothing for links
// without end.
std::optional<std::string> BehindLinks(std::string path) {
  constexpr int kMostLinks = 40;                      // as the system itself follows
  for (int links = 0; links <= kMostLinks; ++links) { // the last one has to be none
    std::array<char, PATH_MAX> buffer;
    const ssize_t length = readlink(path.c_str(), buffer.data(), buffer.size());
    if (length < 0)
      return path;
    const std::string named(buffer.data(), static_cast<std::size_t>(length));
    path = named.starts_with('/') ? named : FolderWithSlash(path) + named;
  }
  return std::nullopt;
}

// Makes a file of a name that nobody has in the folder: what an interrupted program, or anybody else, has left there is
// passed over. -1 when there can be no new file; `path` is its path.
int CreateNewFile(const std::string& folderWithSlash, std::string* path) {
  int file = -1;
  unsigned number = 0;
  do {
    *path = folderWithSlash + "~" + std::to_string(number++);
    file = open(path->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  } while (file < 0 && errno == EEXIST);
  return file;
}

// A new file in the folder of another one, removed by the destructor unless it has taken that one's place.
class FileBeside {
public:
  explicit FileBeside(const std::string& target)
      : m_target(target), m_file(CreateNewFile(FolderWithSlash(target), &m_path)), m_exists(m_file.IsOpen()) {}
  ~FileBeside() {
    if (m_exists)
      unlink(m_path.c_str());
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;

  bool IsOpen() const { return m_file.IsOpen(); }
  bool TakeRightsOf(const Descriptor& other) const;
  bool Write(std::string_view bytes) const;
  // Only when the bytes are safely on the disk.
  bool TakePlace() {
    m_exists = fsync(m_file.Get()) != 0 || !m_file.Close() || std::rename(m_path.c_str(), m_target.c_str()) != 0;
    return !m_exists;
  }

private:
  const std::string& m_target;
  std::string m_path;
  Descriptor m_file;
  bool m_exists; // under m_path
};

// Owner and group as far as the system allows, which may be not at all; the rights and the list of further ones
// exactly.
bool FileBeside::TakeRightsOf(const Descriptor& other) const {
  struct stat facts;
  if (fstat(other.Get(), &facts) != 0)
    return false;
  constexpr auto kSameOwner = static_cast<uid_t>(-1);
  [[maybe_unused]] const bool taken =
      fchown(m_file.Get(), facts.st_uid, facts.st_gid) == 0 || fchown(m_file.Get(), kSameOwner, facts.st_gid) == 0;
  if (fchmod(m_file.Get(), facts.st_mode & 0777) != 0)
    return false;
  constexpr const char* kAccessList = "system.posix_acl_access";
  std::array<char, 4096> list;
  const ssize_t size = fgetxattr(other.Get(), kAccessList, list.data(), list.size());
  if (size < 0)
    return errno != ERANGE; // most files have none
  return fsetxattr(m_file.Get(), kAccessList, list.data(), static_cast<std::size_t>(size), 0) == 0;
}

bool FileBeside::Write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t count = write(m_file.Get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0)
      return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

} // namespace

bool WriteWholeFile(const std::string& path, std::string_view bytes) {
  const std::optional<std::string> given = SystemPath(path);
  const std::optional<std::string> target = given ? BehindLinks(*given) : std::nullopt;
  if (!target)
    return false;
  // Opened for writing, so that a file that may not be written is not replaced either.
  const Descriptor existing(open(target->c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
  if (!existing.IsOpen() && errno != ENOENT)
    return false;
  if (existing.IsOpen() && !existing.IsRegularFile())
    return false;
  FileBeside file(*target);
  return file.IsOpen() && (!existing.IsOpen() || file.TakeRightsOf(existing)) && file.Write(bytes) && file.TakePlace();
}

} // namespace platform
