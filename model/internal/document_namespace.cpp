#include "model/internal/document_namespace.h"

#include "lmx/names.h"
#include "model/internal/walkers.h"

namespace zol_v2::internal {

const lmx::s_ns_map* document_ns_map() {
  static constexpr lmx::s_ns_map k_map[] = {{k_document_namespace_id, "Zol", k_document_namespace},
                                            {0, nullptr, nullptr}};
  return k_map;
}

}  // namespace zol_v2::internal
