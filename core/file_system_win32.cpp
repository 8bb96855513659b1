// Files and folders on Windows, where the system itself compares names without regard to case.
// A replaced file is first complete beside the old one, so a reader or a crash meets the old or the new
// contents.
#include <windows.h>

#include <algorithm>

#include "core/portable_file_system.h"
#include "core/system_ports.h"

namespace tallwick {

namespace fs = std::filesystem;

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kReplace = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;

// Opens, writes everything in one call, flushes where asked, closes.
bool WriteOnce(const fs::path& path, DWORD access, DWORD creation, std::string_view bytes, bool flush) {
  const HANDLE file =
      CreateFileW(path.c_str(), access, kShareAll, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  bool done = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0;
  done = done && written == bytes.size() && (!flush || FlushFileBuffers(file) != 0);
  CloseHandle(file);
  return done;
}

bool FlushFile(const fs::path& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool done = FlushFileBuffers(file) != 0;
  CloseHandle(file);
  return done;
}

fs::path Beside(const fs::path& target) {
  return fs::path(target).concat(L"." + std::to_wstring(GetCurrentProcessId()) + L".tmp");
}

bool PutInPlace(const fs::path& beside, const fs::path& target, bool complete) {
  if (complete && MoveFileExW(beside.c_str(), target.c_str(), kReplace) != 0) return true;
  DeleteFileW(beside.c_str());
  return false;
}

struct CopyTold {
  const GoesOn& goes_on;
  std::size_t bytes;  // told of so far
};

DWORD CALLBACK ToldOfCopy(LARGE_INTEGER, LARGE_INTEGER done, LARGE_INTEGER, LARGE_INTEGER, DWORD, DWORD,
                          HANDLE, HANDLE, LPVOID data) {
  auto& told = *static_cast<CopyTold*>(data);
  const std::size_t more = static_cast<std::size_t>(done.QuadPart) - told.bytes;
  told.bytes += more;
  return more == 0 || !told.goes_on || told.goes_on(more) ? PROGRESS_CONTINUE : PROGRESS_CANCEL;
}

class Win32FileSystem : public PortableFileSystem {
 public:
  std::string PlatformPath(std::string_view path) const override {
    std::string text(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
  }

  std::string HeldPath(std::string_view platform_path) const override { return PlatformPath(platform_path); }

  bool Write(std::string_view path, std::string_view contents) override {
    const fs::path target = NativePath(path);
    const fs::path beside = Beside(target);
    return PutInPlace(beside, target, WriteOnce(beside, GENERIC_WRITE, CREATE_ALWAYS, contents, true));
  }

  bool Append(std::string_view path, std::string_view contents) override {
    return WriteOnce(NativePath(path), FILE_APPEND_DATA, OPEN_ALWAYS, contents, false);
  }

  bool Copy(std::string_view from, std::string_view to, const GoesOn& goes_on) override {
    const fs::path target = NativePath(to);
    const fs::path beside = Beside(target);
    CopyTold told{goes_on, 0};
    const bool copied =
        CopyFileExW(NativePath(from).c_str(), beside.c_str(), ToldOfCopy, &told, nullptr, 0) != 0;
    return PutInPlace(beside, target, copied && FlushFile(beside));
  }

  bool Rename(std::string_view from, std::string_view to) override {
    return MoveFileExW(NativePath(from).c_str(), NativePath(to).c_str(), kReplace) != 0;
  }
};

}  // namespace

FileSystem& SystemFileSystem() {
  static Win32FileSystem files;
  return files;
}

}  // namespace tallwick
