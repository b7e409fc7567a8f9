// The namespace of the format: the one place that spells its URI.
#pragma once

namespace zol_v2::internal {

constexpr char k_document_namespace[] = "http://example.org/zol/v2";
constexpr int k_document_namespace_id = 1000;

// The source file that error handlers are told.
constexpr char k_model_source[] = ".\\Zol.cpp";

}  // namespace zol_v2::internal
