// Any bytes as a document whose colours are measured and judged, as it is and with numbers that no
// instrument gives. What comes out is a finite number or a reason, and results that were stored
// agree with the numbers.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "colorimetry/evaluation.h"
#include "facade/files.h"
#include "model/Zol.h"

namespace {

using namespace zol_v2;
using namespace zol_v2::colorimetry;

void require(bool is_true, const char* what) {
  if (is_true) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

// Every second or so number between two tags replaced.
std::string with_odd_numbers(std::string_view text, std::string_view odd) {
  constexpr std::string_view k_digits = "+-.0123456789eE";
  std::string result;
  unsigned count = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    result += text[at];
    if (text[at] != '>') continue;
    const std::size_t end = text.find_first_not_of(k_digits, at + 1);
    const bool is_number = end != std::string::npos && end > at + 1 && text[end] == '<';
    if (!is_number || ++count % 3 == 0) continue;
    result += odd;
    at = end - 1;
  }
  return result;
}

void measure(Colorimeter& meter, const ColorType& color, const ColorPlace& place) {
  for (const Conditions& conditions :
       {Conditions{StandardIlluminant::D50, Observer::degree_2},
        Conditions{StandardIlluminant::F11, Observer::degree_10},
        Conditions{StandardIlluminant::monitor_9300, Observer::degree_10}}) {
    for (const Outcome<Stimulus>& stimulus :
         {meter.measure(color, place), meter.measure(color, conditions, place)}) {
      require(stimulus ? std::isfinite(stimulus->xyz.x) : !stimulus.reason().empty(),
              "a stimulus that is neither a number nor a reason");
      if (stimulus) require(display_of(*stimulus).hex().size() == 7, "a display without a colour");
      if (stimulus) require(!basis_of(*stimulus).empty(), "a stimulus that rests on nothing");
    }
  }
}

void judge(std::string_view text) {
  Zol document;
  if (openText(document, text) != lmx::elmx_ok) return;
  Colorimeter meter;
  for (const ColorType& color : document.each_Color()) measure(meter, color, {});
  for (const PaletteType& palette : document.each_Palette()) {
    for (const ColorSetType& set : palette.each_ColorSet()) {
      for (const ColorType& color : set.each_Color()) measure(meter, color, {&set, &palette});
    }
  }
  const Evaluation evaluation = evaluate(document);
  for (const Verdict& verdict : evaluation.verdicts) {
    require(!verdict.value || std::isfinite(*verdict.value), "a value that is no number");
    require(verdict.status != Status::not_judged || !verdict.reason.empty(),
            "no judgement and no reason");
  }
  (void)store_results(document, evaluation);
  for (const Computed& result : evaluate(document).results) {
    require(!result.is_stored_wrong, "a stored result that disagrees");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  judge(text);
  for (const char* odd : {"0", "1", "100", "NaN", "INF", "1e308", "-1e-308"}) {
    judge(with_odd_numbers(text, odd));
  }
  return 0;
}
