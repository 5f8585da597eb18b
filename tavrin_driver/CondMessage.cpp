#include "tavrin_driver/CondMessage.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <tavrin_platform/TextConstants.h>
#include <utility>

#include "tavrin_driver/internal/Comparison.h"
#include "tavrin_driver/internal/Names.h"
#include "tavrin_driver/internal/NumberText.h"
#include "tavrin_driver/internal/ParamMap.h"
#include "tavrin_driver/internal/PrintedForm.h"

using tavrin::ComparisonOf;
using zq::XmlNode;
namespace names = tavrin::names;

namespace {

// Returns the text to compare with. The variable of a variable parameter is not read.
const std::string& TextOf(const DriverParam& param) { return param.bVar ? EMPTY_STRING : param.value; }
std::int32_t NumberOf(const DriverParam& param) { return tavrin::ReadInt32(TextOf(param)); }

}  // namespace

CCondMessage::CCondMessage(std::uint32_t ownerId) : ownerId_(ownerId) {}

CCondMessage::CCondMessage(const std::string& name, const std::string& condition,
                           const std::map<std::string, DriverParam>& params)
    : name_(name), condition_(condition), params_(params) {}

boost::shared_ptr<CCondMessage> CCondMessage::Create(std::uint32_t ownerId) {
  return boost::make_shared<CCondMessage>(ownerId);
}

boost::shared_ptr<CCondMessage> CCondMessage::Create(const std::string& xml) {
  auto message = boost::make_shared<CCondMessage>();
  message->Initialize(xml);
  return message;
}

boost::shared_ptr<CCondMessage> CCondMessage::Create(const std::string& name, const std::string& condition,
                                                     const std::map<std::string, DriverParam>& params) {
  return boost::make_shared<CCondMessage>(name, condition, params);
}

std::int32_t CCondMessage::Initialize(const std::string& xml) {
  const tavrin::ParamMap previous = std::exchange(params_, {});  // @p xml may refer to a parameter
  static_cast<void>(fromXml(xml));  // text that is no document becomes the comparison
  return 0;
}

std::int32_t CCondMessage::fromXml(XmlNode::Ptr& node) {
  zq::XmlNodeIterator* children = node->GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next()) {
    const std::string element = child->GetName();
    if (element == names::conditional)
      condition_ = child->GetData();
    else if (element == names::name)
      name_ = child->GetData();
    else if (element == names::params)
      tavrin::ReadParams(params_, *child, [](const XmlNode&) { return true; });
  }
  return 0;
}

std::int32_t CCondMessage::fromXml(IDriverX* /*driver*/, const char* xml) {
  const std::string text = xml;  // an rvalue would select an overload that only the bundled platform has
  return fromDocument(zq::CreateXmlDocument(text));
}

std::int32_t CCondMessage::fromXml(const std::string& text) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (!document) condition_ = text;
  return fromDocument(document);
}

std::int32_t CCondMessage::fromDocument(const zq::XmlDocument::Ptr& document) {
  if (!document) return -1;
  XmlNode::Ptr root = document->GetRoot();
  return fromXml(root);
}

const DriverParam* CCondMessage::findParam(const char* name) const {
  if (name == nullptr) return params_.empty() ? nullptr : &params_.begin()->second;
  const auto found = params_.find(name);
  return found == params_.end() ? nullptr : &found->second;
}

bool CCondMessage::Test(const char* value, const char* paramName) const {
  const DriverParam* param = findParam(paramName);
  return param != nullptr && tavrin::HoldsUnordered(ComparisonOf(condition_), TextOf(*param) == value);
}

bool CCondMessage::Test(std::int32_t value, const char* paramName) const {
  const DriverParam* param = findParam(paramName);
  return param != nullptr && tavrin::Holds(ComparisonOf(condition_), value, NumberOf(*param));
}

bool CCondMessage::Test(bool value) const { return tavrin::HoldsUnordered(ComparisonOf(condition_), value); }

bool CCondMessage::Test(const LevelMeasure::LevelPoint& point, const char* paramName) const {
  const DriverParam* param = findParam(paramName);
  return param != nullptr && tavrin::Holds(ComparisonOf(condition_), point, NumberOf(*param));
}

bool CCondMessage::Test(std::int32_t left, std::int32_t right) const {
  return tavrin::Holds(ComparisonOf(condition_), left, right);
}

bool CCondMessage::Test(double left, double right) const {
  return tavrin::Holds(ComparisonOf(condition_), left, right);
}

std::string CCondMessage::getRawCondition() const { return condition_; }

const std::string& CCondMessage::getName() const { return name_; }

std::string CCondMessage::getParam(const std::string& name) const {
  const auto found = params_.find(name);
  if (found == params_.end()) return "0";
  return found->second.value;
}

bool CCondMessage::hasParam(const std::string& name) const { return params_.count(name) != 0; }

const std::map<std::string, DriverParam>& CCondMessage::getParamMap() const { return params_; }

void CCondMessage::addParam(const std::string& name, const std::string& type, const std::string& value) {
  tavrin::MakeIfAbsent(params_, name, type, value);
}

void CCondMessage::addParams(const std::map<std::string, DriverParam>& params) {
  params_.insert(params.begin(), params.end());
}

std::string CCondMessage::toXml() const {
  std::string xml =
      "<deviceconditional><name>" + name_ + "</name><conditional>" + condition_ + "</conditional><params>";
  for (const auto& [name, param] : params_) xml += param.toXml();
  return xml + "</params></deviceconditional>";
}

std::uint32_t CCondMessage::getOwnerId() const { return ownerId_; }

std::ostream& CCondMessage::print(std::ostream& os) const {
  using tavrin::Key;
  using tavrin::separator;
  os << '{'                                                               //
     << separator << Key{"name_"} << zq::jsonQuoteValue(name_)            //
     << separator << Key{"condition_"} << zq::jsonQuoteValue(condition_)  //
     << separator << Key{"params_"};
  return zq::print(os, params_) << '}';
}
