#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ctl {

// A binary property list, made object by object, for what other forms cannot hold: nulls, sets, keys that are
// no strings, lone surrogates and contents that are shared. Each operation adds an object and gives its
// number, less than 256.
class BinaryList final {
public:
    using Object = std::size_t;

    Object null() { return add(std::string(1, '\x00')); }
    Object boolean(bool value) { return add(value ? "\x09" : "\x08"); }
    Object integer(std::uint8_t value) { return add({'\x10', static_cast<char>(value)}); }
    Object real(double value);
    Object date(double seconds); // since 2001-01-01 00:00 UTC
    Object string(std::string_view ascii);
    Object utf16(std::u16string_view text);
    Object array(const std::vector<Object>& elements);
    Object set(const std::vector<Object>& members);
    Object dictionary(const std::vector<std::pair<Object, Object>>& entries);

    // A whole feed record, with one more key.
    Object record(double date, Object extraKey, Object extraValue);

    // An array of ten arrays of ten arrays and so on, too large to be written out.
    Object bomb();

    [[nodiscard]] std::string bytes(Object root) const;

private:
    Object add(std::string bytes);
    Object container(unsigned marker, std::size_t count, const std::vector<Object>& references);
    static std::string bigEndian(std::uint64_t number, unsigned width);

    std::vector<std::string> objects_;
};

} // namespace ctl
