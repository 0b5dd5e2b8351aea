// KZTime.h - points in time with a fixed German daylight-saving rule.
//
// A KZTime is one unsigned 32-bit count of seconds since 1 January 1901
// 00:00:00 UTC; 0 is the null time (what constructors yield for invalid
// input). Counts beyond the range simply wrap.
//
// Local time: the zone offset is CrossPlatformApi::timezone() - the offset in
// force at the moment of the call, daylight saving included - and on top of it
// this class applies its own fixed summer-time rule (BeginDST, EndDST, IsDST).
// The same clock reading therefore converts one hour differently when the
// machine is on summer time; that is how existing data was written and is kept
// for compatibility.
//
// PrintDateFlag is process-wide and unguarded (set it at start-up); everything
// else works on the value and the zone information and may run on any thread.
#ifndef KZ_TIME_H
#define KZ_TIME_H

#include "KZDate.h"
#include "KZExport.h"

#include <cstdint>
#include <iosfwd>
#include <string>

class KZBS_API KZTime {
public:
    // --- Construction ----------------------------------------------------------

    // Now, read through CrossPlatformApi::now(), so a test can pin it.
    KZTime();
    // The moment the local clock shows hour:minute:second on `date`. Null for
    // the null date and for a clock time skipped when summer time begins; the
    // hour shown twice when it ends is taken as standard time.
    KZTime(const KZDate& date, unsigned hour, unsigned minute, unsigned second);
    // The same on today's local date.
    KZTime(unsigned hour, unsigned minute, unsigned second);

    // 1 January 1901, the day of second 0.
    static KZDate RefDate;
    // 5 February 2037, the last day wholly inside the 32-bit range.
    static KZDate MaxDate;
    // RefDate <= date <= MaxDate.
    static bool AssertDate(const KZDate& date);

    // --- Daylight saving -------------------------------------------------------

    // hour:00 on `date` with the current zone offset added, wrapping.
    static std::uint32_t BuildLocal(const KZDate& date, unsigned hour);
    // Last Sunday of March, BuildLocal(.., 2).
    static std::uint32_t BeginDST(unsigned year);
    // Last Sunday of October, BuildLocal(.., 1): one clock hour earlier than
    // the start (kept for compatibility).
    static std::uint32_t EndDST(unsigned year);
    // BeginDST <= seconds < EndDST of the UTC year; false when the zone has no
    // daylight saving.
    bool IsDST() const;

    // --- Parts -----------------------------------------------------------------

    // The count local clock readings derive from: seconds minus the zone
    // offset, plus an hour when that count is in summer time.
    std::uint32_t LocalSecs() const;
    unsigned Hour() const;
    unsigned Minute() const;
    unsigned HourGMT() const;
    unsigned MinuteGMT() const;
    unsigned Second() const;

    // --- Comparison --------------------------------------------------------------

    // Sign of (this - other) as a signed 32-bit difference: two times more
    // than about 68 years apart compare in reverse (kept for compatibility).
    int CompareTo(const KZTime& other) const;
    unsigned Hash() const { return m_secs; }
    std::uint32_t Max(const KZTime& other) const;
    std::uint32_t Min(const KZTime& other) const;

    // --- time_t ------------------------------------------------------------------

    // Seconds since 1970; 0 for 1 January 1970 00:00:00 UTC and earlier
    // (and for the null time).
    long get_time_t() const;
    // Stores a time_t from 0 to 2117514495 (6 February 2037 06:28:15 UTC);
    // anything else gives the null time.
    void set_time_t(long t);

    // --- Text ------------------------------------------------------------------

    // Whether text output starts with the date (initially 1).
    static int PrintDateFlag;
    // Sets PrintDateFlag, returns its previous value.
    static int PrintDate(int flag);
    // "[date ]h:mm:ss am|pm": a 12-hour clock without padding of the hour
    // (midnight shows 0, noon 12), the date as operator<<(KZDate) writes it.
    std::string asString() const;
    // Local time by strftime; "" means "%H:%M:%S". Times up to 1970 format as
    // the epoch. A text that does not fit 62 bytes gives "".
    std::string asFormatString(const std::string& format) const;

private:
    static bool isDstAt(std::uint32_t seconds);
    std::uint32_t m_secs;
};

static_assert(sizeof(KZTime) == 4, "a KZTime is exactly its second count");

// The text of asString(), written as one item (the target's width applies).
KZBS_API std::ostream& operator<<(std::ostream& out, const KZTime& time);

#endif // KZ_TIME_H
