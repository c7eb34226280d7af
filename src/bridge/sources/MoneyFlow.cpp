#include "bridge/sources/MoneyFlow.h"

#include <algorithm>
#include <limits>

namespace bridge {

namespace {

using Account = Movement::Account;
using Way = Movement::Way;

std::optional<Decimal> sumOf(const Decimal& a, const Decimal& b) {
    const int places = std::max(a.places, b.places);
    const auto first = withPlaces(a, places);
    const auto second = withPlaces(b, places);
    Decimal sum{0, places};
    if (!first || !second || __builtin_add_overflow(first->units, second->units, &sum.units) ||
        sum.units == std::numeric_limits<std::int64_t>::min())
        return std::nullopt;
    return sum;
}

std::optional<Amount> sumOf(const Amount& a, const Amount& b) {
    const auto sum = a.currency == b.currency ? sumOf(a.number, b.number) : std::nullopt;
    return sum ? std::optional(Amount{*sum, a.currency}) : std::nullopt;
}

// All of the user's accounts into which money comes, or out of which it goes.
class Side final {
public:
    void add(const Movement& movement) {
        if (!first_)
            amount_ = movement.amount;
        else
            amount_ = amount_ && movement.amount ? sumOf(*amount_, *movement.amount) : std::nullopt;
        first_ = first_ ? first_ : &movement;
    }

    [[nodiscard]] const Movement* first() const { return first_; }
    [[nodiscard]] const std::optional<Amount>& amount() const { return amount_; }

private:
    const Movement* first_ = nullptr;
    std::optional<Amount> amount_;
};

bool isMoreThan(const Side& in, const Side& out) {
    const auto net = in.amount() && out.amount() ? sumOf(*in.amount(), *out.amount()) : std::nullopt;
    return net && net->number.units > 0;
}

} // namespace

MoneyFlow flowOf(const std::vector<Movement>& movements) {
    MoneyFlow flow;
    Side in;
    Side out;
    const Movement* category = nullptr;
    for (const Movement& movement : movements) {
        if (movement.account == Account::Own)
            (movement.way == Way::In ? in : out).add(movement);
        else if (movement.account == Account::Category && !category)
            category = &movement;
    }
    if (category)
        flow.category = category->name;
    if (!in.first() && !out.first())
        return flow;
    const bool isIn = !out.first() || (in.first() && category && isMoreThan(in, out));
    const Side& side = isIn ? in : out;
    flow.direction = in.first() && out.first() && !category ? Direction::Transfer
                     : isIn                                 ? Direction::Income
                                                            : Direction::Expense;
    flow.account = side.first()->name;
    flow.amount = side.amount();
    return flow;
}

} // namespace bridge
