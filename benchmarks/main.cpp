// zelvora_bench [--json FILE] [options of Google Benchmark]: what routing costs, first in seconds
// on this machine, then as ratios, which hold on any; and how large the libraries are.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/json_write.h>
#include <benchmarks/library_sizes.h>
#include <benchmarks/ratios.h>

namespace {

using zelvora::bench::LibrarySize;
using zelvora::bench::Ratio;

const char* verdict(const Ratio& ratio) {
  if (ratio.holds(ratio.aim)) return "reaches its aim";
  return ratio.holds(ratio.must) ? "good enough" : "NOT GOOD ENOUGH";
}

void print(const std::vector<Ratio>& ratios) {
  std::printf("\n%-32s %10s %10s %10s\n", "ratio", "measured", "must be", "aim");
  for (const Ratio& ratio : ratios)
    std::printf("%-32s %10.2f %s %8g %10g  %s\n", ratio.name.c_str(), ratio.value,
                ratio.moreIsBetter ? ">=" : "<=", ratio.must, ratio.aim, verdict(ratio));
}

void print(const std::vector<LibrarySize>& sizes) {
  std::printf("\n%-32s %10s\n", "stripped library", "MB");
  for (const LibrarySize& size : sizes)
    std::printf("%-32s %10.2f\n", size.name.c_str(), size.megabytes);
}

/// {"ratios":{NAME:number},"strippedMegabytes":{NAME:number}}
bool write(const std::vector<Ratio>& ratios, const std::vector<LibrarySize>& sizes,
           const char* file) {
  std::string text;
  zelvora::JsonWriter out(text);
  out.beginObject();
  out.key("ratios");
  out.beginObject();
  for (const Ratio& ratio : ratios) out.member(ratio.name, ratio.value);
  out.endObject();
  out.key("strippedMegabytes");
  out.beginObject();
  for (const LibrarySize& size : sizes) out.member(size.name, size.megabytes);
  out.endObject();
  out.endObject();
  return static_cast<bool>(std::ofstream(file) << text << '\n' << std::flush);
}

/// Takes `--json FILE` out of the arguments; null when it is not there.
const char* takeJsonFile(std::vector<char*>& arguments) {
  for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
    if (std::string_view(arguments[i]) != "--json") continue;
    const char* const file = arguments[i + 1];
    const auto at = arguments.begin() + static_cast<std::ptrdiff_t>(i);
    arguments.erase(at, at + 2);
    return file;
  }
  return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  const char* const jsonFile = takeJsonFile(arguments);
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

  benchmark::RunSpecifiedBenchmarks();
  const std::vector<Ratio> ratios = zelvora::bench::measureRatios();
  print(ratios);
  const std::vector<LibrarySize> sizes = zelvora::bench::librarySizes();
  print(sizes);
  if (jsonFile == nullptr || write(ratios, sizes, jsonFile)) return EXIT_SUCCESS;
  std::fprintf(stderr, "zelvora_bench: cannot write %s\n", jsonFile);
  return EXIT_FAILURE;
}
