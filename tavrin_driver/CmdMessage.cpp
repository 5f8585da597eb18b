#include "tavrin_driver/CmdMessage.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <fmt/format.h>
#include <json/reader.h>

#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/TextConstants.h>
#include <tavrin_platform/internal/ThreadCache.h>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <locale>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "tavrin_driver/internal/InPlace.h"
#include "tavrin_driver/internal/JsonKey.h"
#include "tavrin_driver/internal/JsonParam.h"
#include "tavrin_driver/internal/Limits.h"
#include "tavrin_driver/internal/LogWithStack.h"
#include "tavrin_driver/internal/Names.h"
#include "tavrin_driver/internal/NumberText.h"
#include "tavrin_driver/internal/ParamMap.h"
#include "tavrin_driver/internal/PrintedForm.h"
#include "tavrin_driver/internal/Secrets.h"

using tavrin::InsertIfAbsent;
using zq::XmlNode;
namespace names = tavrin::names;

namespace {

constexpr char sourceFile[] = "tavrin_driver/CmdMessage";

// Returns the double nearest to a power of ten, infinity beyond 308. std::pow differs between word sizes in
// the last bit.
double PowerOfTen(std::int32_t exponent) {
  const std::string text = "1e" + std::to_string(exponent);
  double power = std::numeric_limits<double>::infinity();
  std::from_chars(text.data(), text.data() + text.size(), power);
  return power;
}

// The value of a static parameter ends at its first NUL byte.
const char* StaticValue(const DriverParam& param) { return param.value.c_str(); }

// Treats the first comma as the decimal point.
double ReadDouble(const std::string& value) {
  const std::size_t comma = value.find(',');
  if (comma == std::string::npos) return zq::ToDouble(value.c_str(), std::locale::classic());
  std::string text = value;
  text[comma] = '.';
  return zq::ToDouble(text.c_str(), std::locale::classic());
}

// Reads the value of a variable parameter. Returns whether it could be read.
bool ReadVariable(const DriverParam& param, zq::IVariableManager& varManager, std::string& value) {
  return varManager.GetVariableValue(param.idDevice, param.idVariable, value) >= 0;
}

const DriverParam& Required(const tavrin::ParamMap& params, const std::string& name) {
  const auto found = params.find(name);
  if (found == params.end()) throw ExceptionParameterMissing();
  return found->second;
}

// Converts the result of getParamRequired().
template <typename Convert>
auto ConvertRequired(const CCmdMessage& message, const std::string& name, Convert convert) {
  if (tavrin::MayReadInPlace(message)) {
    const DriverParam& param = Required(message.CCmdMessage::GetParamMap(), name);
    if (!param.bVar) return convert(param.value);
  }
  return convert(message.getParamRequired(name));
}

// Returns an id of a required variable parameter. For a static parameter it only logs a warning. Always
// inlined, so that the stack of a warning begins with the accessor.
[[gnu::always_inline]] inline std::uint32_t RequiredVarId(const tavrin::ParamMap& params,
                                                          const std::string& name,
                                                          std::uint32_t DriverParam::*id,
                                                          const char* messageForZero,
                                                          const tavrin::LogSource& source) {
  const DriverParam& param = Required(params, name);
  if (!param.bVar) tavrin::WarnWithStack("Not a variable parameter", source);
  if (param.*id == 0) tavrin::WarnWithStack(messageForZero, source);
  return param.*id;
}

// Constructing a reader costs more than reading a message.
using JsonReaderCache = zq::internal::ThreadCache<Json::CharReader>;

std::unique_ptr<Json::CharReader> NewJsonReader() {
  Json::CharReaderBuilder builder;
  builder["collectComments"] = false;
  return std::unique_ptr<Json::CharReader>(builder.newCharReader());
}

bool ParseJson(const std::string& text, Json::Value& root) {
  try {
    std::unique_ptr<Json::CharReader> reader = JsonReaderCache::Take();
    if (!reader) reader = NewJsonReader();
    const bool parsed = reader->parse(text.data(), text.data() + text.size(), &root, nullptr);
    JsonReaderCache::Keep(std::move(reader));
    return parsed;
  } catch (const Json::RuntimeError& error) {
    // JsonCpp allocates strings with malloc and reports failure only by this message.
    if (std::string_view(error.what()).find("Failed to allocate") != std::string_view::npos)
      throw std::bad_alloc();
    throw;
  }
}

// Reads the entries of "params" into one record and adds a copy of it after each entry. An entry therefore
// inherits the fields that it omits from the previous one.
class JsonParamsReader {
 public:
  JsonParamsReader(tavrin::ParamMap& params, std::uint64_t maxInherited)
      : params_(params), inheritable_(maxInherited) {}

