#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_platform/XmlNode.h>

namespace tavrin::diagnostics {

// Adds hints that need the tree of items: the path of names to the item that a diagnostic is about, where the
// first item of a duplicate id is, and the name that was expected.
void ExplainItems(Diagnostics& diagnostics, const zq::XmlNode::Ptr& root);

}  // namespace tavrin::diagnostics
