// Limits what the entities and declarations of a document may do, and detects references to them.
#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace zq::xml {

// Returns whether a part of the source refers to entities that the document declares.
bool RefersToOwnEntities(std::string_view source);

// Checks the declarations and references of one document. The functions return the reason to reject the
// document, otherwise null.
class EntityPolicy {
 public:
  explicit EntityPolicy(std::size_t documentSize);

  const char* Declare(const char* entity, bool isParameter, std::string_view value);
  const char* DeclareAttribute();

  // Counts an element or attribute that comes from an entity or a default, not from the text itself.
  const char* CountForeignNode();

  // Checks that the entities to which the source of an attribute value refers are declared. The parser skips
  // those that may be declared externally, and their text would be missing.
  const char* CheckReferences(std::string_view value) const;

  static const char* UndefinedEntity();

 private:
  const std::size_t maxForeignNodes_;
  std::size_t foreignNodes_ = 0;
  std::size_t referringEntities_ = 0;
  std::size_t attributeDeclarations_ = 0;
  std::set<std::string, std::less<>> entities_;
};

}  // namespace zq::xml
