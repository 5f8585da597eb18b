#include "Writer.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string_view>
#include <utility>

#include "Parser.h"

namespace zq::xml {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

// Returns the number of bytes of the first character of a string, 0 if XML cannot represent it.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
  };
  const unsigned lead = byte(0);
  if (lead < 0x80) return lead >= 0x20 || lead == '\t' || lead == '\n' || lead == '\r' ? 1 : 0;

  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  unsigned code = lead & (0x7FU >> length);
  for (std::size_t at = 1; at < length; ++at) {
    if ((byte(at) & 0xC0U) != 0x80) return 0;
    code = code << 6U | (byte(at) & 0x3FU);
  }
  constexpr unsigned smallest[] = {0x80, 0x800, 0x10000};
  const bool valid = lead >= 0xC0 && lead < 0xF8 && code >= smallest[length - 2] && code <= 0x10FFFF &&
                     (code < 0xD800 || code > 0xDFFF) && code != 0xFFFE && code != 0xFFFF;
  return valid ? length : 0;
}

// Returns the escape sequence of a character of text or an attribute's value, "" if it needs none.
std::string_view Escape(char c, bool inAttribute) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";
    case '"':
      return inAttribute ? "&quot;" : "";
    case '\t':
      return inAttribute ? "&#9;" : "";
    case '\n':
      return inAttribute ? "&#10;" : "";
    default:
      return "";
  }
}

constexpr bool StartsName(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
}

// Properties of each byte. A table saves 5 % of the instructions of writing a message.
struct ByteTable {
  constexpr ByteTable() {
    for (unsigned c = 0; c < 256; ++c) {
      needsCare[c] = c < 0x20 || c >= 0x80 || c == '&' || c == '<' || c == '>' || c == '"';
      continuesName[c] =
          StartsName(static_cast<unsigned char>(c)) || (c >= '0' && c <= '9') || c == '-' || c == '.';
    }
  }

  bool needsCare[256] = {};  // the byte is escaped, or part of a character that XML may not allow
  bool continuesName[256] = {};
};

constexpr ByteTable bytes;

bool NeedsCare(unsigned char c) { return bytes.needsCare[c]; }
bool ContinuesName(unsigned char c) { return bytes.continuesName[c]; }

