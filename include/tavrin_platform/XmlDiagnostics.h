/// @file
/// Parsing for those who have to tell a person what went on: where a text is broken and how far the parser
/// is.
///
/// This is an addition of the bundled platform; the library itself does not use it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "Export.h"
#include "XmlNode.h"
#include "XmlPosition.h"

namespace zq {

/// Why a text is not a document.
struct XmlError {
  XmlPosition position;  ///< where the parser stopped
  std::string text;      ///< what it found there, in the parser's words
};

/// Told from time to time, on the caller's thread, how many bytes of the text have been parsed. It may throw
/// to give up.
using XmlProgress = std::function<void(std::size_t bytesParsed)>;

/// Parses a text as CreateXmlDocument(std::string&&) does.
/// @param text is moved from where the result is not empty; otherwise it keeps its value
/// @param error receives the reason when the result is empty and is left alone otherwise
/// @param progress may be empty, which is faster and needs less memory
TAVRIN_EXPORT XmlDocument::Ptr CreateXmlDocument(std::string&& text, XmlError& error,
                                                 const XmlProgress& progress = {});

/// @return the text that a document was parsed from, byte for byte; valid as long as the document exists.
TAVRIN_EXPORT std::string_view SourceOf(const XmlDocument& document);

}  // namespace zq
