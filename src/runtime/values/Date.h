#pragma once

#include <cstdint>

#include "runtime/core/Object.h"
#include "runtime/text/String.h"

namespace vx {

// A moment in time, held as seconds since 1970-01-01 00:00:00 GMT, with the
// offset from GMT in hours under which its calendar fields are read.
class Date : public Object {
public:
    // The present moment, in the machine's time zone.
    Date();
    // The moment that these calendar fields name at the given offset from GMT.
    // Fields out of their range carry over, as a month of 13 is January of the next year.
    Date(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute, int64_t second,
         double gmtOffset);

    double TotalSeconds() const { return totalSeconds_; }
    void TotalSeconds(double seconds) { totalSeconds_ = seconds; }

    // "YYYY-MM-DD HH:MM:SS" at GMTOffset; the text a Date gives as a Variant.
    String SQLDateTime() const;

    // Hours from GMT; changing it keeps the moment and moves the calendar fields.
    double GMTOffset = 0;

private:
    double totalSeconds_ = 0;
};

}  // namespace vx
