#include "Parser.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <tavrin_platform/internal/ThreadCache.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "EntityPolicy.h"
#include "ExpatParser.h"
#include "Tree.h"

namespace zq::xml {
namespace {

// The last piece that the parser reads (see usualPiece).
constexpr std::size_t largeLastPiece = 1U << 22U;
constexpr std::size_t lastPieceShare = 4;  // of the text, if that is more

// A parser of a larger text than this is not cached. Its memory grows with the text, fifty times as fast for
// nested tags.
constexpr std::size_t keepParser = 1U << 16U;

// A piece of the text of an open element: before, between or after its child elements.
struct TextRun {
  Element* owner;
  Element* previous;     // the child before it, null at the front
  const char* verbatim;  // its position in the source, null if it is not verbatim in the source
  std::size_t begin;     // its position in Workspace::joined, of which it is the end
  std::size_t length;
  bool blank;
};

// The objects that parsing needs in addition to the tree. Each thread caches one workspace, because
// constructing it costs more than parsing a message.
struct Workspace {
  ExpatInstance expat;
  std::vector<TextRun> runs;  // of the open elements, innermost last
  std::string joined;
};

using WorkspaceCache = internal::ThreadCache<Workspace>;

// Builds the tree from the events of the parser.
class TreeBuilder {
 public:
  // Reads only `text`. Stores views into the text of the tree, which has the same length, without reading it.
  TreeBuilder(std::string_view text, Tree& tree, Workspace& workspace);

  // Parses the text in pieces. The last piece has at most `lastPiece` bytes, or usualPiece if that is more.
  bool Parse(std::size_t lastPiece, const XmlProgress& progress) {
    return parser_.Parse(lastPiece, progress);
  }
  XmlError Error() const { return parser_.Error(); }

 private:
  friend ExpatParser;

  ExpatParser& Parser() { return parser_; }
  void StartElement(std::string_view name, const char** attributes);
  void EndElement();
  void CharacterData(std::string_view data);
  void Encoding(std::string_view name);
  void Doctype();
  void AttributeDeclaration(std::string_view type);
  void EntityDeclaration(const char* name, bool isParameter, std::string_view value);
  void SkippedEntity();
  void Unread();
  void EndCdata();

  void AddAttributes(Element& element, const char** attributes, const char** end);
  void AddForeignAttributes(Element& element, const char** attributes, const char** defaults);
  std::string_view KeepOnce(const char* text);
  void PlaceText(Element& element);
  std::string_view Finish(const TextRun& run);
  void InspectGap(std::size_t end);
  void RefuseIf(const char* reason);

  std::size_t EndPosition() const { return parser_.Position() + parser_.Length(); }

  std::string_view Source(std::size_t begin, std::size_t end) const {
    return text_.substr(begin, end - begin);
  }
  // Returns the same text in the source if it occurs at `position`, otherwise null.
  const char* InSource(std::size_t position, std::string_view text) const {
    return text_.compare(position, text.size(), text) == 0 ? text_.data() + position : nullptr;
  }
  // Returns the view into the tree's text that corresponds to one into the source.
  std::string_view InTree(const char* source, std::size_t length) const {
    return {tree_.text.data() + (source - text_.data()), length};
  }
  const char* FindInSource(std::string_view data, const TextRun* before) const;
  std::string_view ViewOrKeep(std::size_t position, std::string_view text) {
    const char* source = InSource(position, text);
    return source != nullptr ? InTree(source, text.size()) : tree_.Keep(text);
  }

