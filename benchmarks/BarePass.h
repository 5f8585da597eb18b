// Measures the parsers alone: the minimum time for reading a text.
#pragma once

#include <expat.h>
#include <json/reader.h>
#include <json/value.h>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

// One pass of Expat's events over a text, with a parser that is reset instead of constructed again.
class BareExpat {
 public:
  // Counts of the contents, so that the events have an effect.
  struct Counts {
    std::size_t elements = 0;
    std::size_t bytes = 0;  // of text
  };

  Counts Parse(const std::string& text) {
    Counts counts;
    XML_ParserReset(parser_.get(), nullptr);
    XML_SetUserData(parser_.get(), &counts);
    XML_SetElementHandler(
        parser_.get(), [](void* self, const char*, const char**) { ++static_cast<Counts*>(self)->elements; },
        [](void*, const char*) {});
    XML_SetCharacterDataHandler(parser_.get(), [](void* self, const char*, int length) {
      static_cast<Counts*>(self)->bytes += static_cast<std::size_t>(length);
    });
    if (XML_Parse(parser_.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) != XML_STATUS_OK)
      throw std::invalid_argument("not well-formed");
    return counts;
  }

 private:
  struct Deleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  std::unique_ptr<std::remove_pointer_t<XML_Parser>, Deleter> parser_{XML_ParserCreate(nullptr)};
};

// Parses a text into a JsonCpp value, with a reader that is constructed once.
class BareJson {
 public:
  BareJson() {
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false;
    reader_.reset(builder.newCharReader());
  }

  Json::Value Parse(const std::string& text) {
    Json::Value value;
    if (!reader_->parse(text.data(), text.data() + text.size(), &value, nullptr))
      throw std::invalid_argument("not JSON");
    return value;
  }

 private:
  std::unique_ptr<Json::CharReader> reader_;
};