  // Returns whether the inherited fields are within the limit. If not, only the parameters before are added.
  bool Read(Json::Value& entries) {
    Json::Value missing;  // the first element of a sparsely filled array; further ones change nothing
    const auto end = entries.end();
    auto entry = entries.begin();
    if (entry != end && entry.index() != 0) ReadEntry(missing);
    return std::all_of(entry, end, [this](Json::Value& present) { return ReadEntry(present); });
  }

 private:
  // Throws JsonCpp's error for a lookup in a value that is not an object. Takes a copy, because the lookup
  // may add a member.
  static void LookUpName(Json::Value entry) { entry[names::name]; }

  bool ReadEntry(Json::Value& entry) {
    // GCOVR_EXCL_BR_START: the function throws, so the branch after its return is never taken.
    if (!entry.isObject() && !entry.isNull()) LookUpName(entry);
    // GCOVR_EXCL_BR_STOP
    const tavrin::OwnFields own = tavrin::ReadJson(param_, entry);
    // A parameter with an inherited name already exists. Comparing long names repeatedly could be slow.
    if (!own.hasName && !isFirst_) return true;
    isFirst_ = false;

    const std::uint64_t inherited = param_.type.size() + param_.value.size() - own.bytes;
    if (inherited > inheritable_ && params_.count(param_.name) == 0) return false;
    const std::size_t count = params_.size();
    InsertIfAbsent(params_, param_);
    if (params_.size() != count) inheritable_ -= inherited;
    return true;
  }

  tavrin::ParamMap& params_;
  std::uint64_t inheritable_;
  DriverParam param_;
  bool isFirst_ = true;
};

}  // namespace

ExceptionParameterMissing::ExceptionParameterMissing()
    : ExceptionParameterMissing("Required parameters are missing") {}

ExceptionParameterMissing::ExceptionParameterMissing(const std::string& message)
    : std::runtime_error(message) {}

ExceptionParameterInvalid::ExceptionParameterInvalid()
    : std::runtime_error("Required parameters are invalid. E.g. Out of bounds") {}

CCmdMessage::CCmdMessage(zq::IVariableManager& vm, std::uint32_t ownerId)
    : varManager_(vm), ownerId_(ownerId) {}

CCmdMessage::CCmdMessage(const std::string& command, zq::IVariableManager& vm)
    : varManager_(vm), command_(command) {}

CCmdMessage::CCmdMessage(const std::string& command, const std::map<std::string, DriverParam>& params,
                         zq::IVariableManager& vm)
    : varManager_(vm), command_(command), params_(params) {}

CCmdMessage::CCmdMessage(const ICmdMessage& other, zq::IVariableManager& vm)
    : varManager_(vm),
      command_(other.getRawCommand()),
      params_(other.GetParamMap()),
      ownerId_(other.getOwnerId()) {}

CCmdMessage::CCmdMessage(const CCmdMessage& other) : CCmdMessage(other, other.varManager_) {}

boost::shared_ptr<ICmdMessage> CCmdMessage::Create(zq::IVariableManager& vm, std::uint32_t ownerId) {
  return boost::make_shared<CCmdMessage>(vm, ownerId);
}

boost::shared_ptr<ICmdMessage> CCmdMessage::Create(const std::string& command,
                                                   const std::map<std::string, DriverParam>& params,
                                                   zq::IVariableManager& vm) {
  return boost::make_shared<CCmdMessage>(command, params, vm);
}

boost::shared_ptr<ICmdMessage> CCmdMessage::CreateFromName(const std::string& command,
                                                           zq::IVariableManager& vm) {
  return boost::make_shared<CCmdMessage>(command, vm);
}

boost::shared_ptr<ICmdMessage> CCmdMessage::CreateFromString(const std::string& text,
                                                             zq::IVariableManager& vm) {
  auto message = boost::make_shared<CCmdMessage>(vm, 0U);
  static_cast<void>(message->Load(text));  // an unreadable text makes an empty message
  return message;
}

std::int32_t CCmdMessage::Initialize(const std::string& command) {
  command_ = command;  // first, because it may refer to a parameter of this message
  params_.clear();
  return 0;
}

