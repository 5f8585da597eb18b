#include "ReferenceTree.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <type_traits>

#include "Naive.h"

namespace {

struct Builder {
  XML_Parser parser;
  std::size_t base;
  ReferenceTree tree;
  std::vector<std::size_t> open;

  static Builder& Of(void* self) { return *static_cast<Builder*>(self); }

  void Start(const char* name, const char** attributes) {
    ReferenceTree::Element element;
    element.name = name;
    element.begin = base + static_cast<std::size_t>(XML_GetCurrentByteIndex(parser));
    for (; *attributes != nullptr; attributes += 2)
      element.attributes.emplace_back(attributes[0], attributes[1]);
    const std::size_t index = tree.elements.size();
    if (!open.empty()) tree.elements[open.back()].children.push_back(index);
    tree.elements.push_back(std::move(element));
    open.push_back(index);
  }

  void End() {
    ReferenceTree::Element& element = tree.elements[open.back()];
    if (!element.children.empty() && naive::IsBlank(element.text)) element.text.clear();
    open.pop_back();
  }
};

// White space may precede the document and follow a byte order mark.
std::size_t DocumentBegin(const std::string& text) {
  const auto behindBlanks = [&](std::size_t at) {
    return std::min(text.find_first_not_of(" \t\r\n", at), text.size());
  };
  const std::string mark = "\xEF\xBB\xBF";
  const std::size_t begin = behindBlanks(0);
  if (text.compare(begin, mark.size(), mark) != 0) return begin;
  const std::size_t behindMark = begin + mark.size();
  return behindBlanks(behindMark) == behindMark ? begin : behindBlanks(behindMark);
}

struct Free {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

}  // namespace

std::optional<ReferenceTree> ReferenceTree::Of(const std::string& text) {
  const std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free> parser(XML_ParserCreate(nullptr));
  Builder builder{parser.get(), DocumentBegin(text), {}, {}};
  XML_SetUserData(parser.get(), &builder);
  XML_SetParamEntityParsing(parser.get(), XML_PARAM_ENTITY_PARSING_ALWAYS);
  XML_SetElementHandler(
      parser.get(),
      [](void* self, const char* name, const char** attributes) {
        Builder::Of(self).Start(name, attributes);
      },
      [](void* self, const char*) { Builder::Of(self).End(); });
  XML_SetCharacterDataHandler(parser.get(), [](void* self, const char* data, int length) {
    Builder& to = Builder::Of(self);
    to.tree.elements[to.open.back()].text.append(data, static_cast<std::size_t>(length));
  });
  XML_SetXmlDeclHandler(parser.get(), [](void* self, const char*, const char* encoding, int) {
    if (encoding != nullptr) Builder::Of(self).tree.namesEncoding = true;
  });
  XML_SetStartDoctypeDeclHandler(parser.get(), [](void* self, const char*, const char*, const char*, int) {
    Builder::Of(self).tree.hasDoctype = true;
  });

  const std::size_t length = text.size() - builder.base;
  if (XML_Parse(parser.get(), text.data() + builder.base, static_cast<int>(length), XML_TRUE) !=
      XML_STATUS_OK)
    return {};
  return std::move(builder.tree);
}
