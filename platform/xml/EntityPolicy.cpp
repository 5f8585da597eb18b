#include "EntityPolicy.h"

#include <algorithm>
#include <iterator>

#include "ExpatParser.h"  // XML_ErrorString

namespace zq::xml {
namespace {

// Entities and defaults may add as many elements and attributes as the text itself can contain, or
// kFreeForeignNodes, which need about a mebibyte.
constexpr std::size_t kFreeForeignNodes = 1U << 14U;
constexpr std::size_t kShortestElement = std::string_view("<a/>").size();

// The maximum number of entities of a document that refer to others. The parser recurses along a chain of
// them.
constexpr std::size_t kMaxReferringEntities = 256;

// The maximum number of attribute declarations. The parser compares each attribute with all others of its
// element that have a default.
constexpr std::size_t kMaxAttributeDeclarations = 10'000;

// The entities that need no declaration.
constexpr std::string_view kPredefined[] = {"amp", "lt", "gt", "quot", "apos"};

}  // namespace

bool RefersToOwnEntities(std::string_view source) {
  constexpr std::string_view kEverywhere[] = {"#", "amp;", "lt;", "gt;", "quot;", "apos;"};
  for (std::size_t at = source.find('&'); at != std::string_view::npos; at = source.find('&', at + 1)) {
    const std::string_view reference = source.substr(at + 1);
    if (std::none_of(std::begin(kEverywhere), std::end(kEverywhere),
                     [&](std::string_view name) { return reference.substr(0, name.size()) == name; }))
      return true;
  }
  return false;
}

EntityPolicy::EntityPolicy(std::size_t documentSize)
    : maxForeignNodes_(std::max(documentSize / kShortestElement, kFreeForeignNodes)) {}

const char* EntityPolicy::Declare(const char* entity, bool isParameter, std::string_view value) {
  if (!isParameter) entities_.insert(entity);
  const bool refers = value.find('%') != std::string_view::npos || RefersToOwnEntities(value);
  const bool isTooMany = refers && ++referringEntities_ > kMaxReferringEntities;
  return isTooMany ? "too many entities refer to others" : nullptr;
}

const char* EntityPolicy::DeclareAttribute() {
  const bool isTooMany = ++attributeDeclarations_ > kMaxAttributeDeclarations;
  return isTooMany ? "too many attributes are declared" : nullptr;
}

const char* EntityPolicy::CountForeignNode() {
  const bool isTooMany = ++foreignNodes_ > maxForeignNodes_;
  return isTooMany ? XML_ErrorString(XML_ERROR_AMPLIFICATION_LIMIT_BREACH) : nullptr;
}

const char* EntityPolicy::CheckReferences(std::string_view value) const {
  for (std::size_t at = value.find('&'); at != std::string_view::npos; at = value.find('&', at + 1)) {
    const std::string_view name = value.substr(at + 1, value.find(';', at) - at - 1);
    const bool isPredefined =
        std::find(std::begin(kPredefined), std::end(kPredefined), name) != std::end(kPredefined);
    if (name.front() != '#' && !isPredefined && entities_.count(name) == 0) return UndefinedEntity();
  }
  return nullptr;
}

const char* EntityPolicy::UndefinedEntity() { return XML_ErrorString(XML_ERROR_UNDEFINED_ENTITY); }

}  // namespace zq::xml
