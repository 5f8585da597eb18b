#include "tavrin_driver/internal/Secrets.h"

#include <json/value.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Collector.h"
#include "JsonText.h"
#include "XmlMessage.h"
#include "XmlTags.h"
#include "tavrin_driver/internal/Names.h"

namespace tavrin::diagnostics {
namespace {

using Ranges = std::vector<TextRange>;

// Returns a part of a document without the white space around it; the result may be empty.
TextRange Trimmed(std::string_view text, TextRange range) {
  const std::size_t begin = text.find_first_not_of(WHITESPACE, range.begin);
  if (begin >= range.end) return {};
  return {begin, text.find_last_not_of(WHITESPACE, range.end - 1) + 1};
}

// Hides a part that no parser reads, such as a comment, if it may contain a secret.
void HideUnread(std::string_view text, TextRange range, Ranges& found) {
  if (SecretNames().MayOccurIn(text.substr(range.begin, range.end - range.begin)))
    found.push_back(Trimmed(text, range));
}

// Returns whether a string may contain the name of a secret, which references and escapes can encode.
bool MayNameSecrets(std::string_view text) {
  return SecretNames().MayOccurIn(text) || text.find_first_of("&\\") != std::string_view::npos;
}

// Finds the secrets of a document: the content of elements with the name of a secret, and of those of which a
// child or an attribute contains such a name. That also finds secrets in elements that no loader reads.
class XmlSecrets {
 public:
  XmlSecrets(std::string_view text, Ranges& found) : source_(text), found_(found) {}

  void Find(const zq::XmlNode::Ptr& root) {
    std::vector<zq::XmlNode::Ptr> open = {root};
    while (!open.empty()) {
      const zq::XmlNode::Ptr element = open.back();
      open.pop_back();
      if (Inspect(*element)) continue;
      zq::XmlNodeIterator* const children = element->GetIterator();
      for (zq::XmlNode::Ptr child = children->First(); child; child = children->Next()) open.push_back(child);
    }
    for (const TextRange& range : OtherMarkup(source_.Text())) HideUnread(source_.Text(), range, found_);
  }

 private:
  // Returns whether the whole content is hidden.
  bool Inspect(zq::XmlNode& element) {
    const std::optional<Tag> tag = TagAt(source_.Text(), OffsetOf(element));
    if (!tag) return false;
    bool isSecret = IsSecret(element.GetName());
    for (const AttributeText& attribute : tag->attributes) {
      if (IsSecret(element.GetAttribute(std::string(attribute.name)))) isSecret = true;
    }
    for (const AttributeText& attribute : tag->attributes) {
      const bool isName = attribute.name == names::name || attribute.name == names::type;
      if (IsSecret(attribute.name) || (isSecret && !isName)) HideValue(attribute);
    }
    ElementText name;
    ForEachChild(element, [&](zq::XmlNode& child) {
      if (isSecret || !IsSecret(child.GetData())) return;
      isSecret = true;
      name = ElementAt(source_.Text(), OffsetOf(child));
    });
    if (isSecret) Hide(ElementAt(source_.Text(), tag->begin), name);
    return isSecret;
  }

  // Hides the text and the values of attributes in an element, except for the part that contains the name.
  void Hide(const ElementText& element, const ElementText& name) {
    std::size_t at = element.contentBegin;
    while (at < element.contentEnd) {
      const std::optional<Tag> tag = NextTag(source_.Text(), at);
      const std::size_t end = tag ? std::min(tag->begin, element.contentEnd) : element.contentEnd;
      const bool isName = name.begin <= at && at < name.end;
      if (!isName) HideText({at, end});
      if (!tag || tag->begin >= element.contentEnd) return;
      for (const AttributeText& attribute : tag->attributes) {
        if (attribute.name != names::type) HideValue(attribute);
      }
      at = tag->end;
    }
  }

  void HideText(TextRange range) {
    const TextRange text = Trimmed(source_.Text(), range);
    if (text.end > 0) found_.push_back(text);
  }

