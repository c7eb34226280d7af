#include "Feed.h"
#include "Measure.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>

// plist_bench FEEDS FOLDER [ROUNDS] prints the rows of bench/table.py; plist_bench --once NAME FILE runs one
// reader once, for callgrind.

namespace {

using Read = Feed (*)(std::string&);

struct Reader {
    const char* name;
    Read read;
    bool isBinary;
};

constexpr Reader readers[] = {{"ours", readOurs, false},
                              {"ours, tree", readOursAsTree, false},
                              {"pugixml", readPugixml, false},
                              {"libplist", readLibplistXml, false},
                              {"Qt stream", readQt, false},
                              {"ours", readOurs, true},
                              {"ours, tree", readOursAsTree, true},
                              {"libplist", readLibplistBinary, true}};

// Nanoseconds that a record takes, by what is read and how many there are.
std::map<std::string, std::map<int, double>> perRecord;

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s: cannot be read\n", path.c_str());
        std::exit(1);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

const Candidate& named(const std::vector<Candidate>& candidates, std::string_view name) {
    for (const Candidate& candidate : candidates)
        if (candidate.name == name)
            return candidate;
    std::abort();
}

std::string timeOf(const Candidate& candidate) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.3f ms %s", candidate.nanoseconds / 1e6,
                  candidate.name.c_str());
    return text.data();
}

// One row of the table: what was measured, ours, the yardstick, their ratio, and the highest that is good
// enough.
void row(const std::string& what, const Candidate& ours, const Candidate& peer, const char* bar) {
    std::printf("%s\t%s\t%s\t%.3f\t%s\n", what.c_str(), timeOf(ours).c_str(), timeOf(peer).c_str(),
                ours.nanoseconds / peer.nanoseconds, bar);
    std::fflush(stdout);
}

// In a process of its own too: what a reader leaves of the heap would slow down those that are measured.
void requireSameRecords(const Reader& reader, const std::string& bytes) {
    const auto isSame = [&] {
        std::string copy = bytes;
        std::string expectedCopy = bytes;
        return reader.read(copy) == readOurs(expectedCopy) ? 1.0 : 0.0;
    };
    if (inOwnProcess(isSame) == 0) {
        std::fprintf(stderr, "%s reads other records\n", reader.name);
        std::exit(1);
    }
}

std::vector<Candidate> readOf(const std::string& bytes, bool isBinary, int rounds) {
    std::vector<Candidate> candidates;
    std::string copy;
    Feed feed;
    // To free the records that were read before is no part of reading.
    const auto prepare = [&] {
        copy = bytes;
        feed = {};
    };
    for (const Reader& reader : readers) {
        if (reader.isBinary != isBinary)
            continue;
        requireSameRecords(reader, bytes);
        candidates.push_back({reader.name, prepare, [&, read = reader.read] { feed = read(copy); }});
    }
    measure(candidates, rounds, bytes.size() > 1'000'000 ? 0.1 : 0.05);
    return candidates;
}

void readRows(const std::filesystem::path& feeds, const std::string& name, bool isBinary, int rounds) {
    const std::string bytes = contents(feeds / (name + ".plist"));
    const std::vector<Candidate> candidates = readOf(bytes, isBinary, rounds);
    const Candidate& ours = named(candidates, "ours");
    const std::string what = "read feed, " + name;
    if (!isBinary) {
        row(what, ours, named(candidates, "pugixml"), name.ends_with("-10") ? "-" : "0.5");
        row(what, ours, named(candidates, "Qt stream"), "-");
    }
    row(what, ours, named(candidates, "libplist"), name.ends_with("-10") ? "-" : isBinary ? "0.35" : "0.15");
    row(what + ", as a tree", named(candidates, "ours, tree"), named(candidates, "libplist"), "-");
    const std::size_t dash = name.rfind('-');
    const int count = std::atoi(name.c_str() + dash + 1);
    perRecord[name.substr(0, dash)][count] = ours.nanoseconds / count;
}

