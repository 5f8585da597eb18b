/// @file
/// Parsing with error messages and progress reports.
///
/// Only the bundled platform defines these functions. The driver library does not use them.
///
/// @code
/// zq::XmlError error;
/// if (!zq::CreateXmlDocument(std::move(text), error))
///   std::cerr << error.position.line << ':' << error.position.column << ": " << error.text << std::endl;
/// @endcode
#pragma once

#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace zq {

/// The reason why a string is not a well-formed document.
struct XmlError {
  XmlPosition position;  ///< where the parser stopped
  std::string text;      ///< the parser's message about what it found there
};

/// A function that is called repeatedly with the number of bytes parsed so far, on the thread that parses. It
/// may throw to cancel the parsing; the exception propagates to the caller.
using XmlProgress = std::function<void(std::size_t bytesParsed)>;

/// Parses a document as CreateXmlDocument(std::string&&) does.
/// @param text is moved from if the result is not null; otherwise it keeps its value
/// @param error receives the reason if the result is null, and is unchanged otherwise
/// @param progress may be empty, which is faster and needs less memory
TAVRIN_EXPORT XmlDocument::Ptr CreateXmlDocument(std::string&& text, XmlError& error,
                                                 const XmlProgress& progress = {});

/// Returns the text that a document was parsed from, byte for byte. The view is valid as long as the
/// document.
TAVRIN_EXPORT std::string_view SourceOf(const XmlDocument& document);

}  // namespace zq
