// Files of a POSIX system. Locks are open-file-description locks: they belong to the open file, not to the
// process, and end when it is closed or its workstation dies.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "core/file_rights_posix.h"
#include "store/engine/file.h"

namespace tallwick::engine {
namespace {

// The numbers by which Linux knows the file systems of other machines: NFS, SMB in three versions, AFS, Ceph,
// Coda, 9P.
constexpr std::uint32_t kRemoteSystems[] = {0x6969,     0x517B,     0xFF534D42, 0xFE534D42,
                                            0x5346414F, 0x00C36400, 0x73757245, 0x01021997};

int WriteError(int error) {
  return error == ENOSPC || error == EDQUOT ? kErrorDiskFull : kErrorWrite;
}

class PosixFile final : public File {
 public:
  explicit PosixFile(int fd) : fd_(fd) {}
  ~PosixFile() override { ::close(fd_); }
  PosixFile(const PosixFile&) = delete;
  PosixFile& operator=(const PosixFile&) = delete;

  std::int64_t Size() override {
    struct stat status {};
    return ::fstat(fd_, &status) == 0 ? static_cast<std::int64_t>(status.st_size)
                                      : std::int64_t{kErrorLength};
  }

  std::int64_t ReadAt(std::int64_t offset, void* buffer, std::size_t length) override {
    auto* bytes = static_cast<char*>(buffer);
    std::size_t done = 0;
    while (done < length) {
      const ssize_t got = ::pread(fd_, bytes + done, length - done, offset + static_cast<std::int64_t>(done));
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return kErrorRead;
      if (got == 0) break;
      done += static_cast<std::size_t>(got);
    }
    return static_cast<std::int64_t>(done);
  }

  int WriteAt(std::int64_t offset, const void* buffer, std::size_t length) override {
    const auto* bytes = static_cast<const char*>(buffer);
    std::size_t done = 0;
    while (done < length) {
      const ssize_t put =
          ::pwrite(fd_, bytes + done, length - done, offset + static_cast<std::int64_t>(done));
      if (put < 0 && errno == EINTR) continue;
      if (put <= 0) return WriteError(put < 0 ? errno : ENOSPC);
      done += static_cast<std::size_t>(put);
    }
    return kSuccess;
  }

  int Truncate(std::int64_t size) override {
    return ::ftruncate(fd_, size) == 0 ? static_cast<int>(kSuccess) : WriteError(errno);
  }

  int Reserve(std::int64_t offset, std::int64_t length) override {
    struct stat status {};
    if (::fstat(fd_, &status) != 0 || offset + length <= status.st_size) return kSuccess;
    const int rc = ::fallocate(fd_, FALLOC_FL_KEEP_SIZE, offset, length);
    if (rc == 0) return kSuccess;
    return errno == ENOSPC || errno == EDQUOT || !HasRoomFor(length) ? static_cast<int>(kErrorDiskFull)
                                                                     : kSuccess;
  }

  int Flush() override { return ::fdatasync(fd_) == 0 ? static_cast<int>(kSuccess) : WriteError(errno); }

  void StartFlush(std::int64_t offset, std::int64_t length) override {
    ::sync_file_range(fd_, offset, length, SYNC_FILE_RANGE_WRITE);
  }

  bool IsStill(const std::string& path) override {
    struct stat own {};
    struct stat named {};
    return ::fstat(fd_, &own) == 0 && ::stat(path.c_str(), &named) == 0 && own.st_dev == named.st_dev &&
           own.st_ino == named.st_ino;
  }

  // Whoever only copies or scans the file is done with it within moments.
  bool IsOpenElsewhere() override {
    constexpr int kTries = 10;
    constexpr useconds_t kWaitMicroseconds = 50'000;
    for (int tries = 1; IsLeaseRefused(); ++tries) {
      if (tries == kTries) return true;
      ::usleep(kWaitMicroseconds);
    }
    return false;
  }

  int Lock(std::int64_t offset, std::int64_t length, LockKind kind) override {
    return SetLock(kind == LockKind::kShared ? F_RDLCK : F_WRLCK, offset, length);
  }
  int Unlock(std::int64_t offset, std::int64_t length) override { return SetLock(F_UNLCK, offset, length); }