void AppendEscaped(std::string& out, std::string_view text, bool inAttribute) {
  while (!text.empty()) {
    const auto* special =
        std::find_if(text.begin(), text.end(), [](unsigned char c) { return NeedsCare(c); });
    const auto plain = static_cast<std::size_t>(special - text.begin());
    out += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) return;

    const std::string_view escape = Escape(text.front(), inAttribute);
    const std::size_t length = CharacterLength(text);
    if (!escape.empty())
      out += escape;
    else
      out += length == 0 ? replacement : text.substr(0, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
}

// Returns whether a name can be written verbatim.
bool IsWritable(std::string_view name) {
  if (name.empty()) return false;
  if (StartsName(static_cast<unsigned char>(name.front())) &&
      std::all_of(name.begin(), name.end(), [](unsigned char c) { return ContinuesName(c); }))
    return true;
  const auto isAllowed = [](unsigned char c) { return c >= 0x80 || ContinuesName(c); };
  return std::all_of(name.begin(), name.end(), isAllowed) && IsName(name);
}

// Replaces characters that are not allowed in a name by "_", and prefixes "_" if the first character is not
// allowed there.
std::string MadeWritable(std::string_view name) {
  std::string written(name);
  std::replace_if(
      written.begin(), written.end(), [](unsigned char c) { return !ContinuesName(c); }, '_');
  if (written.empty() || !StartsName(static_cast<unsigned char>(written.front()))) written.insert(0, 1, '_');
  return written;
}

class Writer {
 public:
  Writer() { out_.reserve(usualSize); }

  void Outer(const Element& top);
  void Inner(const Element& element);
  std::string Take() { return std::move(out_); }

 private:
  // Writes an item up to its first child item. Returns whether it has child items that are still to be
  // written.
  bool Open(const Element& item);
  void Close(const Element& element);
  void StartTag(const Element& element);
  void AppendName(std::string_view name);
  void Attributes(const Element& element);

  // Enough for a message of a few parameters, which then needs one allocation. That saves 7 % of the
  // instructions of writing it.
  static constexpr std::size_t usualSize = 480;

  // True if the names of all elements so far were written verbatim. End tags then need not check them again,
  // which would add 6 % to the instructions of writing a message.
  bool namesAreWritable_ = true;
  std::string out_;
};

void Writer::Outer(const Element& top) {
  const Element* item = &top;
  while (true) {
    if (Open(*item)) {
      item = item->FirstItem();
      continue;
    }
    while (item != &top && item->NextItem() == nullptr) {
      item = item->parent;
      Close(*item);
    }
    if (item == &top) return;
    item = item->NextItem();
  }
}

bool Writer::Open(const Element& item) {
  if (item.isText) {
    AppendEscaped(out_, item.Text(), false);
    return false;
  }
  if (item.verbatim) {
    out_.append(item.tree->text, item.begin, item.end - item.begin);
    return false;
  }
  StartTag(item);
  if (item.hasChildren) {
    out_ += '>';
    return true;
  }
  if (item.Text().empty()) {
    out_ += "/>";
    return false;
  }
  out_ += '>';
  AppendEscaped(out_, item.Text(), false);
  Close(item);
  return false;
}

void Writer::Close(const Element& element) {
  out_ += '<';
  out_ += '/';
  AppendName(element.Name());
  out_ += '>';
}

void Writer::StartTag(const Element& element) {
  namesAreWritable_ = namesAreWritable_ && IsWritable(element.Name());
  out_ += '<';
  AppendName(element.Name());
  if (element.attributes != nullptr) Attributes(element);
}

// Appends the name of an open element.
void Writer::AppendName(std::string_view name) {
  if (namesAreWritable_ || IsWritable(name))
    out_ += name;
  else
    out_ += MadeWritable(name);
}

// Replaced names must remain unique.
void Writer::Attributes(const Element& element) {
  std::set<std::string> made;
  for (const Attribute* attribute = element.attributes; attribute != nullptr; attribute = attribute->next) {
    out_ += ' ';
    if (IsWritable(attribute->name)) {
      out_ += attribute->name;
    } else {
      std::string name = MadeWritable(attribute->name);
      while (element.FindAttribute(name) != nullptr || !made.insert(name).second) name += '_';
      out_ += name;
    }
    out_ += "=\"";
    AppendEscaped(out_, attribute->value, true);
    out_ += '"';
  }
}

// Returns the content of an element within its markup.
std::string_view Content(std::string_view markup) {
  char quote = '\0';
  std::size_t at = 0;
  for (; quote != '\0' || markup[at] != '>'; ++at) {
    const char c = markup[at];
    if (quote != '\0')
      quote = c == quote ? '\0' : quote;
    else if (c == '"' || c == '\'')
      quote = c;
  }
  if (markup[at - 1] == '/') return {};
  return markup.substr(at + 1, markup.rfind('<') - at - 1);
}

void Writer::Inner(const Element& element) {
  if (element.verbatim) {
    out_ += Content(std::string_view(element.tree->text).substr(element.begin, element.end - element.begin));
    return;
  }
  if (!element.hasChildren) AppendEscaped(out_, element.Text(), false);
  for (const Element* item = element.FirstItem(); item != nullptr; item = item->NextItem()) Outer(*item);
}

}  // namespace

std::string InnerXml(const Element& element) {
  Writer writer;
  writer.Inner(element);
  return writer.Take();
}

std::string OuterXml(const Element& element) {
  Writer writer;
  writer.Outer(element);
  return writer.Take();
}

}  // namespace zq::xml
