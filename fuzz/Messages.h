#pragma once

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/DriverParam.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_testing/FakeVariables.h>
#include <map>
#include <string>
#include <vector>

using ParamMap = std::map<std::string, DriverParam>;

bool AreSame(const ParamMap& left, const ParamMap& right);
void RequireSame(const ParamMap& actual, const ParamMap& expected, const char* property);

// What messages are to read, told from the outside in: the children of an element that have a name, the text
// and the markup of the last of them, "" without any, and the parameters of a message in entries of a name.
constexpr char anyName[] = "*";
std::vector<zq::XmlNode::Ptr> ChildrenNamed(const zq::XmlNode::Ptr& parent, const std::string& name);
std::string TextOfLast(const zq::XmlNode::Ptr& parent, const std::string& name);
std::string MarkupOfLast(const zq::XmlNode::Ptr& parent, const std::string& name);
ParamMap ReadParams(const zq::XmlNode::Ptr& root, const std::string& entryName);

// What parameters read as after they were written as XML: of a static one the ids are not written, of a
// variable one the value, and texts keep what XML can hold. The first one of a name wins.
ParamMap AfterWriting(const ParamMap& params);

// What has to hold of every command that was read.
void CheckCommand(const CCmdMessage& message, tavrin_testing::FakeVariables& variables);