 private:
  // Where a disk cannot set room aside, what is free must do.
  bool HasRoomFor(std::int64_t length) {
    constexpr std::int64_t kForItsOwnNotes = std::int64_t{64} << 10;
    struct statvfs disk {};
    if (::fstatvfs(fd_, &disk) != 0 || disk.f_blocks == 0) return true;  // it does not tell
    return static_cast<std::int64_t>(disk.f_bavail * disk.f_frsize) >= length + kForItsOwnNotes;
  }

  // A lease to write is given only to the one open of a file. It is given back at once; who opens the file in
  // between makes the system send a signal, which must be one that nobody dies of.
  bool IsLeaseRefused() {
    ::fcntl(fd_, F_SETSIG, SIGURG);
    const bool refused = ::fcntl(fd_, F_SETLEASE, F_WRLCK) != 0 && errno == EAGAIN;
    ::fcntl(fd_, F_SETLEASE, F_UNLCK);
    return refused;
  }

  int SetLock(int type, std::int64_t offset, std::int64_t length) {
    struct flock lock {};
    lock.l_type = static_cast<short>(type);
    lock.l_whence = SEEK_SET;
    lock.l_start = offset;
    lock.l_len = length;
    while (::fcntl(fd_, F_OFD_SETLK, &lock) != 0) {
      if (errno == EINTR) continue;
      return errno == EAGAIN || errno == EACCES ? static_cast<int>(kLocked) : kErrorLock;
    }
    return kSuccess;
  }

  int fd_;
};

class PosixFileLayer final : public FileLayer {
 public:
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, int* code) override {
    int flags = O_CLOEXEC;
    switch (mode) {
      case OpenMode::kReadOnly:
        flags |= O_RDONLY;
        break;
      case OpenMode::kReadWrite:
        flags |= O_RDWR;
        break;
      case OpenMode::kCreate:
        flags |= O_RDWR | O_CREAT | O_TRUNC;
        break;
      case OpenMode::kCreateNew:
        flags |= O_RDWR | O_CREAT | O_EXCL;
        break;
      case OpenMode::kOpenOrCreate:
        flags |= O_RDWR | O_CREAT;
        break;
    }
    const int fd = ::open(path.c_str(), flags, 0666);
    if (fd < 0) {
      *code = OpenError(mode);
      return nullptr;
    }
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
      ::close(fd);
      *code = kErrorOpen;
      return nullptr;
    }
    *code = kSuccess;
    return std::make_unique<PosixFile>(fd);
  }

  // A file on a share that does not answer is not gone.
  bool Exists(const std::string& path) override {
    return ::access(path.c_str(), F_OK) == 0 || (errno != ENOENT && errno != ENOTDIR);
  }

  int Remove(const std::string& path) override {
    return ::unlink(path.c_str()) == 0 ? static_cast<int>(kSuccess) : kErrorRemove;
  }

  int Rename(const std::string& from, const std::string& to) override {
    KeepRights(from, to);
    return std::rename(from.c_str(), to.c_str()) == 0 ? static_cast<int>(kSuccess) : kErrorRename;
  }

  int FlushFolder(const std::string& folder) override {
    const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return kErrorWrite;
    // Some network file systems cannot flush a folder; their servers keep names safe themselves.
    const bool done = ::fsync(fd) == 0 || errno == EINVAL || errno == ENOTSUP;
    ::close(fd);
    return done ? kSuccess : kErrorWrite;
  }

  bool IsRemote(const std::string& folder) override {
    struct statfs status {};
    if (::statfs(folder.empty() ? "." : folder.c_str(), &status) != 0) return false;
    return std::find(std::begin(kRemoteSystems), std::end(kRemoteSystems),
                     static_cast<std::uint32_t>(status.f_type)) != std::end(kRemoteSystems);
  }

 private:
  static int OpenError(OpenMode mode) {
    if (errno == ENOSPC || errno == EDQUOT) return kErrorDiskFull;
    if (errno == EEXIST) return kErrorExists;
    const bool denied = errno == EACCES || errno == EPERM || errno == EROFS;
    if (denied && mode != OpenMode::kReadOnly) return kErrorReadOnly;
    return mode == OpenMode::kReadOnly || mode == OpenMode::kReadWrite ? kErrorOpen : kErrorCreate;
  }
};

}  // namespace

FileLayer& SystemFiles() {
  static PosixFileLayer files;
  // A write past a limit that the system sets for a file fails and is told, instead of ending the program.
  std::signal(SIGXFSZ, SIG_IGN);
  return files;
}

}  // namespace tallwick::engine
