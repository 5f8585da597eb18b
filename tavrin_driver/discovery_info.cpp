#include "tavrin_driver/discovery_info.h"

namespace zq {

namespace {

boost::optional<std::string> UnlessEmpty(const std::string& text) {
  return boost::make_optional(!text.empty(), text);
}

}  // namespace

discovery_info::discovery_info() = default;

discovery_info::discovery_info(const std::string& uuid, const std::string& host, const std::string& ip,
                               const std::string& type, const std::string& driver,
                               const std::string& manufacturer, const std::string& model,
                               const std::string& primary_proxy, const std::string& proxies)
    : uuid_(UnlessEmpty(uuid)),
      host_(UnlessEmpty(host)),
      ip_(UnlessEmpty(ip)),
      type_(UnlessEmpty(type)),
      driver_(UnlessEmpty(driver)),
      manufacturer_(UnlessEmpty(manufacturer)),
      model_(UnlessEmpty(model)),
      primary_proxy_(UnlessEmpty(primary_proxy)),
      proxies_(UnlessEmpty(proxies)),
      protocol_(protocol_type::brel) {}

discovery_info::discovery_info(const std::string& uuid, const std::string& ip, const std::string& type,
                               const std::string& manufacturer, const std::string& model,
                               const std::string& name, const std::string& description,
                               const std::string& location)
    : uuid_(UnlessEmpty(uuid)),
      ip_(UnlessEmpty(ip)),
      type_(UnlessEmpty(type)),
      manufacturer_(UnlessEmpty(manufacturer)),
      model_(UnlessEmpty(model)),
      name_(UnlessEmpty(name)),
      description_(UnlessEmpty(description)),
      location_(UnlessEmpty(location)),
      protocol_(protocol_type::upnp) {}

discovery_info::discovery_info(const std::string& uuid, const std::string& ip, const std::string& type,
                               const std::string& make, const std::string& model,
                               const std::string& sdk_class)
    : uuid_(UnlessEmpty(uuid)),
      ip_(UnlessEmpty(ip)),
      type_(UnlessEmpty(type)),
      model_(UnlessEmpty(model)),
      make_(UnlessEmpty(make)),
      sdk_class_(UnlessEmpty(sdk_class)),
      protocol_(protocol_type::kimo) {}

discovery_info::discovery_info(const discovery_info& other) = default;
discovery_info& discovery_info::operator=(const discovery_info& other) = default;
discovery_info::~discovery_info() = default;

bool discovery_info::is_brel() const noexcept { return protocol_ == protocol_type::brel; }
bool discovery_info::is_kimo() const noexcept { return protocol_ == protocol_type::kimo; }
bool discovery_info::is_upnp() const noexcept { return protocol_ == protocol_type::upnp; }
bool discovery_info::is_ssdp() const noexcept { return is_upnp(); }

boost::optional<std::string> discovery_info::uuid() const { return uuid_; }
boost::optional<std::string> discovery_info::host() const { return host_; }
boost::optional<std::string> discovery_info::ip() const { return ip_; }
boost::optional<std::string> discovery_info::type() const { return type_; }
boost::optional<std::string> discovery_info::driver() const { return driver_; }
boost::optional<std::string> discovery_info::manufacturer() const { return manufacturer_; }
boost::optional<std::string> discovery_info::model() const { return model_; }
boost::optional<std::string> discovery_info::primary_proxy() const { return primary_proxy_; }
boost::optional<std::string> discovery_info::proxies() const { return proxies_; }
boost::optional<std::string> discovery_info::make() const { return make_; }
boost::optional<std::string> discovery_info::sdk_class() const { return sdk_class_; }
boost::optional<std::string> discovery_info::name() const { return name_; }
boost::optional<std::string> discovery_info::description() const { return description_; }
boost::optional<std::string> discovery_info::location() const { return location_; }

bool discovery_info::operator==(const discovery_info& other) const {
  return uuid_ == other.uuid_ && host_ == other.host_ && ip_ == other.ip_ && type_ == other.type_ &&
         driver_ == other.driver_ && manufacturer_ == other.manufacturer_ && model_ == other.model_ &&
         primary_proxy_ == other.primary_proxy_ && proxies_ == other.proxies_ && make_ == other.make_ &&
         sdk_class_ == other.sdk_class_ && name_ == other.name_ && description_ == other.description_ &&
         location_ == other.location_ && protocol_ == other.protocol_;
}

}  // namespace zq
