#include "core/file_rights_posix.h"

#include <sys/stat.h>
#include <unistd.h>

namespace tallwick {

void KeepRights(const std::string& fresh, const std::string& old) {
  constexpr mode_t kRights = 07777;
  struct stat before {};
  struct stat now {};
  if (::stat(old.c_str(), &before) != 0 || ::stat(fresh.c_str(), &now) != 0) return;
  const bool same_owner = before.st_uid == now.st_uid && before.st_gid == now.st_gid;
  // Only root may give a file away; the group is what a shared folder works by.
  if (!same_owner && ::chown(fresh.c_str(), before.st_uid, before.st_gid) != 0 &&
      ::chown(fresh.c_str(), static_cast<uid_t>(-1), before.st_gid) != 0) {
    return;
  }
  if ((before.st_mode & kRights) != (now.st_mode & kRights)) ::chmod(fresh.c_str(), before.st_mode & kRights);
}

}  // namespace tallwick
