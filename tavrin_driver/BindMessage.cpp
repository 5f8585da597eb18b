#include "tavrin_driver/BindMessage.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <fmt/format.h>

#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <iterator>
#include <locale>
#include <sstream>
#include <string_view>

#include "tavrin_driver/internal/InPlace.h"
#include "tavrin_driver/internal/Names.h"
#include "tavrin_driver/internal/NumberText.h"
#include "tavrin_driver/internal/ParamMap.h"
#include "tavrin_driver/internal/PrintedForm.h"

using zq::XmlNode;
namespace names = tavrin::names;

namespace {

// Names the parameter; its base does not.
class BindParameterMissing : public ExceptionParameterMissing {
 public:
  explicit BindParameterMissing(const std::string& name)
      : ExceptionParameterMissing("Error: Required Parameter Missing: " + name) {}
};

template <typename... Arguments>
boost::shared_ptr<CBindMessage> CreateInitialized(const Arguments&... arguments) {
  auto message = boost::make_shared<CBindMessage>();
  message->Initialize(arguments...);
  return message;
}

// The spellings are compared first, case-sensitively and in this order. Any other spelling is true only if it
// is "true", case-insensitively.
bool ReadBool(const std::string& text) {
  const struct {
    std::string_view text;
    bool value;
  } spellings[] = {
      {TRUE_STRING, true},
      {FALSE_STRING, false},
      {VAR_TRUE_STRING, true},
      {VAR_FALSE_STRING, false},
      {"1", true},
      {"0", false},
      {"Y", true},
      {"N", false},
  };
  const auto* const found = std::find_if(std::begin(spellings), std::end(spellings),
                                         [&](const auto& spelling) { return spelling.text == text; });
  if (found != std::end(spellings)) return found->value;
  constexpr std::string_view word = "true";
  if (text.size() != word.size()) return false;  // copying a long text would allocate
  return ToLower(text) == word;
}

double ReadDouble(const std::string& text) { return zq::ToDouble(text, std::locale::classic()); }

// Returns "" for an absent parameter.
const std::string& TextOf(const tavrin::ParamMap& params, const std::string& name) {
  const auto found = params.find(name);
  return found == params.end() ? EMPTY_STRING : found->second.value;
}

// Converts the result of getParam(). Returns false for an empty text.
template <typename Value, typename Convert>
bool Read(const CBindMessage& message, const std::string& name, Value& out, Convert convert) {
  const auto read = [&](const std::string& text) {
    if (text.empty()) return false;
    out = convert(text);
    return true;
  };
  if (tavrin::MayReadInPlace(message)) return read(TextOf(message.CBindMessage::GetParamMap(), name));
  return read(message.getParam(name));
}

}  // namespace

boost::shared_ptr<CBindMessage> CBindMessage::Create() { return boost::make_shared<CBindMessage>(); }

boost::shared_ptr<CBindMessage> CBindMessage::Create(std::int32_t kind, const std::string& name) {
  return CreateInitialized(kind, name);
}

boost::shared_ptr<CBindMessage> CBindMessage::Create(std::int32_t kind, const std::string& name,
                                                     const std::string& data) {
  return CreateInitialized(kind, name, data);
}

boost::shared_ptr<CBindMessage> CBindMessage::Create(std::int32_t kind, const std::string& name,
                                                     std::int32_t data) {
  return CreateInitialized(kind, name, data);
}

boost::shared_ptr<CBindMessage> CBindMessage::Create(const ICmdMessage& cmd) {
  return CreateInitialized(cmd);
}

std::int32_t CBindMessage::Initialize(std::int32_t kind, const std::string& name) {
  return CBindMessage::Initialize(kind, name, EMPTY_STRING);
}

std::int32_t CBindMessage::Initialize(std::int32_t kind, const std::string& name, const std::string& data) {
  m_bIsQueryNotify = false;
  _init(kind, name, data);
  return 0;
}

std::int32_t CBindMessage::Initialize(std::int32_t kind, const std::string& name, std::int32_t data) {
  return CBindMessage::Initialize(kind, name, fmt::format_int(data).str());
}

std::int32_t CBindMessage::Initialize(const ICmdMessage& cmd) {
  const std::int32_t result = Initialize(COMMAND, cmd.getRawCommand());
  m_mapParams = cmd.GetParamMap();
  return result;
}

// Copies the data first, because it may refer to a name of this message.
void CBindMessage::_init(std::int32_t kind, const std::string& name, const std::string& data) {
  if (kind != COMMAND && kind != NOTIFY) return;
  setData(data);
  (kind == COMMAND ? m_strCommand : m_strNotify) = name;
}

void CBindMessage::setData(const std::string& data) {
  m_strData = data;
  m_nDataInt = tavrin::ReadInt32(m_strData);
  m_bDataBool = m_nDataInt != 0;
}

void CBindMessage::AddPath(const std::string& path) { m_strPath += path; }

std::int32_t CBindMessage::fromXml(XmlNode::Ptr& node) {
  m_bIsQueryNotify = false;
  zq::XmlNodeIterator* children = node->GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next()) {
    const std::string name = child->GetName();
    if (name == names::command)
      m_strCommand = child->GetData();
    else if (name == names::notify)
      m_strNotify = child->GetData();
    else if (name == names::query)
      m_bIsQueryNotify = true;
    else if (name == names::data)
      setData(child->InnerXml());
    else if (name == names::path)
      m_strPath = child->InnerXml();
    else if (name == names::params)
      tavrin::ReadParams(m_mapParams, *child, tavrin::IsParam);
  }
  return 0;
}

