#include "Parser.h"

#include <tavrin_platform/internal/ThreadCache.h>

// Debian's Expat is built with this macro. Without it the header does not declare the protection against
// entity bombs.
#define XML_DTD
#include <expat.h>

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zq::xml {
namespace {

// The parser copies each piece of the text. Small pieces save memory and stay in the cache. But the parser
// counts the lines of every piece except the last, which takes a tenth of its time. The last piece may
// therefore be larger.
constexpr std::size_t kPiece = 1U << 16U;
constexpr std::size_t kLargeLastPiece = 1U << 22U;
constexpr std::size_t kLastPieceShare = 4;  // of the text, if that is more

// The size of a piece and the rest of the previous one, rounded up to a power of two, must fit an int.
constexpr std::size_t kLargestPiece = 1U << 29U;

// A parser of a larger text than this is not cached. Its memory grows with the text, fifty times as fast for
// nested tags.
constexpr std::size_t kKeepParser = 1U << 16U;

// Entities may expand a text to this many times its length, or to this many bytes, whichever is more.
// Entities and defaults may add as many elements and attributes as the text itself can contain, or
// kFreeForeignNodes, which need about a mebibyte.
constexpr float kMaxAmplification = 10;
constexpr std::size_t kFreeAmplification = 1U << 20U;
constexpr std::size_t kFreeForeignNodes = 1U << 14U;
constexpr std::size_t kShortestElement = std::string_view("<a/>").size();

// The maximum number of entities of a document that refer to others. The parser recurses along a chain of
// them.
constexpr std::size_t kMaxReferringEntities = 256;

// The maximum number of attribute declarations. The parser compares each attribute with all others of its
// element that have a default.
constexpr std::size_t kMaxAttributeDeclarations = 10'000;

// A piece of the text of an open element: before, between or after its child elements.
struct TextRun {
  Element* owner;
  Element* previous;     // the child before it, null at the front
  const char* verbatim;  // its position in the source, null if it is not verbatim in the source
  std::size_t begin;     // its position in Workspace::joined, of which it is the end
  std::size_t length;
  bool blank;
};

// The parser copies its input, which may be large.
constexpr XML_Memory_Handling_Suite kParserMemory = {[](std::size_t size) {
                                                       void* const memory = std::malloc(size);
                                                       PreferLargePages(memory, size);
                                                       return memory;
                                                     },
                                                     std::realloc, std::free};

struct ParserDeleter {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

// The objects that parsing needs in addition to the tree. Each thread caches one workspace, because
// constructing it costs more than parsing a message.
struct Workspace {
  std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter> parser;
  std::vector<TextRun> runs;  // of the open elements, innermost last
  std::string joined;

  // Protects against documents that cause collisions in the parser's hash tables. It is generated once,
  // because each random number needs a system call.
  const unsigned long hashSalt = std::random_device()() | 1U;
};

using WorkspaceCache = internal::ThreadCache<Workspace>;

std::size_t DocumentBegin(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  const auto skipBlanks = [&](std::size_t at) {
    return std::min(text.find_first_not_of(kBlanks, at), text.size());
  };
  const std::size_t begin = skipBlanks(0);
  if (text.substr(begin, kByteOrderMark.size()) != kByteOrderMark) return begin;
  const std::size_t behindMark = skipBlanks(begin + kByteOrderMark.size());
  return behindMark == begin + kByteOrderMark.size() ? begin : behindMark;
}

// Returns whether a part of the source refers to entities that the document declares.
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

// Builds the tree from the parser's events.
class Builder {
 public:
  // Reads only `text`. Stores views into the text of the tree, which has the same length, without reading it.
  Builder(std::string_view text, Tree& tree, Workspace& workspace)
      : text_(text), tree_(tree), runs_(workspace.runs), joined_(workspace.joined) {
    runs_.clear();
    joined_.clear();
    PrepareParser(workspace);
  }

  // Parses the text in pieces. The last piece has at most `lastPiece` bytes, or kPiece if that is more.
  bool Parse(std::size_t lastPiece, const XmlProgress& progress);
  XmlError Error() const;

 private:
  void PrepareParser(Workspace& workspace);
  bool Feed(std::string_view piece, bool last);

  void StartElement(std::string_view name, const char** attributes);
  void EndElement();
  void CharacterData(std::string_view data);
  void Encoding(std::string_view name);
  void Doctype();
  void AttributeDeclaration(std::string_view type);
  void EntityDeclaration(const char* name, bool isParameter, std::string_view value);
  void Unread();

  void CountForeignNode();
  void AddAttributes(Element& element, const char** attributes, const char** end);
  void AddForeignAttributes(Element& element, const char** attributes, const char** defaults);
  std::string_view KeepOnce(const char* text);
  void PlaceText(Element& element);
  std::string_view Finish(const TextRun& run);
  void InspectGap(std::size_t end);
  void RefuseUndefinedEntities(std::string_view value);
  void Refuse(const char* why);

  // Runs the handler of an event. Exceptions must not propagate through the parser, which is written in C.
  template <typename Work>
  static void OnEvent(void* self, Work work) noexcept;

  std::size_t Position() const { return base_ + static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_)); }
  std::size_t EndPosition() const {
    return Position() + static_cast<std::size_t>(XML_GetCurrentByteCount(parser_));
  }

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
  std::string_view piece_;      // the last piece that was passed to the parser
  const char* copy_ = nullptr;  // the parser's copy of the piece, valid while it parses the piece
  std::vector<TextRun>& runs_;
  std::string& joined_;
  XML_Parser parser_ = nullptr;
  std::size_t base_ = 0;  // the position of the document in the text
  Element* open_ = nullptr;
  bool utf8_ = true;  // otherwise UTF-16, whose bytes differ from those of the tree
  bool hasDoctype_ = false;
  bool hasTokens_ = false;    // whether the document declares tokenised attributes
  std::size_t gapBegin_ = 0;  // the end of the last tag; updated only with a document type
  std::size_t events_ = 0;
  std::unordered_map<const char*, std::string_view> keptOnce_;
  std::size_t foreignNodes_ = 0;                 // elements and attributes that are not in the text
  std::set<std::string, std::less<>> entities_;  // those that attributes may refer to
  std::size_t referringEntities_ = 0;
  std::size_t attributeDeclarations_ = 0;
  const char* refusal_ = nullptr;  // why a text that the parser accepts is rejected
  std::exception_ptr failure_;
};

void Builder::PrepareParser(Workspace& workspace) {
  // Only the parser of an external entity cannot be reset.
  if (!workspace.parser ||
      XML_ParserReset(workspace.parser.get(), nullptr) == XML_FALSE)  // GCOVR_EXCL_BR_LINE
    workspace.parser.reset(XML_ParserCreate_MM(nullptr, &kParserMemory, nullptr));
  if (!workspace.parser) throw std::bad_alloc();
  parser_ = workspace.parser.get();

  XML_SetHashSalt(parser_, workspace.hashSalt);
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser_, kMaxAmplification);
  XML_SetBillionLaughsAttackProtectionActivationThreshold(parser_, kFreeAmplification);
  // Internal entities are expanded. External entities have no handler and are never read.
  XML_SetParamEntityParsing(parser_, XML_PARAM_ENTITY_PARSING_ALWAYS);
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(
      parser_,
      [](void* self, const char* name, const char** attributes) {
        OnEvent(self, [=](Builder& builder) { builder.StartElement(name, attributes); });
      },
      [](void* self, const char*) { OnEvent(self, &Builder::EndElement); });
  XML_SetCharacterDataHandler(parser_, [](void* self, const char* data, int length) {
    OnEvent(self, [=](Builder& builder) { builder.CharacterData({data, static_cast<std::size_t>(length)}); });
  });
  XML_SetXmlDeclHandler(parser_, [](void* self, const char*, const char* encoding, int) {
    if (encoding != nullptr) OnEvent(self, [=](Builder& builder) { builder.Encoding(encoding); });
  });
  XML_SetStartDoctypeDeclHandler(parser_, [](void* self, const char*, const char*, const char*, int) {
    OnEvent(self, &Builder::Doctype);
  });
}

