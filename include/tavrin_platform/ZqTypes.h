/// @file
/// Types of the controller core that are only carried.
#pragma once

namespace ZqTypes {

/// A call that the core has attached to a binding. Only its address is ever used here.
class BoundCallBase;

}  // namespace ZqTypes
