#include "Container.h"

#include "Figures.h"
#include "exchange/SharedFiles.h"
#include "exchange/Text.h"
#include "model/GroupIdentifiers.h"
#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"
#include "platform/storage/Files.h"
#include "platform/storage/GroupContainers.h"

#include <QImage>

#include <fcntl.h>
#include <unistd.h>

namespace plist = platform::plist;

namespace {

constexpr const char* account = "anna";
constexpr int icons = 40; // as many as the feeds name
constexpr int iconSize = 36;

void require(bool condition, const char* what) {
    if (!condition)
        fail(what);
}

plist::Array arrayOf(const std::string& bytes) {
    plist::ReadResult result = plist::read(bytes);
    const auto* value = std::get_if<plist::Value>(&result);
    require(value && value->array(), "the feed is no array");
    return *value->array();
}

plist::Value logged(const plist::Value& record) {
    plist::Dictionary fields;
    fields.set("type", plist::Value(std::int64_t(1)));
    fields.set("pk", *record.dictionary()->find("planpk"));
    fields.set("date", *record.dictionary()->find("date"));
    fields.set("param", plist::Value(std::int64_t(0)));
    return plist::Value(std::move(fields));
}

std::string written(plist::Array records) {
    return plist::writeXml(plist::Value(std::move(records))).value();
}

void writeSynced(const std::string& path, const std::string& bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    require(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "write");
    require(fsync(file) == 0 && close(file) == 0, "fsync");
}

} // namespace

Container::Container(const std::string& folder, const std::string& feedFile)
    : folder_(folder + "/" + std::string(fullEditionGroupIdentifier))
    , feedPath_(exchange::feedFile(folder_))
    , logPath_(exchange::actionLogFile(exchange::accountFolder(folder_, account)))
    , feed_(contentOf(feedFile)) {
    platform::GroupContainers::setFolder(folder);
    const std::string preferences = folder_ + "/Library/Preferences";
    const std::string iconFolder = folder_ + "/" + account + "/icons";
    require(!platform::makeFolders(preferences) && !platform::makeFolders(iconFolder), "folders");
    plist::Dictionary settings;
    settings.set("account_pk", plist::Value(account));
    settings.set("show_transactions_count", plist::Value(std::int64_t(5)));
    writeSynced(preferences + "/" + std::string(fullEditionGroupIdentifier) + ".plist",
                plist::writeXml(plist::Value(std::move(settings))).value());
    QImage icon(iconSize, iconSize, QImage::Format_ARGB32);
    icon.fill(Qt::darkGreen);
    for (int i = 0; i < icons; ++i)
        require(icon.save(QString::fromStdString(iconFolder + "/icon_" + std::to_string(i) + ".png"), "PNG"),
                "icon");
    derive();
}

void Container::keepRecords(std::size_t count) {
    plist::Array records = arrayOf(feed_);
    records.resize(count);
    feed_ = written(std::move(records));
    derive();
}

void Container::derive() {
    const plist::Array records = arrayOf(feed_);
    plist::Array log;
    for (const plist::Value& record : records)
        log.push_back(logged(record));
    log_ = written(std::move(log));
    const plist::Dictionary& middle = *records[records.size() / 2].dictionary();
    middle_.planPrimaryKey = exchange::textFromUtf8(*middle.find("planpk")->string());
    middle_.date = *middle.find("date")->real();
    putBack();
}

void Container::putBack() const {
    writeSynced(feedPath_, feed_);
    writeSynced(logPath_, log_);
}

std::string contentOf(const std::string& path) {
    auto bytes = platform::readFile(path);
    require(bytes.has_value(), path.c_str());
    return std::move(*bytes);
}

void replaceBarely(const std::string& path, std::string_view bytes) {
    const std::size_t slash = path.rfind('/');
    const int folder = open(path.substr(0, slash).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int file = openat(folder, ".temporary", O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    require(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "write");
    require(fsync(file) == 0 && close(file) == 0, "fsync");
    require(renameat(folder, ".temporary", folder, path.c_str() + slash + 1) == 0, "rename");
    require(fsync(folder) == 0 && close(folder) == 0, "fsync of the folder");
}