void CCmdMessage::Clear() {
  command_.clear();
  params_.clear();
}

boost::shared_ptr<ICmdMessage> CCmdMessage::clone() const { return boost::make_shared<CCmdMessage>(*this); }

void CCmdMessage::addParam(const std::string& name, const std::string& type, const std::string& value) {
  tavrin::MakeIfAbsent(params_, name, type, value);
}

void CCmdMessage::addParam(const std::string& name, const std::string& type, std::int32_t value) {
  addParam(name, type, fmt::format_int(value).str());
}

void CCmdMessage::addParamBool(const std::string& name, const std::string& type, bool value) {
  addParam(name, type, zq::ToString(value));
}

void CCmdMessage::addParamUInt(const std::string& name, const std::string& type, std::uint32_t value) {
  addParam(name, type, fmt::format_int(value).str());
}

void CCmdMessage::addParamULong(const std::string& name, const std::string& type, std::uint32_t value) {
  addParam(name, type, fmt::format_int(value).str());
}

void CCmdMessage::addParamLong(const std::string& name, const std::string& type, std::int32_t value) {
  addParam(name, type, fmt::format_int(value).str());
}

void CCmdMessage::addParamDouble(const std::string& name, const std::string& type, double value) {
  addParam(name, type, zq::ToString(value, 6, std::locale::classic()));
}

void CCmdMessage::addParams(const std::map<std::string, DriverParam>& params) {
  params_.insert(params.begin(), params.end());
}

void CCmdMessage::overwriteParam(const std::string& name, const std::string& type, const std::string& value) {
  params_.insert_or_assign(name, DriverParam(name, type, value));
}

void CCmdMessage::overwriteParam(const std::string& name, const std::string& type, std::int32_t value) {
  overwriteParam(name, type, fmt::format_int(value).str());
}

std::int32_t CCmdMessage::fromXml(XmlNode::Ptr& root) {
  zq::XmlNodeIterator* children = root->GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next()) {
    const std::string name = child->GetName();
    if (name == names::command)
      command_ = child->GetData();
    else if (name == names::params)
      tavrin::ReadParams(params_, *child, tavrin::IsParam);
  }
  return 0;
}

std::int32_t CCmdMessage::Load(const std::string& text) {
  const std::size_t first = text.find_first_not_of(WHITESPACE);
  if (first == std::string::npos) return -1;
  switch (text[first]) {
    case '{':
    case '[':
      return loadJson(text);
    case '<':
      return loadXml(text);
    default:
      return -1;
  }
}

std::int32_t CCmdMessage::loadXml(const std::string& text) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (!document) return -1;
  XmlNode::Ptr root = document->GetRoot();
  return fromXml(root);
}

std::int32_t CCmdMessage::loadJson(const std::string& text) {
  Json::Value root;
  if (!ParseJson(text, root)) return -1;
  if (root.size() > tavrin::limits::jsonWrapper || root.begin() == root.end()) return -1;
  Json::Value& command = *root.begin();
  return command.isObject() ? readJsonObject(command, text.size()) : -1;
}

std::int32_t CCmdMessage::parseJsonObject(Json::Value& object) {
  const std::ptrdiff_t textLength = object.getOffsetLimit() - object.getOffsetStart();
  return readJsonObject(object, static_cast<std::uint64_t>(textLength));
}

std::int32_t CCmdMessage::readJsonObject(Json::Value& object, std::uint64_t textLength) {
  const auto end = object.end();
  for (auto member = object.begin(); member != end; ++member) {
    const std::string_view key = tavrin::KeyOf(member);
    if (member->isString()) {
      if (key == names::command) command_ = member->asString();
    } else if (member->isArray() && key == names::params) {
      if (!JsonParamsReader(params_, tavrin::limits::MaxInherited(textLength)).Read(*member)) return -1;
    } else {
      return -1;
    }
  }
  return 0;
}

std::string CCmdMessage::toXml(bool maskSecrets) const { return toAutoNode(maskSecrets)->OuterXml(); }

XmlNode::Ptr CCmdMessage::toAutoNode(bool maskSecrets) const {
  XmlNode::Ptr node = zq::CreateXmlNode();
  node->Initialize(names::devicecommand, EMPTY_STRING);
  node->AddChild(names::command, command_);
  InsertParamsIntoNode(node, maskSecrets);
  return node;
}

