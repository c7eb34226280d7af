#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What `korvel-todayctl check` can find. Every kind of finding has a row in one table (Finding.cpp), which
// the page docs/check.md repeats.
namespace ctl {

// The worst first.
enum class Severity {
    Ends,  // the panel would end
    Loses, // an action would be lost: not logged, logged without effect on the feed, or not told to the host
    Degrades, // something is not shown, or not as it is meant, or another program cannot read it
    Note      // worth knowing
};
inline constexpr Severity severities[] = {Severity::Ends, Severity::Loses, Severity::Degrades,
                                          Severity::Note};

enum class Fault {
    // the container
    ContainerMissing,
    // the feed
    FeedMissing,
    FeedUnreadable,
    FeedNoList,
    FeedNoArray,
    FeedExpands,
    FeedNoXmlForm,
    FeedNotReplaceable,
    // its records
    RecordNoDictionary,
    KeyMissing,
    KeyOfOtherKind,
    PlanKeyMissing,
    PlanKeyOfOtherKind,
    KeyNotReady,
    PlanKeySurrogate,
    DateNotANumber,
    DuplicateRecord,
    // the settings
    SettingsUnreadable,
    SettingsNoList,
    SettingsNoDictionary,
    SettingsExpand,
    SettingsNoXmlForm,
    SettingsNotReplaceable,
    SettingOfOtherKind,
    AccountKeyUnusable,
    AccountKeyLeadsOut,
    AccountKeyNoName,
    ListHidden,
    // days
    DayCountOverflow,
    CalendarNoDate,
    DayCountCut,
    // the action log
    LogUnreadable,
    LogNoList,
    LogNoArray,
    LogEmptyFile,
    LogExpands,
    LogNoXmlForm,
    LogNotReplaceable,
    LogRecordUnknown,
    // values that XML readers do not read as they were
    NotPortable,
    // icons
    GlyphMissing,
    GlyphBroken,
    GlyphTooLarge,
    GlyphNoPng,
    GlyphNotReady,
    PictureNotShown,
    // files and folders
    WritableByOthers,
    OwnedByOther,
    HardLinked,
    LinkDangles,
    LinkLoops,
    LinkLeadsOut,
    LeftoverClaim,
    LeftoverTooLarge,
    LeftoverTemporary,
    // the host application's URLs
    NoOpener,
    NoHandler,
    HandlerUnusable,
    HandlerWithoutUrl,
    OtherSpellingMissing,
    Count_
};

// A row of the table.
struct FaultKind {
    Fault fault;
    std::string_view name; // lower camel case; stable, for programs
    Severity severity;
    std::string_view consequence; // what the panel does about it
    std::string_view remedy;      // what mends it
};

[[nodiscard]] std::span<const FaultKind> faultKinds();
[[nodiscard]] const FaultKind& kindOf(Fault fault);

struct Place {
    std::string file;                       // a path; empty where the finding is about no file
    std::optional<std::size_t> record = {}; // from 1
    std::string key = {};                   // UTF-8, a lone surrogate in its three-byte form
};

struct Finding {
    Fault fault;
    Severity severity; // that of the kind, or less while the list is hidden
    Place place;
    std::string wrong;       // a sentence without a full stop
    std::string consequence; // that of the kind, or what keeps it off
};

// What was found, in the order in which it was found. Of one kind only so many are kept, the others are
// counted: a feed of a hundred thousand records may have the same fault in each.
class Findings final {
public:
    static constexpr std::size_t limit = 1000;

    void add(Fault fault, Place place, std::string wrong);

    // While the list is hidden the panel reads neither feed nor icons, and no row can be acted on: what is
    // found about them ends nothing and loses nothing.
    void setAboutHiddenList(bool isHidden) { isAboutHiddenList_ = isHidden; }

    [[nodiscard]] const std::vector<Finding>& all() const { return findings_; }
    // How many of a kind were found and not kept.
    [[nodiscard]] std::size_t more(Fault fault) const;
    // How many were found of a severity, whether kept or not.
    [[nodiscard]] std::size_t count(Severity severity) const;

private:
    std::vector<Finding> findings_;
    std::map<Fault, std::size_t> countsOfFaults_;
    std::map<Severity, std::size_t> countsOfSeverities_;
    bool isAboutHiddenList_ = false;
};

} // namespace ctl
