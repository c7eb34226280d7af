#pragma once

#include <map>
#include <string>
#include <string_view>

namespace bridge {

// The kinds of a journal's accounts, as far as they tell whether money comes or goes.
class HledgerAccounts final {
public:
    // Own: the user's money, assets and liabilities. Category: expenses and revenues. Equity is also what
    // conversions between commodities go through.
    enum class Kind { Own, Category, Equity, Unknown };

    // Takes what hledger prints of its types.
    explicit HledgerAccounts(std::string_view lines);

    // By hledger's type of the account or of the nearest parent that has one, else by the top account's name.
    [[nodiscard]] Kind kindOf(const std::string& account) const;
    // Whether hledger itself has a type for the account.
    [[nodiscard]] bool hasType(const std::string& account) const { return typeOf(account) != '\0'; }

private:
    [[nodiscard]] char typeOf(std::string account) const;

    std::map<std::string, char> types_;
};

} // namespace bridge
