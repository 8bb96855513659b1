// The engine's file layer: one open file, and the folder operations on files. Paths are in the platform's
// form. Tests put another implementation behind it that fails or dies at a chosen step.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/engine/codes.h"

namespace tallwick::engine {

enum class LockKind { kShared, kExclusive };

class File {
 public:
  virtual ~File() = default;

  // The file's length in bytes, or a negative code.
  virtual std::int64_t Size() = 0;
  // Reads up to `length` bytes; fewer only at the file's end. The count read, or a negative code.
  virtual std::int64_t ReadAt(std::int64_t offset, void* buffer, std::size_t length) = 0;
  // Writes all bytes or fails: kSuccess, kErrorWrite or kErrorDiskFull.
  virtual int WriteAt(std::int64_t offset, const void* buffer, std::size_t length) = 0;
  virtual int Truncate(std::int64_t size) = 0;
  // Sets disk space aside for a range, without changing the file's length, where the file system can; so that
  // a full disk is met before anything is written. kSuccess or kErrorDiskFull.
  virtual int Reserve(std::int64_t, std::int64_t) { return kSuccess; }
  // Returns when everything written so far would survive a power cut.
  virtual int Flush() = 0;
  // Lets the disk begin with what was written to a range, so that a Flush later has less to wait for.
  virtual void StartFlush(std::int64_t, std::int64_t) {}

  // Whether a path still names this very file, and not one that was put in its place.
  virtual bool IsStill(const std::string&) { return true; }

  // Whether some other open of this file is known, by whatever program and without any lock. False too where
  // the system cannot tell.
  virtual bool IsOpenElsewhere() { return false; }

  // Byte-range locks that belong to this open file: two opens of one file in one process exclude each other,
  // and closing one keeps the other's. They never wait. kSuccess, kLocked or kErrorLock.
  virtual int Lock(std::int64_t offset, std::int64_t length, LockKind kind) = 0;
  virtual int Unlock(std::int64_t offset, std::int64_t length) = 0;
};

enum class OpenMode {
  kReadOnly,
  kReadWrite,
  kCreate,       // makes the file or empties the existing one
  kCreateNew,    // fails when the file exists
  kOpenOrCreate  // keeps the contents of an existing file
};

class FileLayer {
 public:
  virtual ~FileLayer() = default;

  // The open file; null with `code` set to kErrorOpen, kErrorExists, kErrorCreate, kErrorDiskFull or, where
  // it may not be written, kErrorReadOnly.
  virtual std::unique_ptr<File> Open(const std::string& path, OpenMode mode, int* code) = 0;
  virtual bool Exists(const std::string& path) = 0;  // true also where that cannot be told
  virtual int Remove(const std::string& path) = 0;
  // Replaces `to` when it exists, and takes over the rights on it.
  virtual int Rename(const std::string& from, const std::string& to) = 0;
  // Makes names made, renamed or removed in the folder survive a power cut.
  virtual int FlushFolder(const std::string& folder) = 0;
  // Whether the folder lies on another machine, which may lose its power while this one runs on.
  virtual bool IsRemote(const std::string&) { return false; }
};

// Opens a file for reading and writing, or, where it may not be written, for reading alone: then *read_only
// is set. `mode` is kReadWrite or kOpenOrCreate; a file that is missing and may not be made gives
// kErrorReadOnly.
std::unique_ptr<File> OpenOrRead(FileLayer& files, const std::string& path, OpenMode mode, bool* read_only,
                                 int* code);

// Copies a file, flushed, in the place of `to`. When it fails `to` is as it was. `goes_on` (may be empty) is
// asked behind every block; when it says no the copy ends with kStopped.
int CopyFile(FileLayer& files, const std::string& from, const std::string& to,
             const std::function<bool()>& goes_on);

// The operating system's files.
FileLayer& SystemFiles();

}  // namespace tallwick::engine
