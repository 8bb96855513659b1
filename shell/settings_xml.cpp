#include "shell/settings_xml.h"

#include <pugixml.hpp>
#include <sstream>

namespace tallwick {
namespace {

// White space and everything else is kept as found.
constexpr unsigned int kParse = (pugi::parse_full | pugi::parse_ws_pcdata) & ~pugi::parse_eol;

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

// The length of the well-formed UTF-8 sequence at `at`; 0 where there is none.
std::size_t SequenceLength(std::string_view text, std::size_t at) {
  const auto first = static_cast<unsigned char>(text[at]);
  std::size_t length = 1;
  if (first >= 0x80) length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first >= 0x80 && (first < 0xC2 || first > 0xF4)) return 0;
  if (at + length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsContinuation(text[at + i])) return 0;
  }
  return length;
}

// The text without what no XML reader would take back: control characters and broken UTF-8.
std::string Holdable(std::string_view text) {
  std::string held;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = SequenceLength(text, at);
    const bool control = static_cast<unsigned char>(text[at]) < 0x20 && text[at] != '\t' && text[at] != '\n';
    if (length > 0 && !control) held.append(text.substr(at, length));
    at += length > 0 ? length : 1;
  }
  return held;
}

pugi::xml_node NodeOf(pugi::xml_node_struct* node) {
  return pugi::xml_node(node);
}

bool IsText(const pugi::xml_node& node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

}  // namespace

std::string XmlElement::Name() const {
  return NodeOf(node_).name();
}

std::string XmlElement::Attribute(std::string_view name) const {
  return NodeOf(node_).attribute(std::string(name).c_str()).value();
}

std::string XmlElement::Text() const {
  std::string text;
  for (const pugi::xml_node& child : NodeOf(node_)) {
    if (IsText(child)) text += child.value();
  }
  return text;
}

XmlElement XmlElement::Child(std::string_view name) const {
  return XmlElement(NodeOf(node_).child(std::string(name).c_str()).internal_object());
}

std::vector<XmlElement> XmlElement::Children() const {
  std::vector<XmlElement> children;
  for (const pugi::xml_node& child : NodeOf(node_)) {
    if (child.type() == pugi::node_element) children.emplace_back(child.internal_object());
  }
  return children;
}

void XmlElement::SetAttribute(std::string_view name, std::string_view value) {
  pugi::xml_node node = NodeOf(node_);
  const std::string held(name);
  pugi::xml_attribute attribute = node.attribute(held.c_str());
  if (!attribute) attribute = node.append_attribute(held.c_str());
  attribute.set_value(Holdable(value).c_str());
}

void XmlElement::SetText(std::string_view text) {
  pugi::xml_node node = NodeOf(node_);
  for (pugi::xml_node child = node.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    if (IsText(child)) node.remove_child(child);
    child = next;
  }
  const std::string held = Holdable(text);
  if (!held.empty()) node.append_child(pugi::node_pcdata).set_value(held.c_str());
}

XmlElement XmlElement::Append(std::string_view name) {
  return XmlElement(NodeOf(node_).append_child(std::string(name).c_str()).internal_object());
}

XmlElement XmlElement::ChildOrNew(std::string_view name) {
  const XmlElement found = Child(name);
  return found ? found : Append(name);
}

void XmlElement::Remove(XmlElement child) {
  NodeOf(node_).remove_child(NodeOf(child.node_));
}

void XmlElement::MoveBehind(XmlElement sibling) {
  pugi::xml_node next = NodeOf(sibling.node_).next_sibling();
  while (next && next.type() != pugi::node_element) next = next.next_sibling();
  if (sibling && next != NodeOf(node_))
    NodeOf(node_).parent().insert_move_after(NodeOf(node_), NodeOf(sibling.node_));
}

XmlFile::XmlFile(FileSystem& files, std::string path, std::string_view root)
    : files_(files), path_(std::move(path)), root_(root), document_(std::make_unique<pugi::xml_document>()) {}

XmlFile::~XmlFile() = default;

bool XmlFile::Load() {
  document_->reset();
  const std::optional<std::string> text = files_.Read(path_);
  if (text && document_->load_buffer(text->data(), text->size(), kParse) &&
      document_->document_element().name() == root_) {
    return true;
  }
  document_->reset();
  return false;
}

void XmlFile::Start() {
  document_->reset();
  pugi::xml_node declaration = document_->append_child(pugi::node_declaration);
  declaration.append_attribute("version").set_value("1.0");
  declaration.append_attribute("encoding").set_value("UTF-8");
  document_->append_child(root_.c_str());
}

bool XmlFile::Save() {
  // A file that came in another encoding leaves in UTF-8, and says so.
  for (pugi::xml_node node : document_->children()) {
    if (node.type() == pugi::node_declaration && node.attribute("encoding")) {
      node.attribute("encoding").set_value("UTF-8");
    }
  }
  std::ostringstream text;
  document_->save(text, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
  return files_.Write(path_, text.str());
}

XmlElement XmlFile::Root() const {
  return XmlElement(document_->document_element().internal_object());
}

XmlElement XmlFile::Named(std::string_view element, std::string_view value) const {
  for (const XmlElement& child : Root().Children()) {
    if (child.Name() == element && child.Attribute("name") == value) return child;
  }
  return {};
}

}  // namespace tallwick
