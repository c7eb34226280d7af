#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

// Random lists of records in the binary form, for tests that compare two ways of reading: shared objects and
// cycles, duplicate keys, keys of any kind, sizes stated apart.
class RandomBinaryList final {
public:
    explicit RandomBinaryList(unsigned seed)
        : random_(seed) {}

    std::string list();

private:
    std::size_t below(std::size_t bound) { return random_() % bound; }
    bool oneIn(std::size_t n) { return below(n) == 0; }
    std::string number(std::uint64_t value, std::size_t width) const;
    std::string head(unsigned marker, std::size_t count) const;
    std::string text();
    std::string leaf();
    std::string container(unsigned marker, std::size_t first);
    std::string reference(std::size_t first);

    std::mt19937 random_;
    std::size_t objects_ = 0;
    std::size_t referenceSize_ = 1;
};
