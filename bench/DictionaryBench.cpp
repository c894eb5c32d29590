// How Dictionary scales with the number of its keys, in the ways the JSON
// engine uses it: an array walked by place, filled by index, and shifted down
// by a removal at its front.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "runtime/text/Hex.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/values/Dictionary.h"

namespace vx {
namespace {

Ref<Dictionary> arrayOf(int64_t count) {
    auto table = New<Dictionary>();
    for (int64_t index = 0; index < count; ++index) {
        table->Value(index, index);
    }
    return table;
}

void walkByPlace(benchmark::State& state) {
    const Ref<Dictionary> table = arrayOf(state.range(0));
    for (auto _ : state) {
        for (int64_t place = 0; place < table->Count(); ++place) {
            benchmark::DoNotOptimize(table->Value(table->Key(place)));
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(walkByPlace)->RangeMultiplier(10)->Range(1000, 100000)->Complexity(benchmark::oN);

// After removals in the middle the first walk squeezes the holes out once;
// the walk as a whole must stay linear.
void walkByPlaceAfterRemovals(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const Ref<Dictionary> table = arrayOf(state.range(0));
        for (int64_t index = 0; index < state.range(0); index += 3) {
            table->Remove(index);
        }
        state.ResumeTiming();
        for (int64_t place = 0; place < table->Count(); ++place) {
            benchmark::DoNotOptimize(table->Key(place));
        }
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(walkByPlaceAfterRemovals)
    ->RangeMultiplier(10)
    ->Range(1000, 100000)
    ->Complexity(benchmark::oN);

// Object members are keyed by the hexadecimal form of their names.
void fillByName(benchmark::State& state) {
    std::vector<Variant> names;
    for (int64_t index = 0; index < state.range(0); ++index) {
        names.emplace_back(
            EncodeHex(String("member" + std::to_string(index), Encodings::UTF8), false));
    }
    for (auto _ : state) {
        Dictionary table;
        for (const Variant& name : names) {
            table.Value(name, name);
        }
        benchmark::DoNotOptimize(table.Count());
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(fillByName)->RangeMultiplier(10)->Range(1000, 100000)->Complexity(benchmark::oN);

// Removing the first element of an array moves every later value down one
// key and drops the last key: one read and one write per element.
void removeFirstOfArray(benchmark::State& state) {
    const Ref<Dictionary> table = arrayOf(state.range(0));
    for (auto _ : state) {
        const int64_t last = table->Count() - 1;
        const Variant first = table->Value(int64_t{0});
        for (int64_t index = 0; index < last; ++index) {
            table->Value(index, table->Value(index + 1));
        }
        table->Remove(last);
        table->Value(last, first);
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(removeFirstOfArray)->RangeMultiplier(10)->Range(1000, 100000)->Complexity(benchmark::oN);

}  // namespace
}  // namespace vx