std::string CBindMessage::toXml() const {
  std::string xml = "<bindmessage>\n";
  const auto addLine = [&xml](const std::string& element, const std::string& content) {
    xml += " <" + element + ">" + content + "</" + element + ">\n";
  };
  if (isCommand()) addLine(names::command, m_strCommand);
  if (isNotify()) {
    addLine(names::notify, m_strNotify);
    if (m_bIsQueryNotify) addLine(names::query, EMPTY_STRING);
  }
  if (hasData()) addLine(names::data, m_strData);
  if (hasParams()) {
    xml += "<params>";
    for (const auto& [name, param] : m_mapParams) xml += param.toXml();
    xml += "</params>";  // without a newline
  }
  if (hasPath()) addLine(names::path, m_strPath);
  return xml + "</bindmessage>\n";
}

std::string CBindMessage::toJson() const {
  std::ostringstream os;
  os.exceptions(std::ios::badbit);  // throws if memory runs out, instead of truncating
  print(os);
  return os.str();
}

std::string CBindMessage::getPath() const { return m_strPath; }

std::string CBindMessage::getData() const { return m_strData; }

std::int32_t CBindMessage::getDataAsInteger() const { return m_nDataInt; }

const std::string& CBindMessage::getCommand() const { return m_strCommand; }

const std::string& CBindMessage::getNotify() const { return m_strNotify; }

void CBindMessage::addParam(const std::string& name, const std::string& type, const std::string& value) {
  tavrin::MakeIfAbsent(m_mapParams, name, type, value);
}

void CBindMessage::addParam(const std::string& name, const std::string& type, std::int32_t value) {
  addParam(name, type, fmt::format_int(value).str());
}

void CBindMessage::addParamDouble(const std::string& name, const std::string& type, double value) {
  addParam(name, type, zq::ToString(value, 6, std::locale::classic()));
}

void CBindMessage::addParams(const std::map<std::string, DriverParam>& params) {
  m_mapParams.insert(params.begin(), params.end());
}

bool CBindMessage::hasParam(const std::string& name) const { return m_mapParams.count(name) != 0; }

std::string CBindMessage::getParam(const std::string& name) const { return TextOf(m_mapParams, name); }

std::string CBindMessage::getParamRequired(const std::string& name) const {
  const auto found = m_mapParams.find(name);
  if (found == m_mapParams.end()) throw BindParameterMissing(name);
  return found->second.value;
}

bool CBindMessage::getParamBool(const std::string& name, bool& out) const {
  return Read(*this, name, out, ReadBool);
}

bool CBindMessage::getParamInt(const std::string& name, std::int32_t& out) const {
  return Read(*this, name, out, zq::ToInt32);
}

bool CBindMessage::getParamUInt(const std::string& name, std::uint32_t& out) const {
  return Read(*this, name, out, zq::ToUInt32);
}

bool CBindMessage::getParamLong(const std::string& name, std::int32_t& out) const {
  return Read(*this, name, out, zq::ToInt32);
}

bool CBindMessage::getParamULong(const std::string& name, std::uint32_t& out) const {
  return Read(*this, name, out, zq::ToUInt32);
}

bool CBindMessage::getParamDouble(const std::string& name, double& out) const {
  return Read(*this, name, out, ReadDouble);
}

bool CBindMessage::hasData() const { return !m_strData.empty(); }

const std::map<std::string, DriverParam>& CBindMessage::GetParamMap() const { return m_mapParams; }

ZqTypes::BoundCallBase* CBindMessage::getDataPtr() const { return m_pvDataPointer; }

void CBindMessage::setDataPtr(ZqTypes::BoundCallBase* p) { m_pvDataPointer = p; }

bool CBindMessage::isCommand() const noexcept { return !m_strCommand.empty(); }

bool CBindMessage::isNotify() const noexcept { return !m_strNotify.empty(); }

bool CBindMessage::hasPath() const noexcept { return !m_strPath.empty(); }

bool CBindMessage::hasParams() const noexcept { return !m_mapParams.empty(); }

std::ostream& CBindMessage::print(std::ostream& os) const {
  using tavrin::Key;
  using tavrin::separator;
  os << '{'                                                                         //
     << separator << Key{"Command"} << zq::jsonQuoteValue(m_strCommand)             //
     << separator << Key{"Notify"} << zq::jsonQuoteValue(m_strNotify)               //
     << separator << Key{"Data"} << zq::jsonQuoteValue(m_strData)                   //
     << separator << Key{"Path"} << zq::jsonQuoteValue(m_strPath)                   //
     << separator << Key{"DataInt"} << fmt::format_int(m_nDataInt).c_str()          //
     << separator << Key{"DataBool"} << tavrin::TrueOrFalse(m_bDataBool)            //
     << separator << Key{"IsQueryNotify"} << tavrin::TrueOrFalse(m_bIsQueryNotify)  //
     << separator << Key{"m_mapParams"};
  zq::print(os, m_mapParams) << separator << Key{"m_pvDataPointer"};
  return os << static_cast<const void*>(m_pvDataPointer) << '}';
}
