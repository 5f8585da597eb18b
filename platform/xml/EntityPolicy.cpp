#include "EntityPolicy.h"

#include <algorithm>
#include <iterator>

#include "ExpatParser.h"  // XML_ErrorString

namespace zq::xml {
namespace {

// Entities and defaults may add as many elements and attributes as the text itself can contain, or
// freeForeignNodes, which need about a mebibyte.
constexpr std::size_t freeForeignNodes = 1U << 14U;
constexpr std::size_t shortestElement = std::string_view("<a/>").size();

// The maximum number of entities of a document that refer to others. The parser recurses along a chain of
// them.
constexpr std::size_t maxReferringEntities = 256;

// The maximum number of attribute declarations. The parser compares each attribute with all others of its
// element that have a default.
constexpr std::size_t maxAttributeDeclarations = 10'000;

// The entities that need no declaration.
constexpr std::string_view predefined[] = {"amp", "lt", "gt", "quot", "apos"};

}  // namespace

bool RefersToOwnEntities(std::string_view source) {
  constexpr std::string_view everywhere[] = {"#", "amp;", "lt;", "gt;", "quot;", "apos;"};
  for (std::size_t at = source.find('&'); at != std::string_view::npos; at = source.find('&', at + 1)) {
    const std::string_view reference = source.substr(at + 1);
    if (std::none_of(std::begin(everywhere), std::end(everywhere),
                     [&](std::string_view name) { return reference.substr(0, name.size()) == name; }))
      return true;
  }
  return false;
}

EntityPolicy::EntityPolicy(std::size_t documentSize)
    : maxForeignNodes_(std::max(documentSize / shortestElement, freeForeignNodes)) {}

const char* EntityPolicy::Declare(const char* entity, bool isParameter, std::string_view value) {
  if (!isParameter) entities_.insert(entity);
  const bool refers = value.find('%') != std::string_view::npos || RefersToOwnEntities(value);
  const bool isTooMany = refers && ++referringEntities_ > maxReferringEntities;
  return isTooMany ? "too many entities refer to others" : nullptr;
}

const char* EntityPolicy::DeclareAttribute() {
  const bool isTooMany = ++attributeDeclarations_ > maxAttributeDeclarations;
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
        std::find(std::begin(predefined), std::end(predefined), name) != std::end(predefined);
    if (name.front() != '#' && !isPredefined && entities_.count(name) == 0) return UndefinedEntity();
  }
  return nullptr;
}

const char* EntityPolicy::UndefinedEntity() { return XML_ErrorString(XML_ERROR_UNDEFINED_ENTITY); }

}  // namespace zq::xml
