#include "ProjectItems.h"

#include <fmt/format.h>

#include <tavrin_diagnostics/PrintableText.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tavrin_driver/internal/Limits.h"
#include "tavrin_driver/internal/Names.h"

using zq::XmlNode;

namespace tavrin::diagnostics {
namespace {

void AddHint(Diagnostic& diagnostic, const std::string& hint) {
  if (hint.empty()) return;
  if (!diagnostic.hint.empty()) diagnostic.hint += "; ";
  diagnostic.hint += hint;
}

// Walks the items in the order of the document, without recursion. The elements' own iterators remember how
// far each open item has come.
class ItemWalk {
 public:
  explicit ItemWalk(Diagnostics& diagnostics) {
    for (Diagnostic& diagnostic : diagnostics) {
      if (diagnostic.begin.line == 0) continue;
      atPosition_[KeyOf(diagnostic.begin)].push_back(&diagnostic);
      ++left_;
    }
  }

  void Walk(const XmlNode::Ptr& root) {
    const XmlNode::Ptr section = root->GetChild(names::systemitems);
    if (!section) return;
    open_.push_back(section);
    XmlNode::Ptr item = section->GetIterator()->First();
    while (left_ > 0) {
      if (item) {
        const XmlNode::Ptr subitems = Enter(*item);
        if (subitems) {
          open_.push_back(subitems);
          item = subitems->GetIterator()->First();
          continue;
        }
        path_.pop_back();
      } else {
        open_.pop_back();
        if (open_.empty()) return;
        path_.pop_back();
      }
      item = open_.back()->GetIterator()->Next();
    }
  }

 private:
  static std::uint64_t KeyOf(const zq::XmlPosition& position) {
    return std::uint64_t{position.line} << 32U | position.column;
  }

  // Explains what is about the item and its elements. Returns its subitems, null without any.
  XmlNode::Ptr Enter(XmlNode& item) {
    path_.push_back(item.GetData(names::name));
    Explain(item, 0);
    XmlNode::Ptr subitems;
    bool isFirst = true;
    zq::XmlNodeIterator* const children = item.GetIterator();
    for (XmlNode::Ptr child = children->First(); child; child = children->Next()) {
      Explain(*child, isFirst ? FirstLineOf(*child) : 0);
      isFirst = false;
      if (!subitems && child->IsName(names::subitems)) subitems = child;
    }
    return subitems;
  }

  // The line of the first item with the id that an element contains, 0 where it is the first.
  std::uint32_t FirstLineOf(const XmlNode& id) {
    try {
      const std::uint32_t line = zq::PositionOf(id).line;
      const auto [first, isNew] =
          firstLines_.try_emplace(static_cast<std::uint32_t>(id.GetDataNumber()), line);
      return isNew ? 0 : first->second;
    } catch (const zq::ZqError&) {
      return 0;
    }
  }

  void Explain(const XmlNode& element, std::uint32_t firstLine) {
    const auto found = atPosition_.find(KeyOf(zq::PositionOf(element)));
    if (found == atPosition_.end()) return;
    for (Diagnostic* const diagnostic : found->second) {
      --left_;
      if (diagnostic->rule == "project/duplicate-id")
        AddHint(*diagnostic, fmt::format("the first one is in line {}", firstLine));
      if (diagnostic->rule == "project/unreadable-number") AddHint(*diagnostic, RangeOf(element));
      AddHint(*diagnostic, Path());
    }
    atPosition_.erase(found);
  }

  static std::string RangeOf(const XmlNode& element) {
    if (element.IsName(names::id)) return fmt::format("ids are from {} to {}", limits::minId, limits::maxId);
    if (element.IsName(names::type))
      return fmt::format("types are from {} to {}", limits::minType, limits::maxType);
    return {};
  }

  // The names from the outermost to the innermost item; of a long path the end.
  std::string Path() const {
    constexpr std::size_t longest = 8;
    const std::size_t first = path_.size() > longest ? path_.size() - longest : 0;
    std::string text = first > 0 ? "in ... / " : "in ";
    for (std::size_t i = first; i < path_.size(); ++i) text += (i > first ? " / " : "") + Quoted(path_[i]);
    return text;
  }

  std::unordered_map<std::uint64_t, std::vector<Diagnostic*>> atPosition_;
  std::size_t left_ = 0;
  std::vector<XmlNode::Ptr> open_;  // the elements whose items are being walked
  std::vector<std::string> path_;
  std::unordered_map<std::uint32_t, std::uint32_t> firstLines_;  // of each id
};

// Adds a hint about an unexpected name.
void ExplainName(Diagnostic& diagnostic) {
  if (diagnostic.rule != "project/wrong-name") return;
  static const std::vector<std::string> leading = {names::id, names::name, names::type};
  const std::string& text = diagnostic.text;
  const std::size_t begin = std::string("expected ").size();
  const std::string expected = text.substr(begin, text.find(',') - begin);
  if (std::find(leading.begin(), leading.end(), expected) != leading.end())
    return AddHint(diagnostic, "an item begins with id, name and type, in this order");
  const std::string found = text.substr(text.rfind(' ') + 1);
  if (!NearestName(found, {expected}).empty())
    AddHint(diagnostic, fmt::format("did you mean \"{}\"?", expected));
}

}  // namespace

void ExplainItems(Diagnostics& diagnostics, const XmlNode::Ptr& root) {
  for (Diagnostic& diagnostic : diagnostics) ExplainName(diagnostic);
  ItemWalk(diagnostics).Walk(root);
}

}  // namespace tavrin::diagnostics
