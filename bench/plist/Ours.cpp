#include "Feed.h"

#include "platform/plist/Reader.h"
#include "platform/plist/RecordEditor.h"
#include "platform/plist/RecordReader.h"
#include "platform/plist/Writer.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace platform::plist;

namespace {

// A temporary file beside the target, then renamed over it.
class Replacement final {
public:
    explicit Replacement(const std::string& path)
        : path_(path)
        , temporary_(path + ".new")
        , file_(open(temporary_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)) {}
    bool append(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t written = ::write(file_, bytes.data(), bytes.size());
            if (written <= 0)
                std::abort();
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        return true;
    }
    void finish() {
        fsync(file_);
        close(file_);
        if (std::rename(temporary_.c_str(), path_.c_str()) != 0)
            std::abort();
    }

private:
    std::string path_;
    std::string temporary_;
    int file_;
};

constexpr std::array<std::string_view, 8> keys = {"date",   "name",    "image",  "amount",
                                                  "income", "expense", "planpk", "single"};

std::string textOf(const Dictionary& record, std::string_view key) {
    return std::string(*record.find(key)->string());
}

class Values final : public Writable {
public:
    explicit Values(const std::string& bytes)
        : value_(std::get<Value>(read(bytes))) {}
    void write(const std::string& path) override {
        Replacement file(path);
        file.append(writeXml(value_).value());
        file.finish();
    }

private:
    Value value_;
};

class Bytes final : public Writable {
public:
    explicit Bytes(std::string bytes)
        : bytes_(std::move(bytes)) {}
    void write(const std::string& path) override {
        Replacement file(path);
        file.append(bytes_);
        file.finish();
    }

private:
    std::string bytes_;
};

// What no writer that puts a list together line by line is spared.
class Lines final : public Writable {
public:
    explicit Lines(std::string bytes)
        : bytes_(std::move(bytes)) {
        for (std::size_t start = 0; start < bytes_.size();) {
            const std::size_t end = std::min(bytes_.find('\n', start), bytes_.size() - 1) + 1;
            lines_.push_back(std::string_view(bytes_).substr(start, end - start));
            start = end;
        }
    }
    void write(const std::string& path) override {
        Replacement file(path);
        std::string piece;
        piece.reserve(pieceSize);
        for (const std::string_view line : lines_) {
            if (piece.size() + line.size() > pieceSize) {
                file.append(piece);
                piece.clear();
            }
            piece.append(line);
        }
        file.append(piece);
        file.finish();
    }

private:
    static constexpr std::size_t pieceSize = 65536;
    std::string bytes_;
    std::vector<std::string_view> lines_;
};

} // namespace

Feed readOurs(std::string& bytes) {
    Feed feed;
    RecordReader reader(bytes, keys);
    while (const Record* const record = reader.next()) {
        FeedRecord& made = feed.emplace_back();
        made.date = *record->number(0);
        made.name = *record->string(1);
        made.image = *record->string(2);
        made.amount = *record->string(3);
        made.income = *record->truth(4);
        made.expense = *record->truth(5);
        made.planpk = *record->string(6);
        made.single = *record->truth(7);
    }
    if (!reader.isSound())
        std::abort();
    return feed;
}

Feed readOursAsTree(std::string& bytes) {
    Feed feed;
    const ReadResult result = read(bytes);
    for (const Value& element : *std::get<Value>(result).array()) {
        const Dictionary& record = *element.dictionary();
        feed.push_back({*numberOf(*record.find("date")), textOf(record, "name"), textOf(record, "image"),
                        textOf(record, "amount"), *truthOf(*record.find("income")),
                        *truthOf(*record.find("expense")), textOf(record, "planpk"),
                        *truthOf(*record.find("single"))});
    }
    return feed;
}

std::size_t writeOurText(const std::string& bytes) {
    return writeXml(std::get<Value>(read(bytes)))->size();
}

Writable* ourWritable(const std::string& bytes) {
    return new Values(bytes);
}
Writable* copyWritable(const std::string& bytes) {
    return new Bytes(bytes);
}
Writable* linesWritable(const std::string& bytes) {
    return new Lines(bytes);
}

// As Paid does it: the record of that plan and date goes.
std::string editOurs(const std::string& bytes, std::size_t place) {
    RecordEditor editor(bytes, keys);
    for (std::size_t i = 0; editor.next(); ++i)
        if (i == place)
            editor.drop();
    return editor.finish().value();
}
