#pragma once

#include "model/TodayTransaction.h"
#include "platform/plist/Value.h"
#include "platform/system/Region.h"
#include "support/ManualClock.h"
#include "support/RegionOverride.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace exchange {

namespace plist = platform::plist;

// A container of the full edition's group in a scratch folder, on 10 March 2026 at 15:00 UTC. The process
// that a death test starts finds the same scratch folder, so that what it wrote can be looked at after its
// death.
class ExchangeTest : public testing::Test {
protected:
    ExchangeTest();
    ~ExchangeTest() override;

    // Paths below are relative to the container.
    [[nodiscard]] std::string path(const std::string& relative) const;
    void write(const std::string& relative, const std::string& bytes) const;
    void makeFolder(const std::string& relative) const;
    void remove(const std::string& relative) const;
    [[nodiscard]] std::optional<std::string> read(const std::string& relative) const;
    void removeContainer() const;

    void writeFeed(const std::vector<plist::Value>& records) const;
    [[nodiscard]] std::string feed() const { return read("notifications.xml").value_or("no feed"); }
    [[nodiscard]] std::string log() const { return read("-/actions.xml").value_or("no log"); }

    // Writes the settings file anew with these settings and no others.
    void setSettings(std::vector<std::pair<std::string, plist::Value>> settings) const;
    void breakSettings() const; // to what is no property list, so that the suite cannot be opened
    [[nodiscard]] plist::Dictionary settings() const;

    std::string scratch;
    std::string container;
    support::ManualClock clock;
    std::optional<support::RegionOverride> region;
};

// 2026-03-10 00:00 UTC.
inline constexpr double tenthOfMarch = 1773100800;
inline constexpr double hour = 3600;
inline constexpr double day = 24 * hour;

// The seconds since 1970 of a date and time in UTC.
[[nodiscard]] double utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0,
                         int second = 0);

// A whole feed record of a plan: an expense called "Rent".
[[nodiscard]] plist::Dictionary recordOf(const std::string& planKey, double date);
// The same with one key set to another value, or without it.
[[nodiscard]] plist::Value with(plist::Dictionary record, const std::string& key, plist::Value value);
[[nodiscard]] plist::Value without(plist::Dictionary record, const std::string& key);

// The transaction that recordOf's record is read as.
[[nodiscard]] TodayTransaction transactionOf(const std::string& planKey, double date);

// A file with an array as its root and these elements inside, in the XML form.
[[nodiscard]] std::string arrayFile(const std::string& elements);

} // namespace exchange