// Sets the handlers that only documents with declarations need. The parser itself would silently skip
// entities that may be declared externally, and their text would be missing.
void Builder::Doctype() {
  hasDoctype_ = true;
  entities_ = {"amp", "lt", "gt", "quot", "apos"};
  XML_SetAttlistDeclHandler(parser_,
                            [](void* self, const char*, const char*, const char* type, const char*, int) {
                              OnEvent(self, [=](Builder& builder) { builder.AttributeDeclaration(type); });
                            });
  XML_SetEntityDeclHandler(parser_, [](void* self, const char* name, int isParameter, const char* value,
                                       int length, const char*, const char*, const char*, const char*) {
    OnEvent(self, [=](Builder& builder) {
      builder.EntityDeclaration(name, isParameter != 0, {value, static_cast<std::size_t>(length)});
    });
  });
  XML_SetSkippedEntityHandler(parser_, [](void* self, const char*, int isParameter) {
    if (isParameter == 0)
      OnEvent(self, [](Builder& builder) { builder.Refuse(XML_ErrorString(XML_ERROR_UNDEFINED_ENTITY)); });
  });
  XML_SetExternalEntityRefHandler(
      parser_, [](XML_Parser, const char* context, const char*, const char*, const char*) -> int {
        const bool isParameter = context == nullptr;
        return isParameter ? XML_STATUS_OK : XML_STATUS_ERROR;
      });

  // Comments, processing instructions and CDATA sections contain no references.
  XML_SetCommentHandler(parser_, [](void* self, const char*) { OnEvent(self, &Builder::Unread); });
  XML_SetProcessingInstructionHandler(
      parser_, [](void* self, const char*, const char*) { OnEvent(self, &Builder::Unread); });
  XML_SetCdataSectionHandler(
      parser_, [](void* self) { OnEvent(self, &Builder::Unread); },
      [](void* self) { OnEvent(self, [](Builder& builder) { builder.gapBegin_ = builder.EndPosition(); }); });
}

