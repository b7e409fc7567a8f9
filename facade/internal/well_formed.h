// Whether a document is XML by the book, as a parser judges that takes nobody's word for it: the
// library's own reader lets much pass that others refuse.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zol_v2::internal {

// Something that XML 1.0 or Namespaces in XML 1.0 forbids.
struct XmlFault {
  std::string rule;          // short and stable, for programs: "repeated-attribute"
  std::string sentence;      // for people, without a full stop
  std::string item;          // the element or attribute concerned, if there is one
  std::uint64_t line = 0;    // from 1
  std::uint64_t column = 0;  // from 1, in characters: where the parser saw what was wrong
};

// The faults of a document in any encoding that libxml2 knows, up to `limit` of them (at least 1).
// After a fault that leaves doubt about what the rest means there are no others. Nothing outside of
// the document is read. What entities expand to is limited, the size of a document is not. Throws
// std::bad_alloc.
std::vector<XmlFault> find_xml_faults(std::string_view text, std::size_t limit);

}  // namespace zol_v2::internal
