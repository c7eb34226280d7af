#include "bridge/sources/GnuCashBook.h"

#include "bridge/sources/GnuCashElement.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace bridge {

namespace {

using Period = GnuCashRecurrence::Period;

constexpr std::size_t mostPlans = 10'000;
constexpr std::size_t mostRecurrences = 100;

constexpr std::pair<std::string_view, Period> periods[] = {{"once", Period::Once},
                                                           {"day", Period::Day},
                                                           {"week", Period::Week},
                                                           {"month", Period::Month},
                                                           {"end of month", Period::EndOfMonth},
                                                           {"nth weekday", Period::NthWeekday},
                                                           {"last weekday", Period::LastWeekday},
                                                           {"year", Period::Year}};
constexpr std::pair<std::string_view, WeekendMove> moves[] = {{"", WeekendMove::None},
                                                              {"none", WeekendMove::None},
                                                              {"back", WeekendMove::Before},
                                                              {"forward", WeekendMove::After}};

class BookReader final {
public:
    explicit BookReader(std::string_view xml)
        : reader_(QByteArray::fromRawData(xml.data(), static_cast<qsizetype>(xml.size()))) {
        reader_.setNamespaceProcessing(false);
    }

    GnuCashBook read() {
        if (enterRoot())
            while (reader_.readNextStartElement()) {
                if (reader_.qualifiedName() == QLatin1String("gnc:book"))
                    readBook();
                else
                    reader_.skipCurrentElement();
            }
        while (!reader_.atEnd())
            reader_.readNext();
        if (reader_.hasError())
            return faulty(fault_.empty() ? faultOfReader() : fault_);
        if (books_ != 1)
            return faulty("is no book of GnuCash");
        return std::move(book_);
    }

private:
    static GnuCashBook faulty(std::string fault) {
        GnuCashBook book;
        book.fault = std::move(fault);
        return book;
    }

    [[nodiscard]] std::string faultOfReader() const {
        const std::string line = std::to_string(reader_.lineNumber());
        switch (reader_.error()) {
        case QXmlStreamReader::PrematureEndOfDocumentError:
            return "is cut off at line " + line;
        case QXmlStreamReader::CustomError:
            return "is damaged at line " + line + ": " + reader_.errorString().toStdString();
        default:
            return "is damaged at line " + line + ": it is no well-formed XML";
        }
    }

    void failWhole(const std::string& sentence) {
        if (reader_.hasError())
            return;
        fault_ = sentence;
        reader_.raiseError();
    }

    bool enterRoot() {
        while (!reader_.atEnd() && !reader_.isStartElement()) {
            reader_.readNext();
            if (reader_.isDTD() && reader_.text().contains(QLatin1Char('[')))
                fail(reader_, "its document type declares entities or elements");
        }
        if (reader_.isStartElement() && reader_.qualifiedName() != QLatin1String("gnc-v2"))
            failWhole("is no book of GnuCash: it begins with <" +
                      reader_.qualifiedName().toString().toStdString() + ">");
        return !reader_.hasError();
    }

    void requireVersion() {
        const QString version = reader_.attributes().value(QLatin1String("version")).toString();
        if (version != QLatin1String("2.0.0"))
            failWhole("was saved by another version of GnuCash: its <" +
                      reader_.qualifiedName().toString().toStdString() + "> is of version \"" +
                      version.toStdString() + "\", and only 2.0.0 can be read");
    }

    void readBook() {
        ++books_;
        requireVersion();
        while (reader_.readNextStartElement()) {
            if (reader_.qualifiedName() == QLatin1String("gnc:account"))
                readAccount();
            else if (reader_.qualifiedName() == QLatin1String("gnc:template-transactions"))
                readTemplates();
            else if (reader_.qualifiedName() == QLatin1String("gnc:schedxaction"))
                readPlan();
            else if (reader_.qualifiedName() == QLatin1String("book:slots"))
                readFeatures(readElement(reader_));
            else
                reader_.skipCurrentElement();
        }
    }

    void readFeatures(const GnuCashElement& slots) {
        for (const GnuCashElement& slot : slots.children) {
            const GnuCashElement* const value = slot.find("slot:value");
            if (slot.textOf("slot:key") != "features" || !value)
                continue;
            for (const GnuCashElement& feature : value->children)
                book_.features.push_back(feature.textOf("slot:key"));
        }
    }

    void readAccount() {
        const GnuCashElement element = readElement(reader_);
        const std::string id = element.neededText("act:id", reader_);
        GnuCashAccount account{element.textOf("act:name"), element.neededText("act:type", reader_),
                               element.textOf("act:parent"), "", 100};
        if (const GnuCashElement* const commodity = element.find("act:commodity"))
            account.currency = commodity->textOf("cmdty:id");
        account.smallest = element.integerOf("act:commodity-scu", reader_).value_or(account.smallest);
        if (!book_.accounts.emplace(id, std::move(account)).second)
            fail(reader_, "two accounts have the id " + id);
    }

    void readTemplates() {
        while (reader_.readNextStartElement()) {
            if (reader_.qualifiedName() == QLatin1String("gnc:transaction"))
                readTemplate(readElement(reader_));
            else
                reader_.skipCurrentElement();
        }
    }

