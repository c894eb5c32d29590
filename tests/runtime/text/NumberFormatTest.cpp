#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include "runtime/text/NumberFormat.h"

namespace vx {
namespace {

constexpr const char* kDecimalMask = "-0.0##############";

TEST(FormatNumber, masks_roundToTheirDecimalPlaces) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const std::pair<double, const char*> decimal[] = {
        {0.5, "0.5"},        {0.9999999999999999, "1.0"},
        {-2, "-2.0"},        {1234567.891, "1234567.891"},
        {1e-7, "0.0000001"}, {1e-15, "0.000000000000001"},
        {0.1 + 0.2, "0.3"},  {0.1234567890123456, "0.123456789012346"},
        {-0.0, "0.0"},       {1e21, "1000000000000000000000.0"},
        {-1e-16, "0.0"},     {nan, "nan"},
    };
    for (const auto& [value, expected] : decimal) {
        EXPECT_EQ(FormatNumber(value, kDecimalMask, false).bytes(), expected) << value;
    }
    const std::tuple<double, const char*, const char*> masked[] = {
        {0.5, "0", "1"},           {2.5, "0", "3"},         {99.5, "0", "100"},
        {-0.4, "0", "0"},          {-0.5, "0", "-1"},       {3.14159, "#.##", "3.14"},
        {0.5, "#.##", ".5"},       {1.005, "0.00", "1.01"}, {7, "000", "007"},
        {5, "0.##", "5"},          {-5, "x-0", "x-5"},      {5, "x-0", "x5"},
        {42, "(0) kg", "(42) kg"}, {0.5, "", "0.5"},        {1e21, "", "1e+21"},
        {-inf, "0", "-inf"},
    };
    for (const auto& [value, mask, expected] : masked) {
        EXPECT_EQ(FormatNumber(value, mask, false).bytes(), expected) << value << " with " << mask;
    }
}

TEST(Str, integer_plainOrThroughMask) {
    EXPECT_EQ(Str(std::numeric_limits<int64_t>::min(), "").bytes(), "-9223372036854775808");
    EXPECT_EQ(Str(int64_t{-2}, kDecimalMask).bytes(), "-2.0");
    EXPECT_EQ(Str(int64_t{12}, "0").bytes(), "12");
}

// Builds a locale whose decimal point is a comma in a scratch folder, so the
// test does not depend on what the machine has installed.
bool installCommaLocale() {
    const auto folder = std::filesystem::temp_directory_path() / "vx-number-format-locales";
    std::filesystem::create_directories(folder);
    const std::string command =
        "localedef -i de_DE -f UTF-8 '" + (folder / "de_DE.UTF-8").string() + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) {
        return false;
    }
    setenv("LOCPATH", folder.c_str(), 1);
    return std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
}

TEST(Format, userLocale_changesOnlyFormat) {
    if (!installCommaLocale()) {
        GTEST_SKIP() << "localedef could not build a comma locale on this machine";
    }
    const String formatted = Format(1.5, "0.0");
    const String stored = Str(int64_t{3}, "0.0");
    const String fromRoutine = FormatNumber(2.25, kDecimalMask, false);
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
    EXPECT_EQ(formatted.bytes(), "1,5");
    EXPECT_EQ(stored.bytes(), "3.0");
    EXPECT_EQ(fromRoutine.bytes(), "2.25");
    EXPECT_EQ(Format(12, "0").bytes(), "12");
    EXPECT_EQ(Format(1.5, "0.0").bytes(), "1.5");
}

}  // namespace
}  // namespace vx
