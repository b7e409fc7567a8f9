#include <memory>
#include <stdexcept>
#include <utility>

#include "bench/documents.h"
#include "bench/roads.h"
#include "model/Zol.h"

#if ZOL_BENCH_BRIDGE
#include "bridge/zol_exports.h"
#include "bridge/zol_helpers.h"
#endif

namespace bench {

std::vector<Road> document_roads() {
  constexpr std::size_t k_size = 20 * 1000;
  std::vector<Road> roads;
  for (const Profile profile : k_profiles) {
    const std::string text = make_document(profile, k_size);
    const auto document = std::make_shared<zol_v2::Zol>();
    if (document->unmarshal(text) != lmx::elmx_ok) throw std::runtime_error("unmarshal");
    const auto size = static_cast<double>(text.size());
    roads.push_back({std::string("load of ") + name_of(profile), "byte", size, [text] {
                       zol_v2::Zol loaded;
                       keep(loaded.unmarshal(text));
                     }});
    roads.push_back({std::string("save of ") + name_of(profile), "byte", size, [document] {
                       std::string out;
                       keep(document->marshal(&out));
                     }});
  }
#if ZOL_BENCH_BRIDGE
  const auto add_calls = [&roads](const char* road, auto call) {
    constexpr int k_calls = 100;
    roads.push_back({road, "call", k_calls, [call] {
                       for (int i = 0; i < k_calls; ++i) call();
                     }});
  };
  const auto rgb = std::make_shared<zol_v2::ColorSpaceRGBType>();
  (void)rgb->set_Red(0.5);
  add_calls("number through the bridge",
            [rgb] { keep(_CSharp_ColorSpaceRGBType_get_Red(rgb.get())); });
  const auto header = std::make_shared<zol_v2::Header>();
  (void)header->set_Name(L"A name of thirty characters ...");
  add_calls("text through the bridge", [header] {
    char16_t* const text = _CSharp_Header_get_Name(header.get());
    keep(text);
    zol_text_free(text);
  });
#endif
  return roads;
}

}  // namespace bench