void writeRows(const std::filesystem::path& feeds, const std::string& folder, const std::string& name,
               int rounds) {
    const std::string bytes = contents(feeds / (name + ".plist"));
    const std::string path = folder + "/plist-bench.plist";
    const std::unique_ptr<Writable> ours(ourWritable(bytes));
    const std::unique_ptr<Writable> pugixml(pugixmlWritable(bytes));
    const std::unique_ptr<Writable> copy(copyWritable(bytes));
    const std::unique_ptr<Writable> lines(linesWritable(bytes));
    std::vector<Candidate> candidates;
    const auto nothing = [] {};
    candidates.push_back({"ours", nothing, [&] { ours->write(path); }});
    candidates.push_back({"pugixml", nothing, [&] { pugixml->write(path); }});
    candidates.push_back({"copy", nothing, [&] { copy->write(path); }});
    candidates.push_back({"ready lines", nothing, [&] { lines->write(path); }});
    measure(candidates, rounds, bytes.size() > 1'000'000 ? 0.1 : 0.05);
    std::filesystem::remove(path);
    const std::string what = "write feed, " + name;
    row(what, candidates[0], candidates[1], name.ends_with("-10") ? "-" : "0.4");
    row(what, candidates[0], candidates[2], "-");
    row(what, candidates[0], candidates[3], "-");
}

// What one action costs beside the disk: the feed's bytes are read, a record in the middle is taken out, and
// the new bytes are made.
void editRows(const std::filesystem::path& feeds, const std::string& name, int rounds) {
    const std::string bytes = contents(feeds / (name + ".plist"));
    const auto place = static_cast<std::size_t>(std::atoi(name.c_str() + name.rfind('-') + 1)) / 2;
    std::string ours = editOurs(bytes, place);
    std::string theirs = editPugixml(bytes, place); // spelled another way, as in "<true />"
    if (readOurs(ours) != readOurs(theirs)) {
        std::fprintf(stderr, "the edited lists differ\n");
        std::exit(1);
    }
    std::vector<Candidate> candidates;
    const auto nothing = [] {};
    candidates.push_back({"ours", nothing, [&] { static_cast<void>(editOurs(bytes, place)); }});
    candidates.push_back({"pugixml", nothing, [&] { static_cast<void>(editPugixml(bytes, place)); }});
    measure(candidates, rounds, bytes.size() > 1'000'000 ? 0.1 : 0.05);
    row("edit feed, " + name, candidates[0], candidates[1], name.ends_with("-10") ? "-" : "0.4");
}

void heapRow(const std::filesystem::path& feeds, const std::string& name) {
    std::string bytes = contents(feeds / (name + ".plist"));
    countHeap();
    const Feed feed = readOurs(bytes);
    const auto results = static_cast<double>(heapInUse());
    const double beyond = static_cast<double>(heapPeak()) - results;
    std::printf("heap beyond input and records, %s\t%.3f MB\t1 MB\t%.3f\t1\n", name.c_str(), beyond / 1e6,
                beyond / 1e6);
    std::printf("# the records of %s themselves take %.1f MB\n", name.c_str(), results / 1e6);
}

// Linear is what costs each record the same; beyond every cache somewhat more.
void growthRow(const std::string& what, double few, double many) {
    std::printf("growth of reading, %s\t%.0f ns for one of 100000\t%.0f ns for one of 1000\t%.3f\t2\n",
                what.c_str(), many, few, many / few);
}

int runOnce(std::string_view name, const char* path) {
    std::string bytes = contents(path);
    const bool isBinary = bytes.starts_with("bplist");
    if (name == "write")
        return writeOurText(bytes) == 0 ? 1 : 0;
    for (const Reader& reader : readers)
        if (reader.name == name && reader.isBinary == isBinary)
            return reader.read(bytes).empty() ? 1 : 0;
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string_view(argv[1]) == "--once")
        return runOnce(argv[2], argv[3]);
    if (argc < 3) {
        std::fprintf(stderr, "usage: plist_bench FEEDS FOLDER [ROUNDS]\n");
        return 2;
    }
    const std::filesystem::path feeds = argv[1];
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 8;
    for (const char* const order : {"sorted", "mixed"})
        for (const char* const count : {"10", "1000", "100000"})
            readRows(feeds, std::string(order) + '-' + count, false, rounds);
    for (const char* const count : {"10", "1000", "100000"})
        readRows(feeds, std::string("binary-") + count, true, rounds);
    for (const char* const count : {"10", "1000", "100000"})
        writeRows(feeds, argv[2], std::string("sorted-") + count, rounds);
    for (const char* const count : {"10", "1000", "100000"})
        editRows(feeds, std::string("sorted-") + count, rounds);
    heapRow(feeds, "sorted-100000");
    heapRow(feeds, "mixed-100000");
    for (const auto& [what, nanoseconds] : perRecord)
        growthRow(what, nanoseconds.at(1000), nanoseconds.at(100000));
    return 0;
}
