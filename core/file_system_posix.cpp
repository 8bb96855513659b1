// Files and folders on POSIX systems, where names differ by case and the tables' names may have come in any.
// A replaced file is first complete beside the old one, so a reader or a crash meets the old or the new
// contents.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "core/file_rights_posix.h"
#include "core/portable_file_system.h"
#include "core/system_ports.h"
#include "core/text.h"

namespace tallwick {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes

// An open file that closes itself.
class Descriptor {
 public:
  Descriptor(const std::string& path, int flags)
      : number_(open(path.c_str(), flags | O_CLOEXEC, kNewFileMode)) {}
  ~Descriptor() {
    if (IsOpen()) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool IsOpen() const { return number_ >= 0; }
  int Number() const { return number_; }
  bool Flush() const { return fsync(number_) == 0; }

  // One write; the count of bytes written, or -1.
  ssize_t Write(std::string_view bytes) const {
    ssize_t count = 0;
    do {
      count = write(number_, bytes.data(), bytes.size());
    } while (count < 0 && errno == EINTR);
    return count;
  }

  bool WriteAll(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t count = Write(bytes);
      if (count <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

 private:
  int number_;
};

bool Exists(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

std::string FolderOf(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos) return ".";
  return separator == 0 ? "/" : path.substr(0, separator);
}

bool FlushFolder(const std::string& folder) {
  const Descriptor descriptor(folder, O_RDONLY | O_DIRECTORY);
  return descriptor.IsOpen() && descriptor.Flush();
}

// The name in the folder that equals `piece` but for case; `piece` itself where there is none.
std::string FindPiece(const std::string& folder, const std::string& piece) {
  if (Exists(folder + piece)) return piece;
  std::string found;
  std::error_code error;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::string name = entry->path().filename().string();
    // The first in order, so that two candidates do not change places from call to call.
    if (EqualsIgnoreCase(name, piece) && (found.empty() || name < found)) found = std::move(name);
  }
  return found.empty() ? piece : found;
}

bool RenameDurably(const std::string& from, const std::string& to) {
  KeepRights(from, to);
  if (std::rename(from.c_str(), to.c_str()) != 0) return false;
  const std::string old_folder = FolderOf(from);
  const std::string new_folder = FolderOf(to);
  return FlushFolder(new_folder) && (old_folder == new_folder || FlushFolder(old_folder));
}

// Makes a new file beside `target`, lets `fill` write it, and puts it in place of `target` when that
// succeeded.
template <typename Fill>
bool Replace(const std::string& target, Fill fill) {
  struct stat old {};
  const bool replaces = stat(target.c_str(), &old) == 0;
  if (replaces && !S_ISREG(old.st_mode)) return false;  // a folder, a pipe, a device
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string beside =
        target + '.' + std::to_string(getpid()) + '-' + std::to_string(attempt) + ".tmp";
    const Descriptor file(beside, O_WRONLY | O_CREAT | O_EXCL);
    if (!file.IsOpen() && errno == EEXIST) continue;  // a leftover, or another workstation's
    if (!file.IsOpen()) return false;
    if (replaces) static_cast<void>(fchmod(file.Number(), old.st_mode & 07777));
    const bool done = fill(file) && file.Flush() && RenameDurably(beside, target);
    if (!done) static_cast<void>(unlink(beside.c_str()));
    return done;
  }
  return false;
}

class PosixFileSystem : public PortableFileSystem {
 public:
  std::string PlatformPath(std::string_view path) const override {
    std::string wanted(path);
    std::replace(wanted.begin(), wanted.end(), '\\', '/');
    if (Exists(wanted)) return wanted;
    std::string found;
    const std::vector<std::string> pieces = Split(wanted, '/');
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (i > 0) found += '/';
      if (!pieces[i].empty()) found += FindPiece(found, pieces[i]);
    }
    return found;
  }

  std::string HeldPath(std::string_view platform_path) const override {
    std::string path(platform_path);
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
  }

  bool Write(std::string_view path, std::string_view contents) override {
    return Replace(PlatformPath(path), [&](const Descriptor& file) { return file.WriteAll(contents); });
  }

  bool Append(std::string_view path, std::string_view contents) override {
    const Descriptor file(PlatformPath(path), O_WRONLY | O_CREAT | O_APPEND);
    return file.IsOpen() && file.Write(contents) == static_cast<ssize_t>(contents.size());
  }

  bool Copy(std::string_view from, std::string_view to, const GoesOn& goes_on) override {
    const Descriptor source(PlatformPath(from), O_RDONLY);
    if (!source.IsOpen() || !FileExists(from)) return false;
    return Replace(PlatformPath(to), [&](const Descriptor& file) { return CopyAll(source, file, goes_on); });
  }

  bool Rename(std::string_view from, std::string_view to) override {
    return RenameDurably(PlatformPath(from), PlatformPath(to));
  }

 private:
  static bool CopyAll(const Descriptor& source, const Descriptor& target, const GoesOn& goes_on) {
    std::string buffer(1 << 20, '\0');
    while (true) {
      const ssize_t count = read(source.Number(), buffer.data(), buffer.size());
      if (count == 0) return true;
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return false;
      const auto bytes = static_cast<std::size_t>(count);
      if (!target.WriteAll(std::string_view(buffer).substr(0, bytes))) return false;
      if (goes_on && !goes_on(bytes)) return false;
    }
  }
};

}  // namespace

FileSystem& SystemFileSystem() {
  static PosixFileSystem files;
  return files;
}

}  // namespace tallwick
