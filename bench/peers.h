// The same work by other libraries, done as well as a careful user of theirs would do it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "bench/documents.h"

namespace pugi {
class xml_document;
}

namespace bench {

// Each function gives false if the text cannot be parsed or, in extraction, is not what the profile
// says. The text is not changed.

bool pugixml_parse(const std::string& text);
bool libxml2_parse(const std::string& text);

// Parses and copies each value into a plain structure of its type: numbers into double, texts into
// std::string, dates into fields, enumerated values into integers. For the spectra and the
// palettes.
bool pugixml_extract(Profile profile, const std::string& text);

// A parsed document that can be saved again and again.
class PugixmlDocument {
 public:
  explicit PugixmlDocument(const std::string& text);
  ~PugixmlDocument();

  void save(std::string* out) const;

 private:
  std::unique_ptr<pugi::xml_document> document_;
};

// What a caller who measures memory wants kept alive: the tree, and for extraction the structures.
class KeptAlive {
 public:
  virtual ~KeptAlive() = default;
};
std::unique_ptr<KeptAlive> pugixml_tree(const std::string& text);
std::unique_ptr<KeptAlive> pugixml_structures(Profile profile, const std::string& text);
std::unique_ptr<KeptAlive> libxml2_tree(const std::string& text);

}  // namespace bench
