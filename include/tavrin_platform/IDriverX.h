/// @file
/// The driver class of the driver host. Only the host defines it.
#pragma once

/// A driver in the driver host. The library accepts pointers to it, but never dereferences them.
class IDriverX;