void CCmdMessage::InsertParamsIntoNode(XmlNode::Ptr& node, bool maskSecrets) const {
  std::optional<tavrin::SecretNames> secrets;
  if (maskSecrets) secrets.emplace();
  XmlNode::Ptr params = XmlHelper::AddChild(node, names::params, EMPTY_STRING);
  for (const auto& [name, param] : params_) {
    if (secrets && secrets->Contain(param.name)) {
      DriverParam masked = param;
      masked.value = tavrin::maskedValue;
      ::toXml(masked, params, names::param.View().data());
    } else {
      ::toXml(param, params, names::param.View().data());
    }
  }
}

std::ostream& CCmdMessage::print(std::ostream& os) const {
  using tavrin::Key;
  using tavrin::separator;
  os << '{' << separator << Key{"command_"} << zq::jsonQuoteValue(command_) << separator << Key{"params_"};
  return zq::print(os, params_) << '}';
}

const std::string& CCmdMessage::getRawCommand() const { return command_; }

std::string CCmdMessage::getParam(const std::string& name) const {
  const auto found = params_.find(name);
  if (found == params_.end()) return {};
  if (!found->second.bVar) return StaticValue(found->second);
  std::string value;
  if (!ReadVariable(found->second, varManager_, value)) value.clear();
  return value;
}

bool CCmdMessage::hasParam(const std::string& name) const { return params_.count(name) != 0; }

const std::map<std::string, DriverParam>& CCmdMessage::GetParamMap() const { return params_; }

void CCmdMessage::addVarParam(const std::string& name, const std::string& type, const std::uint32_t& idDevice,
                              const std::uint32_t& idVariable) {
  tavrin::MakeIfAbsent(params_, name, type, idDevice, idVariable);
}

std::string CCmdMessage::getParamRequired(const std::string& name) const {
  const DriverParam& param = Required(params_, name);
  if (!param.bVar) return StaticValue(param);
  std::string value;
  if (!ReadVariable(param, varManager_, value)) throw ExceptionParameterMissing();
  return value;
}

std::int32_t CCmdMessage::getParamRequiredInt(const std::string& name) const {
  return ConvertRequired(*this, name, tavrin::ReadInt32);
}

bool CCmdMessage::getParamRequiredBool(const std::string& name) const {
  return ConvertRequired(*this, name, [](const std::string& value) {
    return !value.empty() && (value[0] == 'T' || value[0] == 't' || value[0] == '1');
  });
}

// The functions that log are declared with `int`, because log records contain their signatures as the
// compiler prints them.
int CCmdMessage::getParamRequiredIntRanged(const std::string& name, int min, int max) const {
  if (min > max) {
    tavrin::WarnWithStack(
        fmt::format("Incorrect range - minimum ({}) is greater than maximum ({})", min, max),
        {sourceFile, __LINE__, static_cast<const char*>(__PRETTY_FUNCTION__)});
  }
  const int value = getParamRequiredInt(name);
  if (value < min || value > max) throw ExceptionParameterInvalid();
  return value;
}

int CCmdMessage::getParamRequiredVarDeviceID(const std::string& name) const {
  return static_cast<int>(
      RequiredVarId(params_, name, &DriverParam::idDevice, "Variable parameter has invalid device ID",
                    {sourceFile, __LINE__, static_cast<const char*>(__PRETTY_FUNCTION__)}));
}

int CCmdMessage::getParamRequiredVarVariableID(const std::string& name) const {
  return static_cast<int>(
      RequiredVarId(params_, name, &DriverParam::idVariable, "Variable parameter has invalid variable ID",
                    {sourceFile, __LINE__, static_cast<const char*>(__PRETTY_FUNCTION__)}));
}

// Reads a signed number: drivers depend on the results for "-1" and on the clamping at 2147483647.
std::uint32_t CCmdMessage::getParamRequiredULong(const std::string& name) const {
  return static_cast<std::uint32_t>(ConvertRequired(*this, name, tavrin::ReadInt32));
}

double CCmdMessage::getParamRequiredDouble(const std::string& name, std::int32_t precision) const {
  const double value = ConvertRequired(*this, name, ReadDouble);
  if (precision < 0) return value;
  const double factor = PowerOfTen(precision);
  return std::round(value * factor) / factor;
}

std::uint32_t CCmdMessage::getOwnerId() const { return ownerId_; }

void CCmdMessage::setOwnerId(std::uint32_t id) { ownerId_ = id; }

void CCmdMessage::setOwnerType(std::string type) { ownerType_ = std::move(type); }
