// The namespace of the format: the one place that spells its URI.
#pragma once

#include "lmx/names.h"
#include "port/export.h"

namespace zol_v2::internal {

constexpr char k_document_namespace[] = "http://example.org/zol/v2";
constexpr int k_document_namespace_id = 1000;

// The source file that error handlers are told.
constexpr char k_model_source[] = ".\\Zol.cpp";

// One row, id 1000 with the prefix "Zol", and the row that ends the table.
ZOL_API const lmx::s_ns_map* document_ns_map();

}  // namespace zol_v2::internal
