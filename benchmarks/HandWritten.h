// The code that a caller without the library would write: reading a command into a map of its parameters with
// three common parsers, and writing messages with one of them.
#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <pugixml.hpp>
#include <tinyxml2.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/ICmdMessage.h>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

namespace hand_written {

struct Command {
  std::string name;
  std::map<std::string, DriverParam> params;
};

// --- reading ---

// `Node` is the element type of the parser. The fields of an absent element are absent or empty.
template <typename Node>
Command FetchCommand(const Node& root) {
  const auto id = [](const Node& node) {
    return static_cast<std::uint32_t>(std::strtoul(node.Text(), nullptr, 10));
  };
  Command command{root.Child("command").Text(), {}};
  for (Node param = root.Child("params").Child("param"); param; param = param.Next("param")) {
    const std::string name = param.Child("name").Text();
    const Node value = param.Child("value");
    const std::string type = value.Attribute("type");
    if (const Node variable = value.Child("variable"))
      command.params.emplace(
          name, DriverParam(name, type, id(variable.Child("deviceid")), id(variable.Child("variableid"))));
    else
      command.params.emplace(name, DriverParam(name, type, value.Child("static").Text()));
  }
  return command;
}

inline void Require(bool parsed) {
  if (!parsed) throw std::invalid_argument("not well-formed");
}

inline const char* OrBlank(const char* text) { return text == nullptr ? "" : text; }

struct TinyXml2Node {
  const tinyxml2::XMLElement* element;

  explicit operator bool() const { return element != nullptr; }
  TinyXml2Node Child(const char* name) const {
    return {element == nullptr ? nullptr : element->FirstChildElement(name)};
  }
  TinyXml2Node Next(const char* name) const { return {element->NextSiblingElement(name)}; }
  const char* Text() const { return element == nullptr ? "" : OrBlank(element->GetText()); }
  const char* Attribute(const char* name) const {
    return element == nullptr ? "" : OrBlank(element->Attribute(name));
  }
};

inline Command ReadWithTinyXml2(const std::string& text) {
  tinyxml2::XMLDocument document;
  Require(document.Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS);
  return FetchCommand(TinyXml2Node{document.RootElement()});
}

struct PugixmlNode {
  pugi::xml_node node;

  explicit operator bool() const { return !node.empty(); }
  PugixmlNode Child(const char* name) const { return {node.child(name)}; }
  PugixmlNode Next(const char* name) const { return {node.next_sibling(name)}; }
  const char* Text() const { return node.child_value(); }
  const char* Attribute(const char* name) const { return node.attribute(name).value(); }
};

inline Command ReadWithPugixml(const std::string& text) {
  pugi::xml_document document;
  Require(static_cast<bool>(document.load_buffer(text.data(), text.size())));
  return FetchCommand(PugixmlNode{document.document_element()});
}

inline std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> ParseWithLibxml2(const std::string& text) {
  xmlDoc* document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                   XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE);
  Require(document != nullptr);
  return {document, xmlFreeDoc};
}

struct Libxml2Node {
  const xmlNode* node;

  explicit operator bool() const { return node != nullptr; }
  Libxml2Node Child(const char* name) const {
    return Named(node == nullptr ? nullptr : node->children, name);
  }
  Libxml2Node Next(const char* name) const { return Named(node->next, name); }
  const char* Text() const { return node == nullptr ? "" : TextOf(node->children); }
  const char* Attribute(const char* name) const {
    if (node == nullptr) return "";
    for (const xmlAttr* attribute = node->properties; attribute != nullptr; attribute = attribute->next)
      if (IsNamed(attribute->name, name)) return TextOf(attribute->children);
    return "";
  }

 private:
  static bool IsNamed(const xmlChar* name, const char* wanted) {
    return xmlStrEqual(name, reinterpret_cast<const xmlChar*>(wanted)) != 0;
  }
  static Libxml2Node Named(const xmlNode* first, const char* name) {
    while (first != nullptr && !IsNamed(first->name, name)) first = first->next;
    return {first};
  }
  static const char* TextOf(const xmlNode* first) {
    return first == nullptr ? "" : OrBlank(reinterpret_cast<const char*>(first->content));
  }
};

inline Command ReadWithLibxml2(const std::string& text) {
  const auto document = ParseWithLibxml2(text);
  return FetchCommand(Libxml2Node{xmlDocGetRootElement(document.get())});
}

// --- writing ---

inline void AppendTextElement(pugi::xml_node parent, const char* name, const std::string& text) {
  parent.append_child(name).text().set(text.c_str());
}

inline void AppendParams(pugi::xml_node root, const std::map<std::string, DriverParam>& entries) {
  pugi::xml_node params = root.append_child("params");
  for (const auto& [name, param] : entries) {
    pugi::xml_node node = params.append_child("param");
    AppendTextElement(node, "name", name);
    pugi::xml_node value = node.append_child("value");
    value.append_attribute("type").set_value(param.type.c_str());
    if (param.bVar) {
      pugi::xml_node variable = value.append_child("variable");
      variable.append_child("deviceid").text().set(param.idDevice);
      variable.append_child("variableid").text().set(param.idVariable);
    } else {
      AppendTextElement(value, "static", param.value);
    }
  }
}

inline std::string TextOf(const pugi::xml_document& document) {
  struct : pugi::xml_writer {
    std::string text;
    void write(const void* data, std::size_t size) override {
      text.append(static_cast<const char*>(data), size);
    }
  } writer;
  document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
  return std::move(writer.text);
}

inline std::string Write(const ICmdMessage& message) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("devicecommand");
  AppendTextElement(root, "command", message.getRawCommand());
  AppendParams(root, message.GetParamMap());
  return TextOf(document);
}

inline std::string WriteNotification(const IBindMessage& message) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("bindmessage");
  AppendTextElement(root, "notify", message.getNotify());
  AppendTextElement(root, "data", message.getData());
  AppendParams(root, message.GetParamMap());
  AppendTextElement(root, "path", message.getPath());
  return TextOf(document);
}

}  // namespace hand_written
