#include "platform/plist/Value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace platform::plist;

TEST(Dictionary, findsNothingInAnEmptyOne) {
    EXPECT_EQ(Dictionary().find("key"), nullptr);
}

TEST(Dictionary, replacesAValueAtItsPlace) {
    Dictionary dictionary;
    dictionary.set("a", Value(true));
    dictionary.set("b", Value(false));
    dictionary.set("a", Value("new"));
    ASSERT_EQ(dictionary.size(), 2U);
    EXPECT_EQ(dictionary.keyAt(0), "a");
    EXPECT_EQ(dictionary.valueAt(0), Value("new"));
    EXPECT_EQ(dictionary.keyAt(1), "b");
}

TEST(Dictionary, removesAKeyAndIgnoresAnAbsentOne) {
    Dictionary dictionary;
    dictionary.set("a", Value(true));
    dictionary.set("b", Value(false));
    dictionary.remove("c");
    EXPECT_EQ(dictionary.size(), 2U);
    dictionary.remove("a");
    EXPECT_EQ(dictionary.find("a"), nullptr);
    EXPECT_NE(dictionary.find("b"), nullptr);
}

TEST(Dictionary, isEqualWhateverTheOrderOfKeys) {
    Dictionary a;
    a.set("x", Value(1.0));
    a.set("y", Value(2.0));
    Dictionary b;
    b.set("y", Value(2.0));
    b.set("x", Value(1.0));
    EXPECT_TRUE(a == b);
    b.set("x", Value(3.0));
    EXPECT_FALSE(a == b);
}

// Few and many entries are told apart by their number.
class DuplicateKeys : public testing::TestWithParam<std::size_t> {};

TEST_P(DuplicateKeys, leaveTheFirstOrTheLastAtTheFirstPlace) {
    std::vector<Dictionary::Entry> entries;
    const auto add = [&](const std::string& key, Value value) {
        entries.push_back({std::make_shared<const std::string>(key), std::move(value)});
    };
    for (std::size_t i = 0; i < GetParam(); ++i)
        add("key" + std::to_string(i), Value(static_cast<std::int64_t>(i)));
    for (const char* const later : {"second", "third"})
        add("key1", Value(later));
    const Dictionary first(entries, Dictionary::Duplicates::KeepFirst);
    const Dictionary last(entries, Dictionary::Duplicates::KeepLast);
    ASSERT_EQ(first.size(), GetParam());
    ASSERT_EQ(last.size(), GetParam());
    EXPECT_EQ(first.keyAt(1), "key1");
    EXPECT_EQ(first.valueAt(1), Value(std::int64_t{1}));
    EXPECT_EQ(last.valueAt(1), Value("third"));
    EXPECT_EQ(last.valueAt(2), Value(std::int64_t{2}));
}

INSTANTIATE_TEST_SUITE_P(Dictionary, DuplicateKeys, testing::Values(3, 24, 100));

TEST(Value, tellsKindsApart) {
    EXPECT_EQ(Value().kind(), Kind::Null);
    EXPECT_EQ(Value("text").kind(), Kind::String);
    EXPECT_EQ(Value(Uid{1}).kind(), Kind::Uid);
    EXPECT_EQ(Value(ForeignDictionary{}).kind(), Kind::ForeignDictionary);
    EXPECT_FALSE(Value(std::int64_t{1}) == Value(1.0));
    EXPECT_FALSE(Value(std::int64_t{1}) == Value(true));
    EXPECT_EQ(Value("text").real(), nullptr);
    EXPECT_EQ(*Value("text").string(), "text");
}

TEST(Value, comparesRealsByTheirBits) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(Value(nan) == Value(nan));
    EXPECT_FALSE(Value(0.0) == Value(-0.0));
}

TEST(Value, isOfThePlatformsNumbersWhenIntegerRealOrBoolean) {
    EXPECT_EQ(numberOf(Value(std::int64_t{-3})), -3.0);
    EXPECT_EQ(numberOf(Value(Integer{18446744073709551615U, true})), 18446744073709551616.0);
    EXPECT_EQ(numberOf(Value(2.5)), 2.5);
    EXPECT_EQ(numberOf(Value(true)), 1.0);
    EXPECT_EQ(numberOf(Value("2.5")), std::nullopt);
    EXPECT_EQ(numberOf(Value(Date{2.5})), std::nullopt);
}

TEST(Value, isTrueWhenANumberOtherThanZero) {
    EXPECT_EQ(truthOf(Value(false)), false);
    EXPECT_EQ(truthOf(Value(-0.0)), false);
    EXPECT_EQ(truthOf(Value(std::int64_t{2})), true);
    EXPECT_EQ(truthOf(Value(std::numeric_limits<double>::quiet_NaN())), true);
    EXPECT_EQ(truthOf(Value("true")), std::nullopt);
}
