// The suite's XML settings files. This is the only door to the XML library.
// Invariant: what a file holds beside what this program knows (elements, attributes, comments, white space)
// survives a load and a save unchanged.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"

namespace pugi {
class xml_document;
struct xml_node_struct;
}  // namespace pugi

namespace tallwick {

// One element. It is a place in its document and must not outlive it. Reading from none gives empty values.
class XmlElement {
 public:
  XmlElement() = default;
  explicit XmlElement(pugi::xml_node_struct* node) : node_(node) {}

  explicit operator bool() const { return node_ != nullptr; }
  std::string Name() const;
  std::string Attribute(std::string_view name) const;
  // The texts within, elements left aside.
  std::string Text() const;
  XmlElement Child(std::string_view name) const;  // the first of this name
  std::vector<XmlElement> Children() const;       // elements, in document order

  // Writers; they do nothing to none. Characters that XML cannot hold are left out.
  void SetAttribute(std::string_view name, std::string_view value);
  void SetText(std::string_view text);
  XmlElement Append(std::string_view name);
  XmlElement ChildOrNew(std::string_view name);
  void Remove(XmlElement child);
  // Moves the element directly behind a sibling where another element stands between them, or behind it.
  // None as the sibling moves nothing.
  void MoveBehind(XmlElement sibling);

 private:
  pugi::xml_node_struct* node_ = nullptr;
};

class XmlFile {
 public:
  XmlFile(FileSystem& files, std::string path, std::string_view root);
  ~XmlFile();
  XmlFile(const XmlFile&) = delete;
  XmlFile& operator=(const XmlFile&) = delete;

  // False, and empty, when the file cannot be read, is no well-formed XML or has another root element.
  bool Load();
  // An empty document: the declaration and the root element.
  void Start();
  // Replaces the whole file. False when it could not be written; it is then as it was.
  bool Save();
  // None before a successful Load or a Start.
  XmlElement Root() const;
  // The root's first child element of this name whose attribute "name" is exactly `value`.
  XmlElement Named(std::string_view element, std::string_view value) const;

 private:
  FileSystem& files_;
  std::string path_;
  std::string root_;
  std::unique_ptr<pugi::xml_document> document_;
};

}  // namespace tallwick
