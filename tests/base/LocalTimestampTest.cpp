#include "orderservice/base/LocalTimestamp.h"

#include "orderservice/base/Clock.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <future>
#include <string>
#include <vector>

namespace {

using utils::CLocalTimestamp;

/// The time zone of the process, replaced for as long as the object lives.
class CZone {
public:
    explicit CZone(const char* zone) {
        if (const char* given = std::getenv("TZ")) {
            m_strGiven = given;
            m_bGiven = true;
        }
        set(zone);
    }
    ~CZone() {
        if (m_bGiven)
            set(m_strGiven.c_str());
        else
            ::unsetenv("TZ");
        ::tzset();
    }
    /// Does not call tzset: the text of a moment must use the new zone even if nobody has called tzset.
    static void set(const char* zone) { ::setenv("TZ", zone, 1); }

private:
    std::string m_strGiven;
    bool m_bGiven = false;
};

/// The tested zones: an offset of half hours, daylight saving time in the north and in the south, and changes
/// that are not on a full hour or a quarter of an hour.
const char* const kZones[] = {"UTC0",
                              "CST-8",
                              "IST-5:30",
                              "EST5EDT,M3.2.0,M11.1.0",
                              "LHST-10:30LHDT-11,M10.1.0,M4.1.0",
                              "XST-1:07:13XDT,M3.2.0/0:01:05,M11.1.0/0:00:17"};

/// The text as Qt writes it.
std::string textOfQt(qint64 milliseconds) {
    return QDateTime::fromMSecsSinceEpoch(milliseconds)
        .toString(QStringLiteral("yyyy-MM-dd hh:mm:ss:zzz"))
        .toStdString();
}

int s_reads = 0;

std::tm countedFieldsOf(std::int64_t second) {
    ++s_reads;
    return utils::localFieldsOf(second);
}

TEST(LocalTimestamp, HasFixedDigits) {
    const CZone zone("UTC0");
    CLocalTimestamp timestamp;
    EXPECT_EQ(timestamp.textOf(0), "1970-01-01 00:00:00:000");
    EXPECT_EQ(timestamp.textOf(1767605405007), "2026-01-05 09:30:05:007");
    EXPECT_EQ(timestamp.textOf(-1), "1969-12-31 23:59:59:999");
}

TEST(LocalTimestamp, IsTheTextOfQtInEveryZoneAllYear) {
    constexpr qint64 kStart = 1767225600000; // 2026-01-01 in UTC
    constexpr qint64 kStep = 2713457;        // 45 minutes and some odd milliseconds
    constexpr qint64 kYear = 365LL * 24 * 3600 * 1000;
    for (const char* name : kZones) {
        const CZone zone(name);
        CLocalTimestamp timestamp;
        for (qint64 moment = kStart; moment < kStart + kYear; moment += kStep)
            ASSERT_EQ(timestamp.textOf(moment), textOfQt(moment)) << name << " " << moment;
    }
}

TEST(LocalTimestamp, ChangesToSummerTimeWithinTheMillisecond) {
    const CZone zone("EST5EDT,M3.2.0,M11.1.0");
    CLocalTimestamp timestamp;
    EXPECT_EQ(timestamp.textOf(1772953199999), "2026-03-08 01:59:59:999");
    EXPECT_EQ(timestamp.textOf(1772953200000), "2026-03-08 03:00:00:000");
}

TEST(LocalTimestamp, RepeatsTheHourAtTheEndOfSummerTime) {
    const CZone zone("EST5EDT,M3.2.0,M11.1.0");
    CLocalTimestamp timestamp;
    EXPECT_EQ(timestamp.textOf(1793512799999), "2026-11-01 01:59:59:999");
    EXPECT_EQ(timestamp.textOf(1793512800000), "2026-11-01 01:00:00:000");
}

TEST(LocalTimestamp, FollowsARuleThatIsNotOnAQuarterHour) {
    const CZone zone("XST-1:07:13XDT,M3.2.0/0:01:05,M11.1.0/0:00:17");
    CLocalTimestamp timestamp;
    // 2026-03-08 00:01:05 of the zone is 2026-03-07 22:53:52 in UTC.
    EXPECT_EQ(timestamp.textOf(1772924031999), "2026-03-08 00:01:04:999");
    EXPECT_EQ(timestamp.textOf(1772924032000), "2026-03-08 01:01:05:000");
}

TEST(LocalTimestamp, ReadsTheZoneOncePerSecond) {
    const CZone zone("CST-8");
    CLocalTimestamp timestamp(countedFieldsOf);
    s_reads = 0;
    for (qint64 moment = 1767605405000; moment < 1767605406000; ++moment)
        ASSERT_EQ(timestamp.textOf(moment), textOfQt(moment));
    EXPECT_EQ(s_reads, 1);
    timestamp.textOf(1767605406000);
    EXPECT_EQ(s_reads, 2);
}

TEST(LocalTimestamp, FollowsAClockThatIsSetBack) {
    const CZone zone("CST-8");
    CLocalTimestamp timestamp;
    for (const qint64 moment : {1767605406000, 1767605405999, 1767605406001, 1767600000000})
        EXPECT_EQ(timestamp.textOf(moment), textOfQt(moment));
}

TEST(LocalTimestamp, NextSecondHasTheNewZoneOfTheMachine) {
    const CZone zone("UTC0");
    CLocalTimestamp timestamp;
    EXPECT_EQ(timestamp.textOf(1767605405000), "2026-01-05 09:30:05:000");
    CZone::set("CST-8");
    EXPECT_EQ(timestamp.textOf(1767605406000), "2026-01-05 17:30:06:000");
}

TEST(LocalTimestamp, SystemClockGivesTheTimeOfTheMoment) {
    const CZone zone("IST-5:30");
    const std::string before = textOfQt(QDateTime::currentMSecsSinceEpoch());
    // Each thread keeps the text of a second, perhaps in the zone of an earlier test. A new thread has none.
    const std::string now = std::async(std::launch::async, [] { return utils::currentTimestamp(); }).get();
    const std::string after = textOfQt(QDateTime::currentMSecsSinceEpoch());
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(LocalTimestamp, InstalledClockReplacesTheSystemClock) {
    class CFixed : public utils::IClock {
        double time() override { return 0; }
        void sleep(double) override {}
        QDateTime currentDateTime() override { return {QDate(2026, 1, 5), QTime(9, 30, 0, 45)}; }
    } fixed;
    utils::installClock(&fixed);
    EXPECT_EQ(utils::currentTimestamp(), "2026-01-05 09:30:00:045");
    utils::installClock(nullptr);
}

} // namespace