void Builder::AttributeDeclaration(std::string_view type) {
  hasTokens_ = hasTokens_ || type != "CDATA";
  if (++attributeDeclarations_ > kMaxAttributeDeclarations) Refuse("too many attributes are declared");
}

void Builder::EntityDeclaration(const char* name, bool isParameter, std::string_view value) {
  if (!isParameter) entities_.insert(name);
  const bool refers = value.find('%') != std::string_view::npos || RefersToOwnEntities(value);
  if (refers && ++referringEntities_ > kMaxReferringEntities) Refuse("too many entities refer to others");
}

template <typename Work>
void Builder::OnEvent(void* self, Work work) noexcept {
  auto& builder = *static_cast<Builder*>(self);
  if (builder.failure_ || builder.refusal_ != nullptr) return;
  ++builder.events_;
  try {
    std::invoke(work, builder);
  } catch (const std::length_error&) {             // GCOVR_EXCL_BR_LINE
    builder.Refuse("a name or text is too long");  // GCOVR_EXCL_LINE: tests have less memory
  } catch (...) {
    builder.failure_ = std::current_exception();
    XML_StopParser(builder.parser_, XML_FALSE);
  }
}

bool Builder::Parse(std::size_t lastPiece, const XmlProgress& progress) {
  base_ = DocumentBegin(text_);
  std::size_t at = base_;
  std::size_t piece = kPiece;
  bool last = false;
  while (!last) {
    const std::size_t rest = text_.size() - at;
    last = rest <= std::max(piece, lastPiece);
    const std::size_t length = last ? rest : piece;
    const std::size_t eventsBefore = events_;
    if (!Feed(text_.substr(at, length), last)) {
      if (failure_) std::rethrow_exception(failure_);
      if (XML_GetErrorCode(parser_) == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
      return false;
    }
    at += length;
    if (progress) progress(at);
    // The parser reads an incomplete tag or comment again with every piece. Larger pieces keep the total time
    // linear.
    piece = events_ != eventsBefore ? kPiece : std::min(piece * 2, kLargestPiece);
  }
  return true;
}

// The parser copies its input in any case. Copying into its buffer here makes the address of the copy known,
// and so the position of a text that the parser reports from it.
bool Builder::Feed(std::string_view piece, bool last) {
  const auto length = static_cast<int>(piece.size());
  void* const copy = XML_GetBuffer(parser_, std::max(length, 1));
  if (copy == nullptr) throw std::bad_alloc();
  copy_ = static_cast<const char*>(std::memcpy(copy, piece.data(), piece.size()));
  piece_ = piece;
  return XML_ParseBuffer(parser_, length, static_cast<int>(last)) == XML_STATUS_OK;
}

XmlError Builder::Error() const {
  const auto at = static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser_), 0));
  const char* const why = refusal_ != nullptr ? refusal_ : XML_ErrorString(XML_GetErrorCode(parser_));
  return {LineIndex(text_).At(base_ + at), why};
}

