#include <tavrin_platform/XmlNode.h>

zq::XmlNode::Ptr XmlHelper::AddChild(zq::XmlNode::Ptr& parent, const std::string& name,
                                     const std::string& text) {
  return parent->AddChild(name, text);
}
