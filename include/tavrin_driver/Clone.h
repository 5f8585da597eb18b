/// @file
/// Copies of messages through their interfaces.
///
/// A copy shares only non-owned objects with its original: the variable manager of a command and the attached
/// call of a binding message. It may outlive the original and be used on another thread.
///
/// @code
/// const boost::shared_ptr<CBindMessage> copy = zq::Clone(message);  // message: const IBindMessage&
/// @endcode
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/IBindMessage.h>
#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_driver/ICondMessage.h>
#include <tavrin_platform/XmlNode.h>

namespace zq {

/// Returns a copy of a command without its owner type, as ICmdMessage::clone() does.
[[nodiscard]] inline boost::shared_ptr<ICmdMessage> Clone(const ICmdMessage& message) {
  return message.clone();
}

/// Returns a copy of a binding message of any implementation. The copy answers a query if AnswersQuery()
/// returns true for the original.
[[nodiscard]] inline boost::shared_ptr<CBindMessage> Clone(const IBindMessage& message) {
  const boost::shared_ptr<CBindMessage> copy = CBindMessage::Create();
  copy->Initialize(IBindMessage::COMMAND, message.getCommand(), message.getData());
  copy->Initialize(IBindMessage::NOTIFY, message.getNotify(), message.getData());
  if (AnswersQuery(message)) {
    XmlNode::Ptr element = CreateXmlNode("bindmessage", "");
    element->AddChild("query", "");
    copy->fromXml(element);
  }
  copy->AddPath(message.getPath());
  copy->addParams(message.GetParamMap());
  copy->setDataPtr(message.getDataPtr());
  return copy;
}

/// Returns a copy of a conditional of any implementation.
[[nodiscard]] inline boost::shared_ptr<CCondMessage> Clone(const ICondMessage& message) {
  XmlNode::Ptr element = CreateXmlNode("deviceconditional", "");
  element->AddChild("name", message.getName());
  element->AddChild("conditional", message.getRawCondition());
  const boost::shared_ptr<CCondMessage> copy = CCondMessage::Create(message.getOwnerId());
  copy->fromXml(element);
  copy->addParams(message.getParamMap());
  return copy;
}

}  // namespace zq