void Builder::StartElement(std::string_view name, const char** attributes) {
  const std::size_t begin = Position();
  // The content of an entity is in its declaration; the source here contains only the reference.
  const char* source = text_[begin] == '<' ? InSource(begin + 1, name) : nullptr;
  Element& element = tree_.NewElement();
  element.SetName(source != nullptr ? InTree(source, name.size()) : tree_.Keep(name));
  element.begin = static_cast<std::uint32_t>(begin);
  element.hasPlace = true;
  element.verbatim = utf8_ && source != nullptr;

  InspectGap(begin);
  if (open_ != nullptr)
    open_->Append(element);
  else
    tree_.root = &element;
  open_ = &element;
  if (source != nullptr && attributes[0] == nullptr) return;

  const char** const defaults = attributes + XML_GetSpecifiedAttributeCount(parser_);
  if (source != nullptr) {
    AddAttributes(element, attributes, defaults);
    AddForeignAttributes(element, defaults, defaults);
  } else {
    CountForeignNode();
    AddForeignAttributes(element, attributes, defaults);
  }
}

void Builder::CountForeignNode() {
  const std::size_t most = std::max(text_.size() / kShortestElement, kFreeForeignNodes);
  if (++foreignNodes_ > most) Refuse(XML_ErrorString(XML_ERROR_AMPLIFICATION_LIMIT_BREACH));
}

void Builder::Refuse(const char* why) {
  refusal_ = why;
  XML_StopParser(parser_, XML_FALSE);
}

// Reads the source of the tag together with the attributes, to find the values that are verbatim in the
// source.
void Builder::AddAttributes(Element& element, const char** attributes, const char** end) {
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
      RefuseUndefinedEntities(Source(quote, endQuote));
    }
    if (hasTokens_ && Source(quote + 1, endQuote) != attributes[1]) element.verbatim = false;
    at = endQuote + 1;
  }
}

// Adds attributes that are not in the source, or not in this encoding. Those from `defaults` on are equal in
// all elements that have them.
void Builder::AddForeignAttributes(Element& element, const char** attributes, const char** defaults) {
  Attribute** link = &element.attributes;
  while (*link != nullptr) link = &(*link)->next;
  for (; attributes[0] != nullptr && refusal_ == nullptr; attributes += 2) {
    CountForeignNode();
    const bool isDefault = attributes >= defaults;
    const std::string_view value = isDefault ? KeepOnce(attributes[1]) : tree_.Keep(attributes[1]);
    *link = &tree_.NewAttribute(KeepOnce(attributes[0]), value);
    link = &(*link)->next;
    element.verbatim = false;
  }
}

// Copies a string into the tree once. The parser also stores it once, for as long as it parses.
std::string_view Builder::KeepOnce(const char* text) {
  const auto [kept, isNew] = keptOnce_.try_emplace(text);
  if (isNew) kept->second = tree_.Keep(text);
  return kept->second;
}

void Builder::EndElement() {
  Element& element = *open_;
  const std::size_t tag = Position();
  InspectGap(tag);
  PlaceText(element);
  element.end =
      static_cast<std::uint32_t>(tag) + static_cast<std::uint32_t>(XML_GetCurrentByteCount(parser_));
  open_ = element.parent;
  if (open_ != nullptr && !element.verbatim) open_->verbatim = false;
}

// Markup that refers to internal entities is not valid outside the document. The parser reports no event for
// an empty entity.
void Builder::InspectGap(std::size_t end) {
  if (!hasDoctype_) return;
  if (open_ != nullptr && gapBegin_ < end && RefersToOwnEntities(Source(gapBegin_, end)))
    open_->verbatim = false;
  gapBegin_ = EndPosition();
}

