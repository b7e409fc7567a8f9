// What is done with an object by walking the table of its class: reading, writing, whole documents.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "lmx/errors.h"
#include "model/internal/tables.h"
#include "port/export.h"

namespace lmx {
struct s_ns_map;
}

namespace zol_v2::internal {

// --- Reading from events (reading.cpp) --------------------------------------------------------
//
// This is the road that knows everything: faults and the handlers that may let them pass, entities,
// sources that give one byte at a time, objects that already hold something. Documents without any
// of that are read by strict_reader.h, which gives up where this one is needed.

// The element step: attributes, children or content, end tag. `name` is the element's name as the
// document spells it. 0, or the code that a handler let stand.
ZOL_API lmx::elmx_error read_element(Object& self, const Class& type, lmx::c_xml_reader& reader,
                                     const std::string& name);
// A holder or an anonymous group, whose element is at hand. False with *error set after a failure.
ZOL_API bool read_member(Object& self, const Class& type, lmx::c_xml_reader& reader,
                         std::string* name, lmx::elmx_error* error);
// Whether the element at hand is one of theirs; if not, the reader is left as it was.
ZOL_API bool is_member(const Class& type, lmx::c_xml_reader& reader);

// --- Writing (writing.cpp) --------------------------------------------------------------------

// One element with its start and end tag; of a holder or an anonymous group the element of what it
// holds. 46 with nothing written if a required row is missing, or the code of a child.
ZOL_API lmx::elmx_error write_element(const Object& self, const Class& type,
                                      lmx::c_xml_writer& writer, const char* name);

// --- Whole documents (documents.cpp) ----------------------------------------------------------

// The namespace of the format: one row, and the row that ends the table.
ZOL_API const lmx::s_ns_map* document_ns_map();

// Reads a document that has no fault without keeping it: what stands in lists that may be empty is
// shown piece by piece, each with all that is in it but such lists, and the root comes last. False
// for a document that the strict reader does not take, and where `take` says so.
bool walk_document(const Class& type, std::string_view bytes,
                   const std::function<bool(const Object& piece)>& take);

// Each reading names the class whose element the document must begin with: 16 if it does not.
ZOL_API lmx::elmx_error unmarshal_document(Object& self, const Class& type,
                                           lmx::c_xml_reader& reader);
// 1: cannot be opened.
ZOL_API lmx::elmx_error unmarshal_file(Object& self, const Class& type, const char* file);
ZOL_API lmx::elmx_error unmarshal_memory(Object& self, const Class& type, const char* buffer,
                                         std::size_t size);

// The element of the class, with no declaration before it but what the writer wrote.
lmx::elmx_error marshal_root(const Object& self, const Class& type, lmx::c_xml_writer& writer);
// With declaration, one tab for a level, line feeds. 1: cannot be opened. A file is removed again
// if the object cannot be written, a string left alone, a stream keeps the partial text.
ZOL_API lmx::elmx_error marshal_document(const Object& self, const Class& type, const char* file);
ZOL_API lmx::elmx_error marshal_document(const Object& self, const Class& type, std::string* out);
ZOL_API lmx::elmx_error marshal_document(const Object& self, const Class& type,
                                         std::ostream& stream);

}  // namespace zol_v2::internal
