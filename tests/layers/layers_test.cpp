// The layers as the includes show them: a source includes from its own folder and from the layers above it,
// Qt stays in the outer folders, and the operating system stays in the files named for it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace tallwick {
namespace {

namespace fs = std::filesystem;

struct Layer {
  std::string folder;
  int rank;  // a layer includes smaller ranks; folders of one rank do not know each other
};

// In the order in which a layer may include another. The document model of reports/ is common to its
// siblings; the stand-in for the suite shares the desktop's side of their protocol.
const std::array<Layer, 17> kLayers{{{"core", 0},
                                     {"store", 1},
                                     {"tables", 2},
                                     {"shell", 3},
                                     {"audit", 4},
                                     {"posting", 5},
                                     {"clearing", 6},
                                     {"recon", 6},
                                     {"checks", 6},
                                     {"reports", 6},
                                     {"maintenance", 6},
                                     {"print", 7},
                                     {"app", 8},
                                     {"ui", 9},
                                     {"cli", 9},
                                     {"suite", 10},
                                     {"tests", 11}}};

const Layer* LayerOf(const std::string& path) {
  const std::string folder = path.substr(0, path.find('/'));
  const auto* const found = std::find_if(kLayers.begin(), kLayers.end(),
                                         [&](const Layer& layer) { return layer.folder == folder; });
  return found == kLayers.end() || folder == path ? nullptr : found;
}

bool IsQt(const std::string& header) {
  static const std::regex kQt("(Qt?[A-Z][A-Za-z0-9/]*|q[a-z0-9_]+\\.h)");
  return std::regex_match(header, kQt);
}

bool IsSystem(const std::string& header) {
  static const std::regex kSystem(
      "((sys|linux|net|netinet|arpa|asm|bits)/"
      ".*|unistd\\.h|fcntl\\.h|dirent\\.h|dlfcn\\.h|glob\\.h|grp\\.h|netdb\\.h|"
      "poll\\.h|pthread\\.h|pwd\\.h|sched\\.h|semaphore\\.h|spawn\\.h|syslog\\.h|termios\\.h|ucontext\\.h|"
      "utime\\.h|"
      "windows\\.h|win[a-z0-9]+\\.h|io\\.h|direct\\.h|process\\.h|shlobj\\.h|shellapi\\.h|psapi\\.h)",
      std::regex::icase);
  return std::regex_match(header, kSystem);
}

bool MayIncludeQt(const std::string& folder) {
  return folder == "print" || folder == "ui" || folder == "suite";
}

bool IsPlatformFile(const std::string& path) {
  return path.find("_posix.cpp") != std::string::npos || path.find("_win32.cpp") != std::string::npos;
}

// What is wrong with an include of `header` in the file at `path` (from the root); "" where nothing is.
std::string Fault(const std::string& path, const std::string& header) {
  const Layer& layer = *LayerOf(path);
  if (header.rfind("..", 0) == 0 || header.find("/../") != std::string::npos)
    return "is not written from the root";
  if (IsQt(header) && !MayIncludeQt(layer.folder)) return "is Qt";
  if (IsSystem(header) && !IsPlatformFile(path)) return "is a system header";
  const Layer* included = LayerOf(header);
  if (included == nullptr || included->folder == layer.folder) return {};
  if (layer.folder == "app" && included->folder == "print") return "brings Qt into the catalogue of screens";
  if (included->rank < layer.rank) return {};
  if (included->rank > layer.rank) return "is of a layer below";
  return included->folder == "reports" ? "" : "is of a sibling";
}

std::vector<std::string> FaultsOf(const fs::path& file, const std::string& path) {
  static const std::regex kInclude("^\\s*#\\s*include\\s*[<\"]([^>\"]+)[>\"].*");
  std::vector<std::string> faults;
  std::ifstream source(file);
  int number = 0;
  for (std::string line; std::getline(source, line);) {
    ++number;
    std::smatch match;
    if (!std::regex_match(line, match, kInclude)) continue;
    const std::string fault = Fault(path, match[1]);
    if (fault.empty()) continue;
    std::ostringstream text;
    text << path << ':' << number << ": " << match[1] << ' ' << fault;
    faults.push_back(text.str());
  }
  return faults;
}

TEST(Layers, NoIncludeBreaksTheOrder) {
  const fs::path root = TALLWICK_SOURCE_DIR;
  int sources = 0;
  for (const Layer& layer : kLayers) {
    if (layer.folder == "tests" || !fs::exists(root / layer.folder)) continue;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / layer.folder)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".cpp" && extension != ".h") continue;
      ++sources;
      for (const std::string& fault :
           FaultsOf(entry.path(), entry.path().lexically_relative(root).generic_string())) {
        ADD_FAILURE() << fault;
      }
    }
  }
  EXPECT_GT(sources, 20) << "the sources were not found";
}

TEST(Layers, BreachesAreSeen) {
  struct Case {
    const char* path;
    const char* header;
    bool allowed;
  };
  const Case cases[] = {
      {"core/form.cpp", "core/form.h", true},
      {"core/form.cpp", "store/engine/file.h", false},
      {"store/engine/a.cpp", "core/date.h", true},
      {"store/engine/a.cpp", "tables/checks.h", false},
      {"posting/a.cpp", "tests/support/fakes.h", false},
      {"recon/a.cpp", "posting/checks.h", true},
      {"recon/a.cpp", "reports/document.h", true},
      {"recon/a.cpp", "checks/layout.h", false},
      {"reports/a.cpp", "recon/compute.h", false},
      {"print/a.cpp", "reports/document.h", true},
      {"app/a.cpp", "print/pdf.h", false},
      {"app/a.cpp", "recon/screen.h", true},
      {"ui/a.cpp", "cli/args.h", false},
      {"cli/a.cpp", "app/screens.h", true},
      {"ui/a.cpp", "QtWidgets/QDialog", true},
      {"cli/a.cpp", "QString", false},
      {"app/a.h", "qstring.h", false},
      {"core/a.cpp", "queue", true},
      {"core/a.cpp", "unistd.h", false},
      {"core/a_posix.cpp", "sys/stat.h", true},
      {"ui/a.cpp", "Windows.h", false},
      {"store/a.cpp", "../core/date.h", false},
      {"store/a.cpp", "store/../core/date.h", false},
      {"cli/a.cpp", "nlohmann/json.hpp", true},
  };
  for (const Case& c : cases)
    EXPECT_EQ(Fault(c.path, c.header).empty(), c.allowed) << c.path << ' ' << c.header;
}

}  // namespace
}  // namespace tallwick
