// How the string functions scale with the size of a file's whole content.
#include <benchmark/benchmark.h>

#include <string>

#include "runtime/text/EncodingConversion.h"
#include "runtime/text/StringFunctions.h"

namespace vx {
namespace {

String content(benchmark::State& state, const TextEncoding* encoding) {
    std::string bytes(static_cast<std::size_t>(state.range(0)), 'a');
    for (std::size_t i = 0; i < bytes.size(); i += 64) {
        bytes[i] = ':';
    }
    return String(std::move(bytes), encoding);
}

void lenOfContent(benchmark::State& state, const TextEncoding* encoding) {
    const String text = content(state, encoding);
    for (auto _ : state) {
        benchmark::DoNotOptimize(Len(text));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(lenOfContent, ascii, Encodings::ASCII)->Range(1 << 10, 1 << 24);
BENCHMARK_CAPTURE(lenOfContent, utf8, Encodings::UTF8)->Range(1 << 10, 1 << 24);

void replaceAllInContent(benchmark::State& state) {
    const String text = content(state, Encodings::UTF8);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ReplaceAll(text, ":", "/"));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(replaceAllInContent)->Range(1 << 10, 1 << 24);

void convertContentToUTF8(benchmark::State& state, const TextEncoding* from) {
    const String text = content(state, from);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ConvertEncoding(text, Encodings::UTF8));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(convertContentToUTF8, ascii, Encodings::ASCII)->Range(1 << 10, 1 << 24);
BENCHMARK_CAPTURE(convertContentToUTF8, utf16, Encodings::UTF16)->Range(1 << 10, 1 << 24);

}  // namespace
}  // namespace vx
