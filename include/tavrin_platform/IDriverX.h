/// @file
/// The driver interface of the driver host. The library passes pointers to it and does not use them.
#pragma once

/// The driver host's interface of a driver.
class IDriverX;
