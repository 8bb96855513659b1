// The suite as seen by this program: a Suite over the local socket of the running main program.
// The company and its folders are those of the moment of attaching; login, security and branch are asked anew
// each time, and keep their last value when the suite has ended meanwhile.
#pragma once

#include <QString>
#include <memory>

#include "core/file_system.h"
#include "shell/suite.h"

namespace tallwick {

// Null when no suite answers on the socket. `files` must outlive the suite.
std::unique_ptr<Suite> AttachToSuite(const QString& socket_name, const FileSystem& files);

}  // namespace tallwick
