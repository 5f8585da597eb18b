#include "tavrin_driver/Version.h"

namespace zq {

std::uint32_t LibraryVersion() noexcept { return TAVRIN_DRIVER_VERSION; }

}  // namespace zq