// Handles a comment, a processing instruction or the beginning of a CDATA section. Inspects only the text
// before it.
void Builder::Unread() {
  const bool isInEntity = text_[Position()] == '&';
  if (open_ != nullptr && isInEntity) open_->verbatim = false;
  InspectGap(Position());
}

void Builder::RefuseUndefinedEntities(std::string_view value) {
  for (std::size_t at = value.find('&'); at != std::string_view::npos; at = value.find('&', at + 1)) {
    const std::string_view name = value.substr(at + 1, value.find(';', at) - at - 1);
    if (name.front() != '#' && entities_.count(name) == 0)
      Refuse(XML_ErrorString(XML_ERROR_UNDEFINED_ENTITY));
  }
}

void Builder::CharacterData(std::string_view data) {
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
const char* Builder::FindInSource(std::string_view data, const TextRun* before) const {
  if (std::less_equal<>()(copy_, data.data()) && std::less<>()(data.data(), copy_ + piece_.size()))
    return piece_.data() + (data.data() - copy_);
  if (before != nullptr) {
    const auto behind = static_cast<std::size_t>(before->verbatim + before->length - text_.data());
    if (const char* source = InSource(behind, data)) return source;
  }
  return InSource(Position(), data);
}

// Sets the text of a complete element. Drops white space that only separates child elements.
void Builder::PlaceText(Element& element) {
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

std::string_view Builder::Finish(const TextRun& run) {
  if (run.verbatim != nullptr) return InTree(run.verbatim, run.length);
  return tree_.Keep({joined_.data() + run.begin, run.length});
}

void Builder::Encoding(std::string_view name) {
  const auto isNamed = [&](std::string_view other) {
    return std::equal(name.begin(), name.end(), other.begin(), other.end(),
                      [](char left, char right) { return (left & ~0x20) == (right & ~0x20); });
  };
  utf8_ = isNamed("UTF-8") || isNamed("US-ASCII");
}

bool IsTooLong(std::string_view text, XmlError* error) {
  if (std::uint64_t{text.size()} <= std::numeric_limits<std::uint32_t>::max())  // GCOVR_EXCL_BR_LINE
    return false;
  // GCOVR_EXCL_START: tests have less memory
  if (error != nullptr) *error = {{}, "a document of more than 4 GiB"};
  return true;
  // GCOVR_EXCL_STOP
}

}  // namespace

boost::shared_ptr<Tree> Parse(std::string&& text, XmlError* error, const XmlProgress& progress) {
  if (IsTooLong(text, error)) return {};  // GCOVR_EXCL_BR_LINE: tests have less memory
  auto tree = boost::make_shared<Tree>(std::move(text));
  // The progress function may parse as well, with another workspace.
  std::unique_ptr<Workspace> workspace = WorkspaceCache::Take();
  if (!workspace) workspace = std::make_unique<Workspace>();
  Builder builder(tree->text, *tree, *workspace);
  const std::size_t lastPiece = std::max(kLargeLastPiece, tree->text.size() / kLastPieceShare);
  const bool wellFormed = builder.Parse(progress ? kPiece : std::min(lastPiece, kLargestPiece), progress);
  if (!wellFormed && error != nullptr) {
    *error = builder.Error();
    text = tree->ReleaseText();
  }
  if (tree->text.size() <= kKeepParser) WorkspaceCache::Keep(std::move(workspace));
  if (!wellFormed) tree.reset();
  return tree;
}

// A large text is parsed in one piece, and copied after the parser has freed its copy. The pages of both
// copies are never in use at the same time.
boost::shared_ptr<Tree> Parse(const std::string& text) {
  if (text.size() <= kKeepParser) return Parse(std::string(text), nullptr, {});
  if (IsTooLong(text, nullptr)) return {};  // GCOVR_EXCL_BR_LINE: tests have less memory
  auto tree = boost::make_shared<Tree>(text.size());
  {
    Workspace workspace;
    Builder builder(text, *tree, workspace);
    if (!builder.Parse(kLargestPiece, {})) return {};
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
