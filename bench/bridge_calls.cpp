// What a call through the flat interface costs, beside the same call on the class.
#include <benchmark/benchmark.h>

#include "bridge/zol_exports.h"
#include "bridge/zol_helpers.h"
#include "model/Zol.h"

namespace {

struct Objects {
  zol_v2::ColorSpaceRGBType rgb;
  zol_v2::Averaging averaging;
  zol_v2::Header header;
  zol_v2::Zol zol;

  Objects() {
    (void)rgb.set_Red(0.5);
    (void)averaging.set_Averaging(true);
    (void)header.set_Name(L"A name of thirty characters ...");
    for (int i = 0; i < 100; ++i) (void)zol.append_Color();
  }
};

Objects& objects() {
  static Objects all;
  return all;
}

// The compiler must neither keep the object in registers nor drop the call.
template <class T>
T* hidden(T& object) {
  T* pointer = &object;
  benchmark::DoNotOptimize(pointer);
  return pointer;
}

template <class Call>
void measure(benchmark::State& state, Call call) {
  for (auto _ : state) call();
}

void get_double_class(benchmark::State& state) {
  const auto* rgb = hidden(objects().rgb);
  measure(state, [=] { benchmark::DoNotOptimize(rgb->get_Red()); });
}
void get_double_flat(benchmark::State& state) {
  void* rgb = hidden(objects().rgb);
  measure(state, [=] { benchmark::DoNotOptimize(_CSharp_ColorSpaceRGBType_get_Red(rgb)); });
}
void set_double_class(benchmark::State& state) {
  auto* rgb = hidden(objects().rgb);
  measure(state, [=] { benchmark::DoNotOptimize(rgb->set_Red(0.25)); });
}
void set_double_flat(benchmark::State& state) {
  void* rgb = hidden(objects().rgb);
  measure(state, [=] { benchmark::DoNotOptimize(_CSharp_ColorSpaceRGBType_set_Red(rgb, 0.25)); });
}
void get_bool_class(benchmark::State& state) {
  const auto* averaging = hidden(objects().averaging);
  measure(state, [=] { benchmark::DoNotOptimize(averaging->get_Averaging()); });
}
void get_bool_flat(benchmark::State& state) {
  void* averaging = hidden(objects().averaging);
  measure(state, [=] { benchmark::DoNotOptimize(_CSharp_Averaging_get_Averaging(averaging)); });
}
void get_child_class(benchmark::State& state) {
  auto* zol = hidden(objects().zol);
  measure(state, [=] { benchmark::DoNotOptimize(&zol->get_Color(50)); });
}
void get_child_flat(benchmark::State& state) {
  void* zol = hidden(objects().zol);
  measure(state, [=] { benchmark::DoNotOptimize(_CSharp_Zol_get_Color__SWIG_0(zol, 50)); });
}
// A copy on both sides: a client that is not C++ cannot borrow a text.
void get_text_class(benchmark::State& state) {
  const auto* header = hidden(objects().header);
  measure(state, [=] {
    const std::wstring text = header->get_Name();
    benchmark::DoNotOptimize(text.data());
  });
}
void get_text_flat(benchmark::State& state) {
  void* header = hidden(objects().header);
  measure(state, [=] {
    char16_t* text = _CSharp_Header_get_Name(header);
    benchmark::DoNotOptimize(text);
    zol_text_free(text);
  });
}

}  // namespace

BENCHMARK(get_double_class);
BENCHMARK(get_double_flat);
BENCHMARK(set_double_class);
BENCHMARK(set_double_flat);
BENCHMARK(get_bool_class);
BENCHMARK(get_bool_flat);
BENCHMARK(get_child_class);
BENCHMARK(get_child_flat);
BENCHMARK(get_text_class);
BENCHMARK(get_text_flat);
BENCHMARK_MAIN();