  void HideValue(const AttributeText& attribute) {
    found_.push_back({attribute.end - 1 - attribute.value.size(), attribute.end - 1});
  }

  std::size_t OffsetOf(const zq::XmlNode& element) const { return source_.OffsetOf(zq::PositionOf(element)); }

  SourceText source_;
  Ranges& found_;
};

// Finds the secrets of a JSON text: what an object contains in addition to the name of a secret, also in
// members that a later one of the same key replaces. An entry without a name inherits that of the entry
// before it.
class JsonSecrets {
 public:
  JsonSecrets(std::string_view text, Ranges& found) : text_(text), found_(found) {}

  void Find(const Json::Value& value, bool inherits = false) {
    if (value.isObject()) FindInObject(value, inherits);
    bool isSecret = false;
    if (!value.isArray()) return;
    for (const Json::Value& entry : value) {
      const Json::Value* const name =
          entry.isObject()
              ? entry.find(names::name.View().data(), names::name.View().data() + names::name.View().size())
              : nullptr;
      if (name != nullptr && name->isString()) isSecret = IsSecret(name->asString());
      Find(entry, isSecret);
    }
  }

 private:
  void FindInObject(const Json::Value& object, bool isSecret) {
    const std::vector<JsonMember> members = MembersOf(text_, object).list;
    for (const Json::Value& value : object) {
      if (value.isString() && IsSecret(value.asString())) isSecret = true;
    }
    for (const JsonMember& member : members) {
      if (IsReplaced(object, member) && MayNameSecrets(TextOf(member.value))) isSecret = true;
    }
    for (const JsonMember& member : members) {
      const std::string key = KeyOf(text_, member);
      if (!IsSecret(key) && (!isSecret || key == names::name || key == names::type)) continue;
      const Ranges values = ScalarsIn(text_, member.value);
      found_.insert(found_.end(), values.begin(), values.end());
    }
    for (const Json::Value& member : object) Find(member);
  }

  bool IsReplaced(const Json::Value& object, const JsonMember& member) const {
    return RangeOf(object[KeyOf(text_, member)]).begin != member.value.begin;
  }

  std::string_view TextOf(const TextRange& range) const {
    return text_.substr(range.begin, range.end - range.begin);
  }

  std::string_view text_;
  Ranges& found_;
};

// Joins what overlaps.
Ranges InOrder(Ranges ranges) {
  std::sort(ranges.begin(), ranges.end(),
            [](const TextRange& left, const TextRange& right) { return left.begin < right.begin; });
  Ranges joined;
  for (const TextRange& range : ranges) {
    if (joined.empty() || joined.back().end <= range.begin)
      joined.push_back(range);
    else
      joined.back().end = std::max(joined.back().end, range.end);
  }
  return joined;
}

}  // namespace

std::vector<TextRange> SecretsIn(Subject subject, const std::string& text) {
  const std::size_t first = text.find_first_not_of(WHITESPACE);
  const char begin = first == std::string::npos ? '\0' : text[first];
  const bool isUtf16 = begin == '\xff' || begin == '\xfe';
  if (isUtf16) return {{0, text.size()}};
  if (!MayNameSecrets(text)) return {};
  Ranges found;
  if (subject == Subject::command && (begin == '{' || begin == '[')) {
    try {
      const Json::Value root = ParseJson(Collector(subject, text));
      JsonSecrets(text, found).Find(root);
      for (const TextRange& comment : CommentsIn(text)) HideUnread(text, comment, found);
      HideUnread(text, TrailingText(text, RangeOf(root).end), found);
      return InOrder(std::move(found));
    } catch (const Refusal&) {
      return {{0, text.size()}};
    }
  }
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (!document) return {{0, text.size()}};
  XmlSecrets(text, found).Find(document->GetRoot());
  return InOrder(std::move(found));
}

const std::string& MaskedValue() {
  static const std::string masked = maskedValue;
  return masked;
}

}  // namespace tavrin::diagnostics
