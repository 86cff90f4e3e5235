// What a coefficient costs: opening the coefficient file, searching the
// element's block, reading it, fitting, closing. Beside it, the bare reading of
// the same bytes from the page cache.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "attenuation/coefficientfile.h"
#include "attenuation/elementlist.h"
#include "base/unit.h"

namespace {

const std::string kFile(attenuation::kCoefficientFile);

float look_up(const base::Text<12>& name) {
  const base::UnitCloser closer(base::unit(1));
  attenuation::find_element<16>(name);
  return attenuation::attenuation_of(name, 122.0F);
}

void use_shipped_data() { std::filesystem::current_path(DATA_DIR); }

void BM_Lookup(benchmark::State& state, const char* name) {
  use_shipped_data();
  for (auto _ : state) benchmark::DoNotOptimize(look_up(name));
}
BENCHMARK_CAPTURE(BM_Lookup, first_element, "Hydrogen");
BENCHMARK_CAPTURE(BM_Lookup, last_element, "Lead");

void BM_TwelveComponents(benchmark::State& state) {
  use_shipped_data();
  const physics::ElementList elements = attenuation::read_element_list();
  for (auto _ : state) {
    float sum = 0.0F;
    for (int i = 1; i <= 12; ++i) sum += look_up(elements.ename(7 * i - 2));
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BM_TwelveComponents);

void BM_BareRead(benchmark::State& state) {
  use_shipped_data();
  std::vector<char> buffer(64 * 1024);
  for (auto _ : state) {
    const int fd = open(kFile.c_str(), O_RDONLY | O_CLOEXEC);
    while (read(fd, buffer.data(), buffer.size()) > 0) {
      benchmark::DoNotOptimize(buffer.data());
    }
    close(fd);
  }
}
BENCHMARK(BM_BareRead);

}  // namespace
