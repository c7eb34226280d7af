#include "Feed.h"

#include <QXmlStreamReader>

#include <cstdlib>

namespace {

void take(FeedRecord& record, const QString& key, QXmlStreamReader& reader) {
    const bool isTrue = reader.name() == QLatin1StringView("true");
    const QString text = reader.readElementText();
    if (key == QLatin1StringView("date"))
        record.date = text.toDouble();
    else if (key == QLatin1StringView("name"))
        record.name = text.toStdString();
    else if (key == QLatin1StringView("image"))
        record.image = text.toStdString();
    else if (key == QLatin1StringView("amount"))
        record.amount = text.toStdString();
    else if (key == QLatin1StringView("income"))
        record.income = isTrue;
    else if (key == QLatin1StringView("expense"))
        record.expense = isTrue;
    else if (key == QLatin1StringView("planpk"))
        record.planpk = text.toStdString();
    else if (key == QLatin1StringView("single"))
        record.single = isTrue;
}

} // namespace

Feed readQt(std::string& bytes) {
    Feed feed;
    QXmlStreamReader reader(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    reader.readNextStartElement(); // plist
    reader.readNextStartElement(); // array
    while (reader.readNextStartElement()) {
        FeedRecord& record = feed.emplace_back();
        while (reader.readNextStartElement()) {
            const QString key = reader.readElementText();
            reader.readNextStartElement();
            take(record, key, reader);
        }
    }
    if (reader.hasError())
        std::abort();
    return feed;
}
