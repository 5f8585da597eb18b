/// @file
/// The record of a device that was discovered on the network.
#pragma once

#include <boost/optional/optional.hpp>

#include <tavrin_platform/Export.h>
#include <cstdint>
#include <string>

namespace zq {

/// The properties of a device that a discovery protocol found: its identity, its address, and the driver to
/// use.
///
/// @code
/// zq::discovery_info device(uuid, ip, type, make, model, sdkClass);
/// if (device.is_kimo() && device.model()) Offer(*device.model());
/// @endcode
///
/// BREL and KIMO are protocols of the controller. SSDP is the discovery protocol of UPnP, so a record of UPnP
/// is also one of SSDP. Each protocol reports different properties. A field is either absent or a non-empty
/// string: an empty argument leaves its field absent. Strings are stored verbatim and not validated.
///
/// A record owns its strings and changes only by assignment. No function throws, except std::bad_alloc if
/// memory runs out. The class is thread-compatible.
class TAVRIN_EXPORT discovery_info {
 public:
  /// Constructs a record of no protocol, with every field absent.
  discovery_info();

  /// Constructs a record of BREL.
  discovery_info(const std::string& uuid, const std::string& host, const std::string& ip,
                 const std::string& type, const std::string& driver, const std::string& manufacturer,
                 const std::string& model, const std::string& primary_proxy, const std::string& proxies);

  /// Constructs a record of UPnP.
  discovery_info(const std::string& uuid, const std::string& ip, const std::string& type,
                 const std::string& manufacturer, const std::string& model, const std::string& name,
                 const std::string& description, const std::string& location);

  /// Constructs a record of KIMO. Note that the make comes before the model.
  discovery_info(const std::string& uuid, const std::string& ip, const std::string& type,
                 const std::string& make, const std::string& model, const std::string& sdk_class);

  /// Copies a record. There is no move operation, because a moved-from record would contain empty strings.
  discovery_info(const discovery_info& other);

  /// Copies every field and the protocol. @return this record
  discovery_info& operator=(const discovery_info& other);

  virtual ~discovery_info();

  bool is_brel() const noexcept;  ///< Returns whether BREL found the device
  bool is_kimo() const noexcept;  ///< Returns whether KIMO found the device
  bool is_upnp() const noexcept;  ///< Returns whether UPnP found the device
  bool is_ssdp() const noexcept;  ///< Returns the same as is_upnp()

  boost::optional<std::string> uuid() const;           ///< Returns the unique id of the device
  boost::optional<std::string> host() const;           ///< Returns its host name
  boost::optional<std::string> ip() const;             ///< Returns its network address
  boost::optional<std::string> type() const;           ///< Returns the kind of device
  boost::optional<std::string> driver() const;         ///< Returns the driver to use for it
  boost::optional<std::string> manufacturer() const;   ///< Returns its manufacturer
  boost::optional<std::string> model() const;          ///< Returns its model
  boost::optional<std::string> primary_proxy() const;  ///< Returns the first of its proxies
  boost::optional<std::string> proxies() const;        ///< Returns its proxies, as one string
  boost::optional<std::string> make() const;           ///< Returns its make
  boost::optional<std::string> sdk_class() const;      ///< Returns its class in the SDK
  boost::optional<std::string> name() const;           ///< Returns its friendly name
  boost::optional<std::string> description() const;    ///< Returns its description
  boost::optional<std::string> location() const;       ///< Returns its location, verbatim from the protocol

  /// Returns whether both records have the same protocol and agree in every field: both absent, or equal byte
  /// by byte.
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
