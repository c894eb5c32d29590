// How fast the JSON engine reads and writes a realistic document of about
// 10 MB, next to a widely used C++ JSON library doing the same work on the
// same data. At the end the time of each operation is printed as a ratio to
// the library's.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "json/JSONItem.h"

namespace vx {
namespace {

constexpr std::size_t documentBytes = 10 * 1024 * 1024;

// Builds records that look like an export of user accounts: nested objects,
// arrays, integers, fractions, booleans, nulls, and strings that carry URLs,
// quotes, control characters and text in several scripts.
class DocumentGenerator {
public:
    nlohmann::json make(std::size_t targetBytes) {
        nlohmann::json records = nlohmann::json::array();
        std::size_t size = 0;
        for (int64_t id = 0; size < targetBytes; ++id) {
            nlohmann::json record = makeRecord(id);
            size += record.dump().size() + 1;
            records.push_back(std::move(record));
        }
        return nlohmann::json{{"generated", "2024-05-06T07:08:09Z"},
                              {"count", records.size()},
                              {"records", std::move(records)}};
    }

private:
    nlohmann::json makeRecord(int64_t id) {
        const std::string user = "user" + std::to_string(id);
        nlohmann::json history = nlohmann::json::array();
        for (int i = pick(1, 6); i > 0; --i) {
            history.push_back({{"date", "2024-0" + std::to_string(pick(1, 9)) + "-1" +
                                            std::to_string(pick(0, 9))},
                               {"amount", fraction(-500, 500)},
                               {"note", phrase()}});
        }
        nlohmann::json tags = nlohmann::json::array();
        for (int i = pick(0, 4); i > 0; --i) {
            tags.push_back(words_[static_cast<std::size_t>(pick(0, wordCount - 1))]);
        }
        return {
            {"id", id},
            {"uid", std::to_string(4000000000LL + id)},
            {"name", phrase()},
            {"email", user + "@example.com"},
            {"homepage", "https://www.example.com/people/" + user + "/index.html"},
            {"active", pick(0, 1) == 1},
            {"score", fraction(0, 100)},
            {"visits", pick(0, 1000000)},
            {"manager", nullptr},
            {"tags", std::move(tags)},
            {"address",
             {{"street", std::to_string(pick(1, 300)) + " " + phrase()},
              {"city", words_[static_cast<std::size_t>(pick(0, wordCount - 1))]},
              {"zip", std::to_string(pick(10000, 99999))},
              {"geo", {{"lat", fraction(-90, 90)}, {"lng", fraction(-180, 180)}}}}},
            {"bio", phrase() + "\n\t\"" + phrase() + "\" \\ " + phrase()},
            {"history", std::move(history)},
        };
    }

    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    double fraction(int low, int high) {
        // Two decimals, as amounts and coordinates usually have.
        return static_cast<double>(pick(low * 100, high * 100)) / 100.0;
    }

    std::string phrase() {
        std::string text;
        for (int i = pick(2, 7); i > 0; --i) {
            if (!text.empty()) {
                text += ' ';
            }
            text += words_[static_cast<std::size_t>(pick(0, wordCount - 1))];
        }
        return text;
    }

    static constexpr int wordCount = 16;
    const char* words_[wordCount] = {
        "alpha",  "Zürich",      "naïve",   "café", "東京",   "データ", "Ελλάδα",  "résumé",
        "Straße", "north/south", "o'clock", "tab",  "Москва", "señor",  "ünïcødé", "done",
    };
    std::mt19937 random_{20240506};
};

Ref<JSONItem> toItem(const nlohmann::json& value);

Variant toVariant(const nlohmann::json& value) {
    switch (value.type()) {
        case nlohmann::json::value_t::null:
            return Variant();
        case nlohmann::json::value_t::boolean:
            return Variant(value.get<bool>());
        case nlohmann::json::value_t::number_integer:
        case nlohmann::json::value_t::number_unsigned:
            return Variant(value.get<int64_t>());
        case nlohmann::json::value_t::number_float:
            return Variant(value.get<double>());
        case nlohmann::json::value_t::string:
            return Variant(String(value.get<std::string>(), nullptr));
        default:
            return Variant(toItem(value));
    }
}

Ref<JSONItem> toItem(const nlohmann::json& value) {
    auto item = New<JSONItem>();
    if (value.is_array()) {
        for (const auto& element : value) {
            item->Append(toVariant(element));
        }
    } else {
        for (const auto& [name, member] : value.items()) {
            item->Value(String(name, nullptr), toVariant(member));
        }
    }
    return item;
}

// Both forms of one document, made once for the whole run.
struct Documents {
    nlohmann::json library;
    Ref<JSONItem> item;
    std::size_t compactBytes;
};

const Documents& documents() {
    static const Documents made = [] {
        nlohmann::json library = DocumentGenerator().make(documentBytes);
        Ref<JSONItem> item = toItem(library);
        const std::size_t bytes = library.dump().size();
        return Documents{std::move(library), std::move(item), bytes};
    }();
    return made;
}

void serialiseJSONItem(benchmark::State& state, bool compact) {
    const Ref<JSONItem>& item = documents().item;
    item->Compact = compact;
    for (auto _ : state) {
        benchmark::DoNotOptimize(item->ToString());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(documents().compactBytes));
}

void serialiseLibrary(benchmark::State& state, bool compact) {
    const nlohmann::json& library = documents().library;
    for (auto _ : state) {
        benchmark::DoNotOptimize(library.dump(compact ? -1 : 2));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(documents().compactBytes));
}

BENCHMARK_CAPTURE(serialiseJSONItem, compact, true)
    ->Name("serialise/JSONItem")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(serialiseLibrary, compact, true)
    ->Name("serialise/nlohmann")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(serialiseJSONItem, pretty, false)
    ->Name("serialisePretty/JSONItem")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(serialiseLibrary, pretty, false)
    ->Name("serialisePretty/nlohmann")
    ->Unit(benchmark::kMillisecond);

// Prints the usual table, then for every operation measured both ways the
// engine's time as a multiple of the library's.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
                times_[run.benchmark_name()] = run.GetAdjustedCPUTime();
            }
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        for (const auto& [name, time] : times_) {
            const std::size_t slash = name.find("/JSONItem");
            if (slash == std::string::npos) {
                continue;
            }
            const auto other = times_.find(name.substr(0, slash) + "/nlohmann");
            if (other != times_.end() && other->second > 0) {
                std::printf("%-24s JSONItem / nlohmann = %.2f\n", name.substr(0, slash).c_str(),
                            time / other->second);
            }
        }
    }

private:
    std::map<std::string, double> times_;
};

}  // namespace
}  // namespace vx

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    vx::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