  std::string_view text_;
  Tree& tree_;
  std::vector<TextRun>& runs_;
  std::string& joined_;
  ExpatParser parser_;
  EntityPolicy policy_;
  Element* open_ = nullptr;
  bool utf8_ = true;  // otherwise UTF-16, whose bytes differ from those of the tree
  bool hasDoctype_ = false;
  bool hasTokens_ = false;    // whether the document declares tokenised attributes
  std::size_t gapBegin_ = 0;  // the end of the last tag; updated only with a document type
  std::unordered_map<const char*, std::string_view> keptOnce_;
};

TreeBuilder::TreeBuilder(std::string_view text, Tree& tree, Workspace& workspace)
    : text_(text),
      tree_(tree),
      runs_(workspace.runs),
      joined_(workspace.joined),
      parser_(text, workspace.expat),
      policy_(text.size()) {
  runs_.clear();
  joined_.clear();
  parser_.SetHandler(*this);
}

void TreeBuilder::Doctype() { hasDoctype_ = true; }

void TreeBuilder::AttributeDeclaration(std::string_view type) {
  hasTokens_ = hasTokens_ || type != "CDATA";
  RefuseIf(policy_.DeclareAttribute());
}

void TreeBuilder::EntityDeclaration(const char* name, bool isParameter, std::string_view value) {
  RefuseIf(policy_.Declare(name, isParameter, value));
}

void TreeBuilder::SkippedEntity() { RefuseIf(EntityPolicy::UndefinedEntity()); }

void TreeBuilder::EndCdata() { gapBegin_ = EndPosition(); }

void TreeBuilder::RefuseIf(const char* reason) {
  if (reason != nullptr) parser_.Refuse(reason);
}

void TreeBuilder::StartElement(std::string_view name, const char** attributes) {
  const std::size_t begin = parser_.Position();
  // The content of an entity is in its declaration; the source here contains only the reference.
  const char* source = text_[begin] == '<' ? InSource(begin + 1, name) : nullptr;
  Element& element = tree_.NewElement();
  element.SetName(source != nullptr ? InTree(source, name.size()) : tree_.Keep(name));
  element.begin = static_cast<std::uint32_t>(begin);
  element.hasPosition = true;
  element.verbatim = utf8_ && source != nullptr;

  InspectGap(begin);
  if (open_ != nullptr)
    open_->Append(element);
  else
    tree_.root = &element;
  open_ = &element;
  if (source != nullptr && attributes[0] == nullptr) return;

  const char** const defaults = parser_.Defaults(attributes);
  if (source != nullptr) {
    AddAttributes(element, attributes, defaults);
    AddForeignAttributes(element, defaults, defaults);
  } else {
    RefuseIf(policy_.CountForeignNode());
    AddForeignAttributes(element, attributes, defaults);
  }
}

// Reads the source of the tag together with the attributes, to find the values that are verbatim in the
// source.
void TreeBuilder::AddAttributes(Element& element, const char** attributes, const char** end) {
  const std::string_view text = text_;
  std::size_t at = element.begin + 1 + element.nameLength;
  Attribute** link = &element.attributes;
  for (; attributes != end; attributes += 2) {
    while (IsBlank(text[at])) ++at;
    const std::string_view name = ViewOrKeep(at, attributes[0]);
    std::size_t quote = at;
    while (text[quote] != '"' && text[quote] != '\'') ++quote;
    const std::size_t endQuote = text.find(text[quote], quote + 1);
    *link = &tree_.NewAttribute(name, ViewOrKeep(quote + 1, attributes[1]));
    link = &(*link)->next;
    if (hasDoctype_ && RefersToOwnEntities(Source(quote, endQuote))) {
      element.verbatim = false;
      RefuseIf(policy_.CheckReferences(Source(quote, endQuote)));
    }
    if (hasTokens_ && Source(quote + 1, endQuote) != attributes[1]) element.verbatim = false;
    at = endQuote + 1;
  }
}

// Adds attributes that are not in the source, or not in this encoding. Those from `defaults` on are equal in
// all elements that have them.
void TreeBuilder::AddForeignAttributes(Element& element, const char** attributes, const char** defaults) {
  Attribute** link = &element.attributes;
  while (*link != nullptr) link = &(*link)->next;
  for (; attributes[0] != nullptr && !parser_.HasRefused(); attributes += 2) {
    RefuseIf(policy_.CountForeignNode());
    const bool isDefault = attributes >= defaults;
    const std::string_view value = isDefault ? KeepOnce(attributes[1]) : tree_.Keep(attributes[1]);
    *link = &tree_.NewAttribute(KeepOnce(attributes[0]), value);
    link = &(*link)->next;
    element.verbatim = false;
  }
}

// Copies a string into the tree once. The parser also stores it once, for as long as it parses.
std::string_view TreeBuilder::KeepOnce(const char* text) {
  const auto [kept, isNew] = keptOnce_.try_emplace(text);
  if (isNew) kept->second = tree_.Keep(text);
  return kept->second;
}

void TreeBuilder::EndElement() {
  Element& element = *open_;
  const std::size_t tag = parser_.Position();
  InspectGap(tag);
  PlaceText(element);
  element.end = static_cast<std::uint32_t>(tag) + static_cast<std::uint32_t>(parser_.Length());
  open_ = element.parent;
  if (open_ != nullptr && !element.verbatim) open_->verbatim = false;
}

// Markup that refers to internal entities is not valid outside the document. The parser reports no event for
// an empty entity.
void TreeBuilder::InspectGap(std::size_t end) {
  if (!hasDoctype_) return;
  if (open_ != nullptr && gapBegin_ < end && RefersToOwnEntities(Source(gapBegin_, end)))
    open_->verbatim = false;
  gapBegin_ = EndPosition();
}

// Handles a comment, a processing instruction or the beginning of a CDATA section. Inspects only the text
// before it.
void TreeBuilder::Unread() {
  const bool isInEntity = text_[parser_.Position()] == '&';
  if (open_ != nullptr && isInEntity) open_->verbatim = false;
  InspectGap(parser_.Position());
}

void TreeBuilder::CharacterData(std::string_view data) {
  Element* previous = open_->hasChildren ? open_->lastChild : nullptr;
  const bool goesOn = !runs_.empty() && runs_.back().owner == open_ && runs_.back().previous == previous;
  if (!goesOn) {
    const char* source = FindInSource(data, nullptr);
    runs_.push_back({open_, previous, source, joined_.size(), data.size(), IsBlank(data)});
    if (source == nullptr) joined_ += data;
    return;
  }

  TextRun& run = runs_.back();
  const bool contiguous = run.verbatim != nullptr && FindInSource(data, &run) == run.verbatim + run.length;
  if (!contiguous) {
    if (run.verbatim != nullptr) joined_.append(run.verbatim, run.length);
    run.verbatim = nullptr;
    joined_ += data;
  }
  run.length += data.size();
  run.blank = run.blank && IsBlank(data);
}

// Returns the position of a reported text in the source, null if it is not verbatim in the source. Asks the
// parser for its position only if neither its copy nor the previous text determines it: newlines alone would
// double the number of calls.
// Inlined, because it is called for each piece of character data.
inline const char* TreeBuilder::FindInSource(std::string_view data, const TextRun* before) const {
  if (const char* source = parser_.Original(data.data())) return source;
  if (before != nullptr) {
    const auto behind = static_cast<std::size_t>(before->verbatim + before->length - text_.data());
    if (const char* source = InSource(behind, data)) return source;
  }
  return InSource(parser_.Position(), data);
}

// Sets the text of a complete element. Drops white space that only separates child elements.
void TreeBuilder::PlaceText(Element& element) {
  auto first = runs_.end();
  while (first != runs_.begin() && std::prev(first)->owner == &element) --first;
  if (first == runs_.end()) return;

  if (!element.hasChildren) {
    element.SetText(Finish(*first));
  } else if (!std::all_of(first, runs_.end(), [](const TextRun& run) { return run.blank; })) {
    std::for_each(first, runs_.end(),
                  [&](const TextRun& run) { element.Insert(tree_.NewText(Finish(run)), run.previous); });
  }
  joined_.erase(first->begin);
  runs_.erase(first, runs_.end());
}

std::string_view TreeBuilder::Finish(const TextRun& run) {
  if (run.verbatim != nullptr) return InTree(run.verbatim, run.length);
  return tree_.Keep({joined_.data() + run.begin, run.length});
}

void TreeBuilder::Encoding(std::string_view name) {
  const auto isNamed = [&](std::string_view other) {
    return std::equal(name.begin(), name.end(), other.begin(), other.end(),
                      [](char left, char right) { return (left & ~0x20) == (right & ~0x20); });
  };
  utf8_ = isNamed("UTF-8") || isNamed("US-ASCII");
}

bool IsTooLong(std::string_view text, XmlError* error) {
  if (std::uint64_t{text.size()} <= std::numeric_limits<std::uint32_t>::max()) return false;
  if (error != nullptr) *error = {{}, "a document of more than 4 GiB"};
  return true;
}

}  // namespace

boost::shared_ptr<Tree> Parse(std::string&& text, XmlError* error, const XmlProgress& progress) {
  if (IsTooLong(text, error)) return {};
  auto tree = boost::make_shared<Tree>(std::move(text));
  // The progress function may parse as well, with another workspace.
  std::unique_ptr<Workspace> workspace = WorkspaceCache::Take();
  if (!workspace) workspace = std::make_unique<Workspace>();
  TreeBuilder builder(tree->text, *tree, *workspace);
  const std::size_t lastPiece = std::max(largeLastPiece, tree->text.size() / lastPieceShare);
  const bool wellFormed = builder.Parse(progress ? usualPiece : std::min(lastPiece, largestPiece), progress);
  if (!wellFormed && error != nullptr) {
    *error = builder.Error();
    text = tree->ReleaseText();
  }
  if (tree->text.size() <= keepParser) WorkspaceCache::Keep(std::move(workspace));
  if (!wellFormed) tree.reset();
  return tree;
}

// A large text is parsed in one piece, and copied after the parser has freed its copy. The pages of both
// copies are never in use at the same time.
boost::shared_ptr<Tree> Parse(const std::string& text) {
  if (text.size() <= keepParser) return Parse(std::string(text), nullptr, {});
  if (IsTooLong(text, nullptr)) return {};
  auto tree = boost::make_shared<Tree>(text.size());
  {
    Workspace workspace;
    TreeBuilder builder(text, *tree, workspace);
    if (!builder.Parse(largestPiece, {})) return {};
  }
  tree->FillText(text);
  return tree;
}

bool IsName(std::string_view text) {
  std::string markup = "<";
  markup.append(text).append("/>");
  return Parse(std::move(markup), nullptr, {}) != nullptr;
}

}  // namespace zq::xml
