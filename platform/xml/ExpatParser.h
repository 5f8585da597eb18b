// Expat, with the settings and limits of this library. This is the only header that includes Expat's.
#pragma once

#include <tavrin_platform/XmlDiagnostics.h>

// Debian's Expat is built with this macro. Without it the header does not declare the protection against
// entity bombs.
#define XML_DTD
#include <expat.h>

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string_view>
#include <type_traits>

namespace zq::xml {

// The parser copies each piece of the text. Small pieces save memory and stay in the cache. But the parser
// counts the lines of every piece except the last, which takes a tenth of its time. The last piece may
// therefore be larger.
inline constexpr std::size_t usualPiece = 1U << 16U;

// The size of a piece and the rest of the previous one, rounded up to a power of two, must fit an int.
inline constexpr std::size_t largestPiece = 1U << 29U;

// An instance of Expat that parses one document after the other, because creating one costs more than parsing
// a message.
struct ExpatInstance {
  struct Deleter {
    void operator()(XML_Parser instance) const { XML_ParserFree(instance); }
  };

  std::unique_ptr<std::remove_pointer_t<XML_Parser>, Deleter> parser;

  // Protects against documents that cause collisions in the parser's hash tables. It is generated once,
  // because each random number needs a system call.
  const unsigned long hashSalt = std::random_device()() | 1U;
};

// Parses one document.
class ExpatParser {
 public:
  ExpatParser(std::string_view text, ExpatInstance& instance);

  // Sets the functions of `Handler` that the events call, in the order of the text. An exception aborts
  // parsing and propagates to the caller of Parse(). Handler::Parser() returns this parser.
  //
  //   StartElement(std::string_view name, const char** attributes)   names and values in turn, up to null
  //   EndElement()
  //   CharacterData(std::string_view data)
  //   Encoding(std::string_view name)                                that the document names
  //   Doctype()                                                      only after it the events below
  //   AttributeDeclaration(std::string_view type)
  //   EntityDeclaration(const char* name, bool isParameter, std::string_view value)
  //   SkippedEntity()                                                a reference without a declaration
  //   Unread()                                                       a comment, a processing instruction or
  //                                                                  the beginning of a CDATA section
  //   EndCdata()
  template <typename Handler>
  void SetHandler(Handler& receiver);

  // Parses the text in pieces. The last piece has at most `lastPiece` bytes, or usualPiece if that is more.
  bool Parse(std::size_t lastPiece, const XmlProgress& progress);

  // Rejects a document that the parser accepts.
  void Refuse(const char* why);
  bool HasRefused() const { return refusal_ != nullptr; }
  XmlError Error() const;

  // The source of the current event.
  std::size_t Position() const { return base_ + static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_)); }
  std::size_t Length() const { return static_cast<std::size_t>(XML_GetCurrentByteCount(parser_)); }

  // Returns the first of the attributes of a started element that are defaults of the document type.
  const char** Defaults(const char** attributes) const {
    return attributes + XML_GetSpecifiedAttributeCount(parser_);
  }

  // Returns the position in the text of data that the parser reports from its copy of the text, otherwise
  // null.
  const char* Original(const char* data) const {
    if (std::less_equal<>()(copy_, data) && std::less<>()(data, copy_ + piece_.size()))
      return piece_.data() + (data - copy_);
    return nullptr;
  }

 private:
  bool Feed(std::string_view piece, bool last);

  // Runs the function of an event. Exceptions must not propagate through the parser, which is written in C.
  template <typename Handler, typename Work>
  static void OnEvent(void* self, Work work) noexcept;
  template <typename Handler>
  void SetDoctypeHandlers();

  std::string_view text_;
  XML_Parser parser_ = nullptr;
  std::string_view piece_;      // the last piece that was passed to the parser
  const char* copy_ = nullptr;  // the parser's copy of the piece, valid while it parses the piece
  std::size_t base_ = 0;        // the position of the document in the text
  std::size_t events_ = 0;
  const char* refusal_ = nullptr;  // why a document that the parser accepts is rejected
  std::exception_ptr failure_;
};

