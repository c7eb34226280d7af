#pragma once

#include "platform/plist/Value.h"

#include <random>
#include <string>

// Random lists of records and random spellings of them, for tests that compare two ways of reading.
class RandomList final {
public:
    explicit RandomList(unsigned seed)
        : random_(seed) {}

    // An XML list as nobody would write it: comments, sections, references, duplicate keys, nested `plist`
    // tags, elements that are no dictionaries.
    std::string xml();
    // A list as the writer gives it, some of its records with a `CF$UID` among their keys.
    std::string written();
    // The list with one to three bytes changed, dropped or repeated.
    std::string broken(std::string text);
    std::size_t below(std::size_t bound) { return random_() % bound; }

private:
    bool oneIn(std::size_t n) { return below(n) == 0; }
    std::string space();
    std::string characters();
    std::string value(int depth);
    std::string number();
    std::string record(int depth);
    std::string key();

    std::mt19937 random_;
};
