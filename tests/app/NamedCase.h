#pragma once

#include <concepts>
#include <ostream>
#include <string>

namespace vx::test {

// A table row that carries its own name: failures and test names show the name
// rather than the row's bytes.
template <class Case>
concept NamedCase = requires(const Case& c) {
    { c.name } -> std::convertible_to<const char*>;
};

template <NamedCase Case>
void PrintTo(const Case& testCase, std::ostream* out) {
    *out << testCase.name;
}

// Gives each parameterised test the name of its row.
inline constexpr auto CaseName = [](const auto& info) { return std::string(info.param.name); };

}  // namespace vx::test