template <typename Handler, typename Work>
void ExpatParser::OnEvent(void* self, Work work) noexcept {
  auto& handler = *static_cast<Handler*>(self);
  ExpatParser& parser = handler.Parser();
  if (parser.failure_ || parser.refusal_ != nullptr) return;
  ++parser.events_;
  try {
    std::invoke(work, handler);
  } catch (const std::length_error&) {
    // GCOVR_EXCL_START: tests cannot allocate a name of 256 MiB or a text of 4 GiB.
    parser.Refuse("a name or text is too long");
    // GCOVR_EXCL_STOP
  } catch (...) {
    parser.failure_ = std::current_exception();
    XML_StopParser(parser.parser_, XML_FALSE);
  }
}

template <typename Handler>
void ExpatParser::SetHandler(Handler& receiver) {
  XML_SetUserData(parser_, &receiver);
  XML_SetElementHandler(
      parser_,
      [](void* self, const char* name, const char** attributes) {
        OnEvent<Handler>(self, [=](Handler& handler) { handler.StartElement(name, attributes); });
      },
      [](void* self, const char*) { OnEvent<Handler>(self, &Handler::EndElement); });
  XML_SetCharacterDataHandler(parser_, [](void* self, const char* data, int length) {
    const std::string_view text(data, static_cast<std::size_t>(length));
    OnEvent<Handler>(self, [=](Handler& handler) { handler.CharacterData(text); });
  });
  XML_SetXmlDeclHandler(parser_, [](void* self, const char*, const char* encoding, int) {
    if (encoding != nullptr) OnEvent<Handler>(self, [=](Handler& handler) { handler.Encoding(encoding); });
  });
  XML_SetStartDoctypeDeclHandler(parser_, [](void* self, const char*, const char*, const char*, int) {
    static_cast<Handler*>(self)->Parser().template SetDoctypeHandlers<Handler>();
    OnEvent<Handler>(self, &Handler::Doctype);
  });
}

// Sets the handlers that only documents with declarations need.
template <typename Handler>
void ExpatParser::SetDoctypeHandlers() {
  XML_SetAttlistDeclHandler(
      parser_, [](void* self, const char*, const char*, const char* type, const char*, int) {
        OnEvent<Handler>(self, [=](Handler& handler) { handler.AttributeDeclaration(type); });
      });
  XML_SetEntityDeclHandler(parser_, [](void* self, const char* name, int isParameter, const char* value,
                                       int length, const char*, const char*, const char*, const char*) {
    OnEvent<Handler>(self, [=](Handler& handler) {
      handler.EntityDeclaration(name, isParameter != 0, {value, static_cast<std::size_t>(length)});
    });
  });
  XML_SetSkippedEntityHandler(parser_, [](void* self, const char*, int isParameter) {
    if (isParameter == 0) OnEvent<Handler>(self, &Handler::SkippedEntity);
  });
  XML_SetExternalEntityRefHandler(
      parser_, [](XML_Parser, const char* context, const char*, const char*, const char*) -> int {
        const bool isParameter = context == nullptr;
        return isParameter ? XML_STATUS_OK : XML_STATUS_ERROR;
      });

  XML_SetCommentHandler(parser_, [](void* self, const char*) { OnEvent<Handler>(self, &Handler::Unread); });
  XML_SetProcessingInstructionHandler(
      parser_, [](void* self, const char*, const char*) { OnEvent<Handler>(self, &Handler::Unread); });
  XML_SetCdataSectionHandler(
      parser_, [](void* self) { OnEvent<Handler>(self, &Handler::Unread); },
      [](void* self) { OnEvent<Handler>(self, &Handler::EndCdata); });
}

}  // namespace zq::xml
