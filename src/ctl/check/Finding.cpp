#include "ctl/check/Finding.h"

#include <iterator>
#include <utility>

namespace ctl {

namespace {

using enum Severity;

constexpr FaultKind kinds[] = {
    {Fault::ContainerMissing, "containerMissing", Ends,
     "the list is empty; an action on a row that is still shown ends the panel",
     "have the host application make the folder"},

    {Fault::FeedMissing, "feedMissing", Ends,
     "the list is empty; an action on a row that is still shown ends the panel, with the action logged",
     "have the host application write the feed, with an empty array where nothing is planned"},
    {Fault::FeedUnreadable, "feedUnreadable", Ends,
     "the list is empty; an action on a row that is still shown ends the panel, with the action logged",
     "let the user of the panel read the file, and make it a regular one of 1 GiB at most"},
    {Fault::FeedNoList, "feedNoList", Ends,
     "the list is empty; an action on a row that is still shown ends the panel, with the action logged",
     "write a property list, and rename it into place once it is whole"},
    {Fault::FeedNoArray, "feedNoArray", Ends,
     "the list is empty; an action on a row that is still shown ends the panel, with the action logged",
     "make the root an array of dictionaries"},
    {Fault::FeedExpands, "feedExpands", Loses, "the list is empty, and the feed cannot be rewritten",
     "write the texts and containers that are shared out, or fewer of them"},
    {Fault::FeedNoXmlForm, "feedNoXmlForm", Loses,
     "an action on any transaction is logged, but the feed stays and shows it again",
     "use no null, set, key that is no string, or date beyond the calendar, and no lone surrogate in a key"},
    {Fault::FeedNotReplaceable, "feedNotReplaceable", Loses,
     "an action is logged, but the feed stays and shows the transaction again",
     "let the user of the panel make files in the feed's folder, and leave the feed's name to a file"},

    {Fault::RecordNoDictionary, "recordNoDictionary", Ends, "the panel ends when it opens",
     "make every element of the array a dictionary"},
    {Fault::KeyMissing, "keyMissing", Ends, "the panel ends when it opens",
     "write all eight keys of every record"},
    {Fault::KeyOfOtherKind, "keyOfOtherKind", Ends, "the panel ends when it opens",
     "write a number for \"date\", a boolean or a number for \"income\", \"expense\" and \"single\", and "
     "strings for the others"},
    {Fault::PlanKeyMissing, "planKeyMissing", Ends,
     "an action on any transaction ends the panel, with the action logged",
     "write \"planpk\" in every record, also in those that are not shown yet"},
    {Fault::PlanKeyOfOtherKind, "planKeyOfOtherKind", Ends,
     "an action on any transaction ends the panel, with the action logged",
     "write a string for \"planpk\" in every record, also in those that are not shown yet"},
    {Fault::KeyNotReady, "keyNotReady", Degrades,
     "nothing yet; the panel ends as soon as the record is due within the days that are shown",
     "write all eight keys, each of its kind, before the record is due"},
    {Fault::PlanKeySurrogate, "planKeySurrogate", Loses,
     "the log names the plan without the surrogate, and the feed cannot be rewritten while the record stays",
     "use plan keys of whole characters"},
    {Fault::DateNotANumber, "dateNotANumber", Loses,
     "an action is logged, but no date equals this one, so that the transaction is shown again",
     "write the seconds since 1970-01-01 00:00 UTC"},
    {Fault::DuplicateRecord, "duplicateRecord", Note, "an action on one of them is done to both in the feed",
     "write each date of a plan once"},

    {Fault::SettingsUnreadable, "settingsUnreadable", Loses,
     "all settings count as absent: actions are logged in the folder \"-\", and requests to the host "
     "application are not written",
     "let the user of the panel read the file, and make it a regular one of 1 GiB at most"},
    {Fault::SettingsNoList, "settingsNoList", Loses,
     "no transaction is shown, the account is \"-\", and requests to the host application are not written",
     "write a property list, and rename it into place once it is whole"},
    {Fault::SettingsNoDictionary, "settingsNoDictionary", Loses,
     "no transaction is shown, the account is \"-\", and requests to the host application are not written",
     "make the root a dictionary"},
    {Fault::SettingsExpand, "settingsExpand", Loses, "requests to the host application are not written",
     "write the texts and containers that are shared out, or fewer of them"},
    {Fault::SettingsNoXmlForm, "settingsNoXmlForm", Loses, "requests to the host application are not written",
     "use no null, set, key that is no string, or date beyond the calendar"},
    {Fault::SettingsNotReplaceable, "settingsNotReplaceable", Loses,
     "requests to the host application are not written",
     "let the user of the panel make files in Library/Preferences, and leave the settings' name to a file"},
    {Fault::SettingOfOtherKind, "settingOfOtherKind", Degrades, "the value is converted, perhaps to 0",
     "write the kind of value that docs/formats.md names"},
    {Fault::AccountKeyUnusable, "accountKeyUnusable", Loses,
     "icons and log of the account that is meant are not used",
     "make \"account_pk\" a string that can be a file's name"},
    {Fault::AccountKeyLeadsOut, "accountKeyLeadsOut", Loses,
     "no icon is read and no action logged outside the container, unless the kernel has no Landlock",
     "make \"account_pk\" a single name"},
    {Fault::AccountKeyNoName, "accountKeyNoName", Degrades,
     "the key is used as it is: the account's folder is not one below the container",
     "make \"account_pk\" a single name"},
    {Fault::ListHidden, "listHidden", Note, "no transaction is shown, and the feed is not opened",
     "make \"show_transactions_count\" 0 or more where the list is wanted"},

    {Fault::DayCountOverflow, "dayCountOverflow", Ends, "the panel ends when it opens",
     "make \"notification_days_count\" a small number"},
    {Fault::CalendarNoDate, "calendarNoDate", Ends, "the panel ends when it opens, or when Later is chosen",
     "set the clock, and the locale of dates, to a day that the calendar has"},
    {Fault::DayCountCut, "dayCountCut", Degrades,
     "the days ahead are counted within this month, as is meant; transactions are shown up to another day",
     "nothing in the container: with the new month the days count again; a smaller count is not cut so "
     "early"},

    {Fault::LogUnreadable, "logUnreadable", Loses,
     "the next action starts the log anew where it can be replaced, and its records are lost",
     "let the user of the panel read the file, and make it one of 1 GiB at most"},
    {Fault::LogNoList, "logNoList", Loses, "the next action starts the log anew, and what is in it is lost",
     "write a property list, and rename it into place once it is whole"},
    {Fault::LogNoArray, "logNoArray", Loses, "the next action starts the log anew, and what is in it is lost",
     "make the root an array; an empty one once the actions are carried out"},
    {Fault::LogEmptyFile, "logEmptyFile", Note, "the next action starts the log anew",
     "empty a log by writing an empty array, or remove it"},
    {Fault::LogExpands, "logExpands", Loses, "no action can be logged",
     "write the texts and containers that are shared out, or fewer of them"},
    {Fault::LogNoXmlForm, "logNoXmlForm", Loses, "no action can be logged",
     "take out of the log what the panel has not written"},
    {Fault::LogNotReplaceable, "logNotReplaceable", Loses, "no action can be logged",
     "let the user of the panel make files in the account's folder, and leave the log's name to a file"},
    {Fault::LogRecordUnknown, "logRecordUnknown", Degrades,
     "the panel keeps the record; the host application may not know what to do with it",
     "take it out of the log"},

    {Fault::NotPortable, "notPortable", Degrades,
     "the panel reads it, and writes it as it was given; other readers of XML refuse the file or read "
     "another "
     "value",
     "leave the character out, or use a date of the years 1 to 9999"},

    {Fault::GlyphMissing, "glyphMissing", Ends, "the panel ends when it opens",
     "write the icon before the feed that names it"},
    {Fault::GlyphBroken, "glyphBroken", Ends, "the panel ends when it opens",
     "write a whole PNG file, and rename it into place"},
    {Fault::GlyphTooLarge, "glyphTooLarge", Ends, "the panel ends when it opens",
     "make the icon as large as it is shown"},
    {Fault::GlyphNoPng, "glyphNoPng", Degrades,
     "the icon is shown where the panel's toolkit reads this format; elsewhere the panel ends when it opens",
     "write a PNG file"},
    {Fault::GlyphNotReady, "glyphNotReady", Degrades,
     "nothing yet; the panel ends as soon as the record is due within the days that are shown",
     "write a whole PNG file before the record is due"},
    {Fault::PictureNotShown, "pictureNotShown", Degrades, "the row has no icon",
     "write a whole PNG file before the feed that names it"},

    {Fault::WritableByOthers, "writableByOthers", Degrades,
     "every user of this computer can change what is shown and logged, and can end the panel",
     "take the right to write from others (chmod o-w)"},
    {Fault::OwnedByOther, "ownedByOther", Degrades,
     "once the panel has replaced the file it belongs to the panel's user",
     "give it to the user of the panel and of the host application"},
    {Fault::HardLinked, "hardLinked", Degrades,
     "a file is replaced as a whole, so that its other names keep the old content",
     "let the file have one name"},
    {Fault::LinkDangles, "linkDangles", Degrades,
     "there is nothing to read; what the panel writes is made where the link leads, if there is a folder "
     "that it may write",
     "remove the link, or make what it leads to"},
    {Fault::LinkLoops, "linkLoops", Loses, "nothing can be read or written there", "remove the link"},
    {Fault::LinkLeadsOut, "linkLeadsOut", Degrades,
     "the panel follows the link only to what any program may read, unless the kernel has no Landlock",
     "put the file itself in its place"},
    {Fault::LeftoverClaim, "leftoverClaim", Degrades,
     "the panel does not look at it; it holds actions that were taken from the log and perhaps not carried "
     "out",
     "run korvel-todayctl consume, which prints them first"},
    {Fault::LeftoverTooLarge, "leftoverTooLarge", Degrades,
     "the panel does not look at it; it holds records that were too large to be printed",
     "look at it, then remove it"},
    {Fault::LeftoverTemporary, "leftoverTemporary", Note,
     "the panel does not look at it; a writer is at work, or was killed",
     "remove it once it is older than an hour"},

    {Fault::NoOpener, "noOpener", Loses,
     "Info, the add button and the last row cannot call the host application",
     "install gio (of GLib) or xdg-open (of xdg-utils)"},
    {Fault::NoHandler, "noHandler", Loses,
     "Info, the add button and the last row cannot call the host application",
     "name x-scheme-handler/korvelWidget and x-scheme-handler/korvelwidget in the host application's desktop "
     "entry, install it and run update-desktop-database"},
    {Fault::HandlerUnusable, "handlerUnusable", Loses,
     "Info, the add button and the last row cannot call the host application",
     "have the entry's Exec line start the host application"},
    {Fault::HandlerWithoutUrl, "handlerWithoutUrl", Degrades,
     "the host application is started without the URL, and learns from the settings alone what is asked for",
     "end the entry's Exec line with %u"},
    {Fault::OtherSpellingMissing, "otherSpellingMissing", Note,
     "nothing with the opener that is installed; one that looks for the other spelling finds no handler",
     "name both spellings in the host application's desktop entry"},
};

constexpr bool isInOrder() {
    for (std::size_t place = 0; place < std::size(kinds); ++place)
        if (kinds[place].fault != static_cast<Fault>(place))
            return false;
    return std::size(kinds) == static_cast<std::size_t>(Fault::Count_);
}
static_assert(isInOrder());

} // namespace

std::span<const FaultKind> faultKinds() {
    return kinds;
}

const FaultKind& kindOf(Fault fault) {
    return kinds[static_cast<std::size_t>(fault)];
}

void Findings::add(Fault fault, Place place, std::string wrong) {
    const FaultKind& kind = kindOf(fault);
    const bool isKeptOff = isAboutHiddenList_ && kind.severity < Degrades;
    const Severity severity = isKeptOff ? Degrades : kind.severity;
    ++countsOfSeverities_[severity];
    if (++countsOfFaults_[fault] > limit)
        return;
    std::string consequence = isKeptOff ? "nothing while the list is hidden; otherwise " : "";
    findings_.push_back(
        {fault, severity, std::move(place), std::move(wrong), consequence.append(kind.consequence)});
}

std::size_t Findings::more(Fault fault) const {
    const auto found = countsOfFaults_.find(fault);
    return found == countsOfFaults_.end() || found->second <= limit ? 0 : found->second - limit;
}

std::size_t Findings::count(Severity severity) const {
    const auto found = countsOfSeverities_.find(severity);
    return found == countsOfSeverities_.end() ? 0 : found->second;
}

} // namespace ctl
