/// @file
/// Types of the controller core that messages refer to.
#pragma once

namespace ZqTypes {

/// A call that the core has attached to a binding. The library stores its address and never dereferences it.
class BoundCallBase;

}  // namespace ZqTypes
