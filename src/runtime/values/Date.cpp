#include "runtime/values/Date.h"

#include <cmath>
#include <cstdio>
#include <ctime>

#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

constexpr int64_t secondsPerDay = 86400;

// Days from 1970-01-01 to the given day of the proleptic Gregorian calendar.
int64_t daysFromCivil(int64_t year, int64_t month, int64_t day) {
    year -= month <= 2 ? 1 : 0;
    const int64_t era = (year >= 0 ? year : year - 399) / 400;
    const int64_t yearOfEra = year - era * 400;
    const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

struct CivilDay {
    int64_t year;
    int64_t month;
    int64_t day;
};

CivilDay civilFromDays(int64_t days) {
    days += 719468;
    const int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const int64_t dayOfEra = days - era * 146097;
    const int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int64_t monthIndex = (5 * dayOfYear + 2) / 153;
    const int64_t day = dayOfYear - (153 * monthIndex + 2) / 5 + 1;
    const int64_t month = monthIndex + (monthIndex < 10 ? 3 : -9);
    return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

int64_t floorDiv(int64_t a, int64_t b) {
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

}  // namespace

Date::Date() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    totalSeconds_ = static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
    std::tm local{};
    localtime_r(&now.tv_sec, &local);
    GMTOffset = static_cast<double>(local.tm_gmtoff) / 3600.0;
}

Date::Date(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute, int64_t second,
           double gmtOffset)
    : GMTOffset(gmtOffset) {
    year += floorDiv(month - 1, 12);
    month = month - 1 - floorDiv(month - 1, 12) * 12 + 1;
    const int64_t localSeconds = daysFromCivil(year, month, 1) * secondsPerDay +
                                 ((day - 1) * secondsPerDay + hour * 3600 + minute * 60 + second);
    totalSeconds_ = static_cast<double>(localSeconds) - gmtOffset * 3600.0;
}

String Date::SQLDateTime() const {
    const auto local = static_cast<int64_t>(std::floor(totalSeconds_ + GMTOffset * 3600.0));
    const int64_t days = floorDiv(local, secondsPerDay);
    const int64_t secondOfDay = local - days * secondsPerDay;
    const CivilDay civil = civilFromDays(days);
    char text[64];
    const int length = std::snprintf(
        text, sizeof text, "%04lld-%02lld-%02lld %02lld:%02lld:%02lld",
        static_cast<long long>(civil.year), static_cast<long long>(civil.month),
        static_cast<long long>(civil.day), static_cast<long long>(secondOfDay / 3600),
        static_cast<long long>(secondOfDay / 60 % 60), static_cast<long long>(secondOfDay % 60));
    return String(std::string_view(text, static_cast<std::size_t>(length)), Encodings::UTF8);
}

}  // namespace vx
