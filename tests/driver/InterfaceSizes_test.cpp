// Sizes that the interface guarantees and that drivers are compiled with: the same for every word size.

#include <gtest/gtest.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/ZqColor.h>
#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_testing/FakeVariables.h>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

namespace {

using std::int32_t;
using std::int64_t;
using std::string;
using std::uint32_t;

// Checks that a member or function has exactly this type. Types as wide as a word, such as long and size_t,
// would differ between the two builds.
template <typename Expected, typename Member>
constexpr bool Has(Member /*member*/) {
  return std::is_same_v<Expected, Member>;
}

// --- ids ---

static_assert(Has<uint32_t DriverParam::*>(&DriverParam::idDevice));
static_assert(Has<uint32_t DriverParam::*>(&DriverParam::idVariable));
static_assert(std::is_constructible_v<DriverParam, string, string, uint32_t, uint32_t>);
static_assert(
    Has<int (zq::IVariableManager::*)(uint32_t, uint32_t, string&)>(&zq::IVariableManager::GetVariableValue));
static_assert(Has<uint32_t (ICmdMessage::*)() const>(&ICmdMessage::getOwnerId));
static_assert(Has<void (ICmdMessage::*)(uint32_t)>(&ICmdMessage::setOwnerId));
static_assert(Has<void (ICmdMessage::*)(const string&, const string&, const uint32_t&, const uint32_t&)>(
    &ICmdMessage::addVarParam));
static_assert(Has<int32_t (ICmdMessage::*)(const string&) const>(&ICmdMessage::getParamRequiredVarDeviceID));
static_assert(
    Has<int32_t (ICmdMessage::*)(const string&) const>(&ICmdMessage::getParamRequiredVarVariableID));
static_assert(Has<uint32_t (ICondMessage::*)() const>(&ICondMessage::getOwnerId));

// --- numbers of parameters ---

static_assert(Has<void (ICmdMessage::*)(const string&, const string&, int32_t)>(&ICmdMessage::addParamLong));
static_assert(
    Has<void (ICmdMessage::*)(const string&, const string&, uint32_t)>(&ICmdMessage::addParamULong));
static_assert(Has<void (ICmdMessage::*)(const string&, const string&, uint32_t)>(&ICmdMessage::addParamUInt));
static_assert(Has<int32_t (ICmdMessage::*)(const string&) const>(&ICmdMessage::getParamRequiredInt));
static_assert(Has<int32_t (ICmdMessage::*)(const string&, int32_t, int32_t) const>(
    &ICmdMessage::getParamRequiredIntRanged));
static_assert(Has<uint32_t (ICmdMessage::*)(const string&) const>(&ICmdMessage::getParamRequiredULong));
static_assert(
    Has<double (ICmdMessage::*)(const string&, int32_t) const>(&ICmdMessage::getParamRequiredDouble));
static_assert(Has<bool (IBindMessage::*)(const string&, int32_t&) const>(&IBindMessage::getParamInt));
static_assert(Has<bool (IBindMessage::*)(const string&, uint32_t&) const>(&IBindMessage::getParamUInt));
static_assert(Has<bool (IBindMessage::*)(const string&, int32_t&) const>(&IBindMessage::getParamLong));
static_assert(Has<bool (IBindMessage::*)(const string&, uint32_t&) const>(&IBindMessage::getParamULong));
static_assert(Has<int32_t (IBindMessage::*)() const>(&IBindMessage::getDataAsInteger));

// --- no copies through interfaces, which would copy nothing ---

template <typename Interface>
constexpr bool copiesNothing =
    !std::is_copy_constructible_v<Interface> && !std::is_copy_assignable_v<Interface> &&
    !std::is_move_constructible_v<Interface> && !std::is_move_assignable_v<Interface>;

static_assert(copiesNothing<ICmdMessage> && copiesNothing<IBindMessage> && copiesNothing<ICondMessage>);
static_assert(std::is_copy_constructible_v<CCmdMessage> && std::is_copy_constructible_v<CBindMessage>);
static_assert(std::is_copy_assignable_v<CBindMessage> && std::is_copy_assignable_v<CCondMessage>);

// --- results ---

static_assert(Has<int32_t (ICmdMessage::*)(const string&)>(&ICmdMessage::Initialize));
static_assert(Has<int32_t (ICmdMessage::*)(const string&)>(&ICmdMessage::Load));
static_assert(Has<int32_t (ICmdMessage::*)(zq::XmlNode::Ptr&)>(&ICmdMessage::fromXml));
static_assert(Has<int32_t (IBindMessage::*)(zq::XmlNode::Ptr&)>(&IBindMessage::fromXml));
static_assert(Has<int32_t (ICondMessage::*)(const string&)>(&ICondMessage::Initialize));

// --- colours ---

static_assert(sizeof(ZqColor::Chromaticity) == 16);
static_assert(sizeof(ZqColor::CCTTable) == std::size_t{1901} * 16);
static_assert(Has<void (ZqColor::*)(int32_t) noexcept>(&ZqColor::fromCCT));
static_assert(Has<int32_t (*)(int32_t) noexcept>(&ZqColor::normalizeCCT));
static_assert(Has<int32_t (ZqColor::*)() const noexcept>(&ZqColor::toCCTTable));

// --- enumerations ---

static_assert(std::is_same_v<std::underlying_type_t<ZqColor::Mode>, int32_t>);
static_assert(std::is_same_v<std::underlying_type_t<IBindMessage::Kind>, int32_t>);

// --- the platform ---

static_assert(Has<int32_t (*)(const string&)>(&zq::ToInt32));
static_assert(Has<uint32_t (*)(const string&)>(&zq::ToUInt32));
static_assert(Has<uint32_t (zq::XmlNode::*)() const>(&zq::XmlNode::GetChildCount));
static_assert(Has<uint32_t (zq::XmlNode::*)() const>(&zq::XmlNode::GetAttributeCount));
static_assert(Has<int32_t (zq::XmlNode::*)(const string&) const>(&zq::XmlNode::GetAttributeNumber));
static_assert(Has<int64_t (zq::XmlNode::*)(const string&) const>(&zq::XmlNode::GetChildDataNumber));
static_assert(Has<int64_t (zq::XmlNode::*)() const>(&zq::XmlNode::GetDataNumber));
static_assert(Has<uint32_t zq::XmlPosition::*>(&zq::XmlPosition::line));
static_assert(Has<uint32_t zq::XmlPosition::*>(&zq::XmlPosition::column));
static_assert(sizeof(zq::XmlPosition) == 8);

// --- effects for callers ---

constexpr uint32_t greatestId = std::numeric_limits<uint32_t>::max();

TEST(InterfaceSizes, KeepAllBitsOfIds) {
  tavrin_testing::FakeVariables variables;
  CCmdMessage message(variables, greatestId);
  EXPECT_EQ(message.getOwnerId(), greatestId);
  message.addVarParam("LEVEL", "number", greatestId, greatestId - 1);
  const DriverParam& param = message.GetParamMap().at("LEVEL");
  EXPECT_EQ(param.idDevice, greatestId);
  EXPECT_EQ(param.idVariable, greatestId - 1);
  EXPECT_EQ(CCondMessage::Create(greatestId)->getOwnerId(), greatestId);
}

TEST(InterfaceSizes, PutTheRowsOfTheColourTable16BytesApart) {
  const auto place = [](const ZqColor::Chromaticity& row) { return reinterpret_cast<std::uintptr_t>(&row); };
  EXPECT_EQ(place(ZqColor::CCTTable[1900]) - place(ZqColor::CCTTable[0]), 1900U * 16);
}

}  // namespace
