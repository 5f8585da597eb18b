/// @file
/// The record of a device that was found on the network.
#pragma once

#include <tavrin_platform/Export.h>
#include <boost/optional/optional.hpp>
#include <cstdint>
#include <string>

namespace zq {

/// What a discovery protocol has learnt about a device: who it is, where it is, and what should drive it.
///
/// BREL and KIMO are the controller's own protocols; the layer of UPnP that discovers is SSDP, so a record of
/// the one is a record of the other. Each protocol knows other things, so every field is either absent or
/// holds a text, which is then not empty: an empty argument leaves its field absent. Texts are kept as given,
/// and nothing is checked.
///
///     zq::discovery_info device(uuid, ip, type, make, model, sdkClass);
///     if (device.is_kimo() && device.model()) offer(*device.model());
///
/// A record owns its texts and does not change but by assignment. Nothing here throws unless memory runs out.
class TAVRIN_EXPORT discovery_info {
 public:
  /// A record of no protocol, with every field absent.
  discovery_info();

  /// A record of BREL.
  discovery_info(const std::string& uuid, const std::string& host, const std::string& ip,
                 const std::string& type, const std::string& driver, const std::string& manufacturer,
                 const std::string& model, const std::string& primary_proxy, const std::string& proxies);

  /// A record of UPnP.
  discovery_info(const std::string& uuid, const std::string& ip, const std::string& type,
                 const std::string& manufacturer, const std::string& model, const std::string& name,
                 const std::string& description, const std::string& location);

  /// A record of KIMO. Mind that the make stands before the model.
  discovery_info(const std::string& uuid, const std::string& ip, const std::string& type,
                 const std::string& make, const std::string& model, const std::string& sdk_class);

  /// A copy. There is no move, for a record that was moved from would hold empty texts.
  discovery_info(const discovery_info& other);

  /// Takes over every field and the protocol. @return this record
  discovery_info& operator=(const discovery_info& other);

  virtual ~discovery_info();

  bool is_brel() const;  ///< @return whether BREL has found the device
  bool is_kimo() const;  ///< @return whether KIMO has found the device
  bool is_upnp() const;  ///< @return whether UPnP has found the device
  bool is_ssdp() const;  ///< The same as is_upnp().

  boost::optional<std::string> uuid() const;           ///< @return the unique id of the device
  boost::optional<std::string> host() const;           ///< @return its host name
  boost::optional<std::string> ip() const;             ///< @return its network address
  boost::optional<std::string> type() const;           ///< @return what kind of device it is
  boost::optional<std::string> driver() const;         ///< @return the driver to use for it
  boost::optional<std::string> manufacturer() const;   ///< @return its manufacturer
  boost::optional<std::string> model() const;          ///< @return its model
  boost::optional<std::string> primary_proxy() const;  ///< @return the first of its proxies
  boost::optional<std::string> proxies() const;        ///< @return its proxies, as one text
  boost::optional<std::string> make() const;           ///< @return its make
  boost::optional<std::string> sdk_class() const;      ///< @return its class in the SDK
  boost::optional<std::string> name() const;           ///< @return its friendly name
  boost::optional<std::string> description() const;    ///< @return its description
  boost::optional<std::string> location() const;       ///< @return its location, as the protocol gives it

  /// @return whether both records are of one protocol and agree in every field: both absent, or the same
  /// bytes.
  bool operator==(const discovery_info& other) const;

 private:
  enum class protocol_type : std::int32_t { none = 0, brel = 1, kimo = 2, upnp = 3 };

  boost::optional<std::string> uuid_;
  boost::optional<std::string> host_;
  boost::optional<std::string> ip_;
  boost::optional<std::string> type_;
  boost::optional<std::string> driver_;
  boost::optional<std::string> manufacturer_;
  boost::optional<std::string> model_;
  boost::optional<std::string> primary_proxy_;
  boost::optional<std::string> proxies_;
  boost::optional<std::string> make_;
  boost::optional<std::string> sdk_class_;
  boost::optional<std::string> name_;
  boost::optional<std::string> description_;
  boost::optional<std::string> location_;
  protocol_type protocol_ = protocol_type::none;
};

}  // namespace zq
