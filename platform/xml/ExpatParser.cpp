#include "ExpatParser.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "LargePages.h"
#include "LineIndex.h"
#include "Tree.h"

namespace zq::xml {
namespace {

// Entities may expand a document to this many times its length, or to this many bytes, whichever is more.
constexpr float maxAmplification = 10;
constexpr std::size_t freeAmplification = 1U << 20U;

// The parser copies its input, which may be large.
constexpr XML_Memory_Handling_Suite parserMemory = {[](std::size_t size) {
                                                      void* const memory = std::malloc(size);
                                                      PreferLargePages(memory, size);
                                                      return memory;
                                                    },
                                                    std::realloc, std::free};

std::size_t DocumentBegin(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  const auto skipBlanks = [&](std::size_t at) {
    return std::min(text.find_first_not_of(whiteSpace, at), text.size());
  };
  const std::size_t begin = skipBlanks(0);
  if (text.substr(begin, byteOrderMark.size()) != byteOrderMark) return begin;
  const std::size_t behindMark = skipBlanks(begin + byteOrderMark.size());
  return behindMark == begin + byteOrderMark.size() ? begin : behindMark;
}

}  // namespace

ExpatParser::ExpatParser(std::string_view text, ExpatInstance& instance) : text_(text) {
  XML_Bool isReset = XML_FALSE;
  if (instance.parser) isReset = XML_ParserReset(instance.parser.get(), nullptr);
  if (isReset == XML_FALSE) instance.parser.reset(XML_ParserCreate_MM(nullptr, &parserMemory, nullptr));
  if (!instance.parser) throw std::bad_alloc();
  parser_ = instance.parser.get();

  XML_SetHashSalt(parser_, instance.hashSalt);
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser_, maxAmplification);
  XML_SetBillionLaughsAttackProtectionActivationThreshold(parser_, freeAmplification);
  // Internal entities are expanded. External entities have no handler and are never read.
  XML_SetParamEntityParsing(parser_, XML_PARAM_ENTITY_PARSING_ALWAYS);
}

bool ExpatParser::Parse(std::size_t lastPiece, const XmlProgress& progress) {
  base_ = DocumentBegin(text_);
  std::size_t at = base_;
  std::size_t piece = usualPiece;
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
    piece = events_ != eventsBefore ? usualPiece : std::min(piece * 2, largestPiece);
  }
  return true;
}

// The parser copies its input in any case. Copying into its buffer here makes the address of the copy known,
// and so the position of data that the parser reports from it.
bool ExpatParser::Feed(std::string_view piece, bool last) {
  const auto length = static_cast<int>(piece.size());
  void* const copy = XML_GetBuffer(parser_, std::max(length, 1));
  if (copy == nullptr) throw std::bad_alloc();
  copy_ = static_cast<const char*>(std::memcpy(copy, piece.data(), piece.size()));
  piece_ = piece;
  return XML_ParseBuffer(parser_, length, static_cast<int>(last)) == XML_STATUS_OK;
}

void ExpatParser::Refuse(const char* why) {
  refusal_ = why;
  XML_StopParser(parser_, XML_FALSE);
}

XmlError ExpatParser::Error() const {
  const auto at = static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser_), 0));
  const char* const why = refusal_ != nullptr ? refusal_ : XML_ErrorString(XML_GetErrorCode(parser_));
  return {LineIndex(text_).At(base_ + at), why};
}

}  // namespace zq::xml
