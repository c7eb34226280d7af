#pragma once

#include <array>
#include <deque>
#include <string>
#include <string_view>

// What every candidate reads a feed into, and how it does so.
struct FeedRecord {
    double date = 0;
    std::string name;
    std::string image;
    std::string amount;
    bool income = false;
    bool expense = false;
    std::string planpk;
    bool single = false;

    bool operator==(const FeedRecord&) const = default;
};

using Feed = std::deque<FeedRecord>; // grows without moving what it holds

// The bytes may be changed while they are read.
Feed readOurs(std::string& bytes);
Feed readOursAsTree(std::string& bytes);
Feed readPugixml(std::string& bytes);
Feed readLibplistXml(std::string& bytes);
Feed readLibplistBinary(std::string& bytes);
Feed readQt(std::string& bytes);

// A list as a candidate holds it in memory, to be written as XML.
class Writable {
public:
    virtual ~Writable() = default;
    // Replaces the file whole.
    virtual void write(const std::string& path) = 0;
};
// Only the text, without the file.
std::size_t writeOurText(const std::string& bytes);
Writable* ourWritable(const std::string& bytes);
Writable* pugixmlWritable(const std::string& bytes);
// The bytes as they are: what writing costs beside making them.
Writable* copyWritable(const std::string& bytes);
// The bytes as lines that are ready, put together one by one.
Writable* linesWritable(const std::string& bytes);

// The list without the record at a place, as bytes.
std::string editOurs(const std::string& bytes, std::size_t place);
std::string editPugixml(const std::string& bytes, std::size_t place);