    void readTemplate(const GnuCashElement& transaction) {
        const GnuCashElement* const commodity = transaction.find("trn:currency");
        const GnuCashElement* const splits = transaction.find("trn:splits");
        if (!commodity || !splits)
            return fail(reader_, "a template has no currency or no splits");
        for (const GnuCashElement& split : splits->children) {
            GnuCashTemplate& known = book_.templates[split.neededText("split:account", reader_)];
            if (known.description.empty())
                known.description = transaction.textOf("trn:description");
            readSplit(split, commodity->neededText("cmdty:id", reader_), known);
        }
    }

    void readSplit(const GnuCashElement& split, const std::string& currency, GnuCashTemplate& known) {
        const GnuCashElement* const slots = split.find("split:slots");
        for (const GnuCashElement& slot : slots ? slots->children : std::vector<GnuCashElement>()) {
            const GnuCashElement* const frame = slot.find("slot:value");
            if (slot.textOf("slot:key") != "sched-xaction" || !frame)
                continue;
            GnuCashSplit read{"", currency, {}, {}};
            for (const GnuCashElement& entry : frame->children)
                readEntry(entry.textOf("slot:key"), entry.textOf("slot:value"), read);
            if (read.account.empty())
                return fail(reader_, "a template's split has no account");
            known.splits.push_back(std::move(read));
        }
    }

    void readEntry(const std::string& key, const std::string& value, GnuCashSplit& split) {
        if (key == "account")
            split.account = value;
        else if (key == "debit-formula")
            split.debit.formula = value;
        else if (key == "credit-formula")
            split.credit.formula = value;
        else if (key == "debit-numeric" || key == "credit-numeric")
            (key == "debit-numeric" ? split.debit : split.credit).fraction = fractionOf(value);
    }

    std::string fractionOf(const std::string& value) {
        if (value.empty() || value.find_first_not_of("-0123456789/") != std::string::npos)
            fail(reader_, "\"" + value.substr(0, 40) + "\" is no fraction");
        return value;
    }

    void readPlan() {
        requireVersion();
        const GnuCashElement element = readElement(reader_);
        GnuCashPlan plan;
        plan.id = element.neededText("sx:id", reader_);
        plan.name = element.textOf("sx:name");
        plan.account = element.neededText("sx:templ-acct", reader_);
        plan.isEnabled = element.textOf("sx:enabled") != "n";
        readSchedule(element, plan.schedule);
        if (!ids_.insert(plan.id).second)
            fail(reader_, "two plans have the id " + plan.id);
        if (book_.plans.size() == mostPlans)
            failWhole("has more than " + std::to_string(mostPlans) + " plans");
        book_.plans.push_back(std::move(plan));
    }

    void readSchedule(const GnuCashElement& element, GnuCashSchedule& schedule) {
        const auto start = element.dayOf("sx:start", reader_);
        if (!start)
            fail(reader_, "a plan has no first day");
        schedule.start = start.value_or(Day());
        schedule.end = element.dayOf("sx:end", reader_);
        schedule.state = {element.dayOf("sx:last", reader_), element.integerOf("sx:rem-occur", reader_)};
        for (const GnuCashElement& child : element.children)
            if (child.name == "sx:deferredInstance")
                schedule.postponed.push_back(
                    {child.dayOf("sx:last", reader_), child.integerOf("sx:rem-occur", reader_)});
        std::sort(schedule.postponed.begin(), schedule.postponed.end(),
                  [](const GnuCashState& a, const GnuCashState& b) { return a.last < b.last; });
        if (const GnuCashElement* const recurrences = element.find("sx:schedule"))
            for (const GnuCashElement& recurrence : recurrences->children)
                schedule.recurrences.push_back(recurrenceOf(recurrence));
        if (schedule.recurrences.empty() ||
            std::max(schedule.recurrences.size(), schedule.postponed.size()) > mostRecurrences)
            fail(reader_, "a plan has no recurrences, or more than " + std::to_string(mostRecurrences));
    }

    GnuCashRecurrence recurrenceOf(const GnuCashElement& element) {
        GnuCashRecurrence recurrence;
        recurrence.period = valueOf(periods, element.textOf("recurrence:period_type"), Period::Once);
        recurrence.move = valueOf(moves, element.textOf("recurrence:weekend_adj"), WeekendMove::None);
        const auto start = element.dayOf("recurrence:start", reader_);
        recurrence.every = element.integerOf("recurrence:mult", reader_).value_or(0);
        if (!start || (recurrence.every < 1 && recurrence.period != Period::Once))
            fail(reader_, "a recurrence has no first day or no count of periods");
        recurrence.start = start.value_or(Day());
        return recurrence;
    }

    template <class Rows, class Value>
    Value valueOf(const Rows& rows, const std::string& name, Value other) {
        const auto* const found = std::find_if(std::begin(rows), std::end(rows),
                                               [&](const auto& row) { return row.first == name; });
        if (found != std::end(rows))
            return found->second;
        fail(reader_, "a recurrence is of an unknown kind (\"" + name.substr(0, 40) + "\")");
        return other;
    }

    QXmlStreamReader reader_;
    GnuCashBook book_;
    int books_ = 0;
    std::set<std::string> ids_; // of plans
    std::string fault_;         // one that is not of a line
};

} // namespace

GnuCashBook readGnuCashBook(std::string_view xml) {
    return BookReader(xml).read();
}

} // namespace bridge
