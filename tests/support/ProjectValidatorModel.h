#pragma once

#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

// An independent implementation of the rules of projects, as plain recursion over lists of children, to
// compare the library with. Like a validator, it remembers the ids that it has seen.
class ProjectValidatorModel {
 public:
  struct LogLine {
    std::string operation;
    std::string text;
    bool operator==(const LogLine& other) const { return operation == other.operation && text == other.text; }
  };

  std::vector<std::string> messages;
  std::vector<zq::XmlPosition> places;
  std::vector<LogLine> log;

  // Checks a whole document with this root.
  void Project(const zq::XmlNode::Ptr& root);

  // Check parts of a document. They throw Unreadable.
  void CurrentState(const zq::XmlNode::Ptr& root);
  void SystemItems(const zq::XmlNode::Ptr& section);
  void SystemItem(const zq::XmlNode::Ptr& item);
  void Item(const zq::XmlNode::Ptr& item);
  void SubItems(const zq::XmlNode::Ptr& subitems);

  // A malformed number, and its position.
  struct Unreadable : std::runtime_error {
    Unreadable(const std::string& text, zq::XmlPosition where) : std::runtime_error(text), place(where) {}
    zq::XmlPosition place;
  };

 private:
  void Say(const std::string& text, const zq::XmlNode::Ptr& about);
  void Log(const char* operation, const char* text);
  void Named(const zq::XmlNode::Ptr& element, const std::string& name);
  bool Leading(const zq::XmlNode::Ptr& item, std::uint32_t wantedId, std::int32_t wantedType);
  void OptionalElements(const zq::XmlNode::Ptr& item, const std::vector<zq::XmlNode::Ptr>& children);
  void Driver(const zq::XmlNode::Ptr& item, const zq::XmlNode::Ptr& driver);

  std::map<std::uint32_t, int> seen_;
};
