#include "shell/clsBranch.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "shell/settings_xml.h"

namespace tallwick {
namespace {

constexpr std::string_view kRoot = "Branches";
constexpr std::string_view kBranch = "Branch";

struct TextSetting {
  std::string_view element;
  std::string clsBranch::*member;
};

constexpr TextSetting kTexts[] = {{"Path", &clsBranch::Path},
                                  {"MyUserGroup", &clsBranch::MyUserGroup},
                                  {"EmailFriendlyName", &clsBranch::EmailFriendlyName},
                                  {"EmailAddress", &clsBranch::EmailAddress},
                                  {"PortwainUser", &clsBranch::PortwainUser}};

struct ListSetting {
  std::string_view container;
  std::string_view entry;  // followed by the number, from 1
  RecentList clsBranch::*member;
};

constexpr ListSetting kLists[] = {{"Files", "LastFile_", &clsBranch::Files},
                                  {"Reports", "LastReport_", &clsBranch::Reports},
                                  {"Documents", "LastDocument_", &clsBranch::Documents}};

constexpr std::array<std::string_view, kBranchAddressLines> kAddressLabels{
    "Branch Name",   "Branch Agent", "Branch Street 1", "Branch Street 2", "Branch City, State  ZIP",
    "Branch City",   "Branch State", "Branch ZIP",      "Branch County",   "Branch Phone 1",
    "Branch Phone 2"};

// The entries of the containers, in document order, whatever their names.
void ReadLists(const XmlElement& element, clsBranch* branch) {
  for (const ListSetting& list : kLists) {
    RecentList& recent = branch->*list.member;
    std::size_t position = 1;
    for (const XmlElement& entry : element.Child(list.container).Children()) {
      if (position > recent.Capacity()) break;
      recent[position++] = entry.Text();
    }
    recent.Compact();
  }
}

void ReadBranch(const FileSystem& files, const XmlElement& element, clsBranch* branch) {
  for (const TextSetting& text : kTexts) branch->*text.member = element.Child(text.element).Text();
  if (!branch->Path.empty()) {
    branch->PathExists = files.FolderExists(WithoutBackslash(branch->Path));
    branch->Path = WithBackslash(branch->Path);
  }
  ReadLists(element, branch);
}

// Names are told apart without regard to case, so that a list never holds two that look the same. Of two in
// a file that somebody else has written the one of exactly this name is meant.
XmlElement FindBranch(const XmlFile& file, std::string_view name) {
  if (const XmlElement exact = file.Named(kBranch, name)) return exact;
  for (const XmlElement& element : file.Root().Children()) {
    if (element.Name() == kBranch && EqualsIgnoreCase(element.Attribute("name"), name)) return element;
  }
  return {};
}

// Entries number themselves over the non-empty slots and stand in that order, in which they are read back;
// elements of an earlier, longer list go.
void WriteList(XmlElement container, const ListSetting& list, const RecentList& recent) {
  std::vector<std::string> names;
  XmlElement before;
  for (const std::string& entry : recent.Entries()) {
    if (entry.empty()) continue;
    names.push_back(std::string(list.entry) + std::to_string(names.size() + 1));
    XmlElement element = container.ChildOrNew(names.back());
    element.SetText(entry);
    element.MoveBehind(before);
    before = element;
  }
  for (const XmlElement& child : container.Children()) {
    if (std::find(names.begin(), names.end(), child.Name()) == names.end()) container.Remove(child);
  }
}

}  // namespace

void RecentList::Compact() {
  std::stable_partition(entries_.begin(), entries_.end(),
                        [](const std::string& entry) { return !entry.empty(); });
}

void RecentList::Add(std::string_view entry) {
  if (entry.empty()) return;
  const auto found = std::find(entries_.begin(), entries_.end(), entry);
  const auto free = std::find(entries_.begin(), entries_.end(), "");
  const auto last = found != entries_.end() ? found : free != entries_.end() ? free : entries_.end() - 1;
  *last = entry;
  std::rotate(entries_.begin(), last, last + 1);
}

BranchFile::BranchFile(FileSystem& files, std::string_view settings_path)
    : files_(files), path_(WithBackslash(Trim(settings_path)) + "Branches.xml") {}

clsBranch BranchFile::Load(std::string_view name) const {
  clsBranch branch;
  branch.Name = name;
  XmlFile file(files_, path_, kRoot);
  if (!file.Load()) return branch;
  const XmlElement element = FindBranch(file, name);
  if (!element) return branch;
  branch.loaded_name_ = element.Attribute("name");
  ReadBranch(files_, element, &branch);
  return branch;
}

std::vector<clsBranch> BranchFile::LoadAll() const {
  std::vector<clsBranch> branches;
  XmlFile file(files_, path_, kRoot);
  if (!file.Load()) return branches;
  for (const XmlElement& element : file.Root().Children()) {
    clsBranch branch;
    branch.Name = branch.loaded_name_ = element.Attribute("name");
    const auto same = [&](const clsBranch& other) { return EqualsIgnoreCase(other.Name, branch.Name); };
    if (std::any_of(branches.begin(), branches.end(), same)) continue;
    ReadBranch(files_, element, &branch);
    branches.push_back(std::move(branch));
  }
  return branches;
}

bool BranchFile::Save(clsBranch& branch) {
  XmlFile file(files_, path_, kRoot);
  if (!file.Load()) file.Start();
  if (!branch.loaded_name_.empty() && !EqualsIgnoreCase(branch.loaded_name_, branch.Name)) {
    if (FindBranch(file, branch.Name)) return false;
    file.Named(kBranch, branch.loaded_name_).SetAttribute("name", branch.Name);
  }
  XmlElement element = FindBranch(file, branch.Name);
  if (!element) {
    element = file.Root().Append(kBranch);
    element.SetAttribute("name", branch.Name);
  }
  for (const TextSetting& text : kTexts) element.ChildOrNew(text.element).SetText(branch.*text.member);
  for (const ListSetting& list : kLists) {
    (branch.*list.member).Compact();
    WriteList(element.ChildOrNew(list.container), list, branch.*list.member);
  }
  if (!file.Save()) return false;
  branch.loaded_name_ = element.Attribute("name");
  return true;
}

bool BranchFile::Delete(std::string_view name) {
  XmlFile file(files_, path_, kRoot);
  if (!file.Load()) return true;
  const XmlElement element = FindBranch(file, name);
  if (!element) return true;
  file.Root().Remove(element);
  return file.Save();
}

std::string_view BranchAddress::Text(std::string_view label) const {
  const auto found = std::find_if(lines.begin(), lines.end(),
                                  [&](const BranchAddressLine& line) { return line.label == label; });
  return found == lines.end() ? std::string_view{} : found->text;
}

BranchAddress ReadBranchAddress(const FileSystem& files, std::string_view settings_path,
                                std::string_view base_name) {
  BranchAddress address;
  for (std::size_t i = 0; i < address.lines.size(); ++i) address.lines[i].label = kAddressLabels[i];
  if (Trim(base_name).empty()) return address;
  const std::string path = WithBackslash(settings_path) + std::string(Trim(base_name)) + ".SSP";
  const std::optional<std::string> contents = files.ReadIfThere(path);
  if (!contents) address.problem = CannotBeReadText(path);
  const std::vector<std::string> lines = Split(FromTextFile(contents.value_or("")), '\n');
  for (std::size_t i = 0; i < lines.size() && i <= address.lines.size(); ++i) {
    std::string& text = i < address.lines.size() ? address.lines[i].text : address.last_line;
    text = Trim(lines[i]);
  }
  return address;
}

}  // namespace tallwick
