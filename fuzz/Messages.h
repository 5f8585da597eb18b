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

// An independent implementation of what messages must read: the children of an element that have a name, the
// text and the markup of the last of them ("" if there is none), and the parameters of a message in entries
// of a name.
constexpr char anyName[] = "*";
std::vector<zq::XmlNode::Ptr> ChildrenNamed(const zq::XmlNode::Ptr& parent, const std::string& name);
std::string TextOfLast(const zq::XmlNode::Ptr& parent, const std::string& name);
std::string MarkupOfLast(const zq::XmlNode::Ptr& parent, const std::string& name);
ParamMap ReadParams(const zq::XmlNode::Ptr& root, const std::string& entryName);

// Returns the parameters as they must be read after they were written as XML. The ids of a static parameter
// and the value of a variable parameter are not written, strings keep the characters that XML allows, and the
// first parameter of a name is kept.
ParamMap AfterWriting(const ParamMap& params);

// Requires the properties that every loaded command has.
void CheckCommand(const CCmdMessage& message, tavrin_testing::FakeVariables& variables);
