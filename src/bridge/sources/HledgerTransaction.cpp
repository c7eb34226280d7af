#include "bridge/sources/HledgerTransaction.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace bridge {

namespace {

using Json = nlohmann::json;

// hledger rounds quantities to so many places before it writes them.
constexpr int mostPlaces = 10;

const Json* find(const Json& object, const char* key) {
    const auto entry = object.is_object() ? object.find(key) : object.end();
    return object.is_object() && entry != object.end() ? &*entry : nullptr;
}

const Json* findArray(const Json& object, const char* key) {
    const Json* const array = find(object, key);
    return array && array->is_array() ? array : nullptr;
}

const std::string* findText(const Json& object, const char* key) {
    const Json* const text = find(object, key);
    return text ? text->get_ptr<const std::string*>() : nullptr;
}

std::optional<std::int64_t> integerOf(const Json* number) {
    if (!number || !number->is_number_integer())
        return std::nullopt;
    const auto* const large = number->get_ptr<const std::uint64_t*>();
    if (large && *large > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        return std::nullopt;
    return number->get<std::int64_t>();
}

// The number with the places that hledger shows, as far as it has written them.
std::optional<Decimal> numberOf(const Json& amount) {
    const Json* const quantity = find(amount, "aquantity");
    const Json* const style = find(amount, "astyle");
    if (!quantity || !style)
        return std::nullopt;
    const auto mantissa = integerOf(find(*quantity, "decimalMantissa"));
    const auto places = integerOf(find(*quantity, "decimalPlaces"));
    if (!mantissa || *mantissa == std::numeric_limits<std::int64_t>::min() || !places || *places < 0 ||
        *places > mostPlaces)
        return std::nullopt;
    const Decimal number{*mantissa, static_cast<int>(*places)};
    const std::int64_t shown = integerOf(find(*style, "asprecision")).value_or(*places);
    if (shown <= *places || shown > mostPlaces)
        return number;
    return withPlaces(number, static_cast<int>(shown));
}

std::optional<HledgerPosting> postingOf(const Json& json) {
    const std::string* const account = findText(json, "paccount");
    const Json* const amounts = findArray(json, "pamount");
    if (!account || !amounts)
        return std::nullopt;
    HledgerPosting posting{*account, {}};
    for (const Json& amount : *amounts) {
        const std::string* const commodity = findText(amount, "acommodity");
        if (!commodity)
            return std::nullopt;
        const auto number = numberOf(amount);
        posting.amounts.push_back(number ? std::optional(Amount{*number, *commodity}) : std::nullopt);
    }
    return posting;
}

bool readPostings(const Json& json, std::vector<HledgerPosting>& postings) {
    const Json* const array = findArray(json, "tpostings");
    if (!array)
        return false;
    for (const Json& element : *array) {
        const std::string* const type = findText(element, "ptype");
        auto posting = postingOf(element);
        if (!type || !posting)
            return false;
        if (*type == "RegularPosting")
            postings.push_back(std::move(*posting));
    }
    return true;
}

// A commodity as a journal has it: in quotes where its name could be taken for something else.
std::string commodityText(const std::string& name) {
    const bool isPlain = std::all_of(name.begin(), name.end(), [](char byte) {
        const auto unit = static_cast<unsigned char>(byte);
        return unit >= 0x80 || (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z') || unit == '$';
    });
    return isPlain ? name : '"' + name + '"';
}

// An amount with its commodity where the journal has it, so that what hledger learns from it of how to show
// amounts stays.
std::optional<std::string> amountText(const Json& amount) {
    const std::string* const commodity = findText(amount, "acommodity");
    const auto number = numberOf(amount);
    if (!commodity || !number)
        return std::nullopt;
    const Json& style = *find(amount, "astyle");
    const std::string* const side = findText(style, "ascommodityside");
    const Json* const spaced = find(style, "ascommodityspaced");
    const std::string space = spaced && spaced->is_boolean() && spaced->get<bool>() ? " " : "";
    const std::string name = commodityText(*commodity);
    if (name.empty())
        return textOfDecimal(*number);
    return side && *side == "L" ? name + space + textOfDecimal(*number)
                                : textOfDecimal(*number) + space + name;
}

// " @ PRICE" of one unit or " @@ PRICE" of all, empty without a price. Newer versions of hledger name it
// otherwise.
std::optional<std::string> priceText(const Json& amount) {
    for (const char* key : {"aprice", "acost"})
        if (const Json* const price = find(amount, key); price && !price->is_null()) {
            const std::string* const tag = findText(*price, "tag");
            const Json* const contents = find(*price, "contents");
            const auto text = contents ? amountText(*contents) : std::nullopt;
            if (!tag || !text)
                return std::nullopt;
            return (tag->starts_with("Unit") ? " @ " : " @@ ") + *text;
        }
    return "";
}

std::string accountText(const Json& posting) {
    const std::string& account = *findText(posting, "paccount");
    const std::string& type = *findText(posting, "ptype");
    if (type == "VirtualPosting")
        return '(' + account + ')';
    return type == "BalancedVirtualPosting" ? '[' + account + ']' : account;
}

// Of a sound transaction.
std::vector<std::string> linesOf(const Json& transaction) {
    std::vector<std::string> lines;
    for (const Json& posting : *findArray(transaction, "tpostings"))
        for (const Json& amount : *findArray(posting, "pamount")) {
            const auto number = amountText(amount);
            const auto price = priceText(amount);
            if (!number || !price)
                return {};
            lines.push_back(accountText(posting) + "  " + *number + *price);
        }
    return lines;
}

// The period expression of a value like "~ monthly".
std::string expressionOf(std::string_view value) {
    value.remove_prefix(std::min(value.find_first_not_of("~ "), value.size()));
    return std::string(value);
}

bool readTags(const Json& json, HledgerTransaction& transaction) {
    const Json* const tags = findArray(json, "ttags");
    if (!tags)
        return false;
    for (const Json& tag : *tags) {
        if (!tag.is_array() || tag.size() != 2 || !tag[0].is_string() || !tag[1].is_string())
            return false;
        const auto& name = tag[0].get_ref<const std::string&>();
        const auto& value = tag[1].get_ref<const std::string&>();
        // Newer versions of hledger write the hidden tag only.
        if (name == "generated-transaction" || name == "_generated-transaction")
            transaction.rule = expressionOf(value);
        else if (name == "plan" && transaction.plan.empty())
            transaction.plan = value;
        else if (name == "paid-of" && transaction.paidOf.empty())
            transaction.paidOf = value;
    }
    return true;
}

std::optional<HledgerTransaction> transactionOf(const Json& json) {
    const auto index = integerOf(find(json, "tindex"));
    const std::string* const date = findText(json, "tdate");
    const auto day = date ? dayOfText(*date) : std::nullopt;
    const std::string* const description = findText(json, "tdescription");
    if (!index || !day || !description)
        return std::nullopt;
    HledgerTransaction transaction;
    transaction.index = *index;
    transaction.day = *day;
    transaction.description = *description;
    if (!readTags(json, transaction) || !readPostings(json, transaction.postings))
        return std::nullopt;
    if (!transaction.rule.empty())
        transaction.lines = linesOf(json);
    return transaction;
}

} // namespace

std::variant<std::vector<HledgerTransaction>, std::string> transactionsOfJson(std::string_view json) {
    Json root;
    try {
        root = Json::parse(json);
    } catch (const Json::exception&) {
        return "hledger's answer is cut off or damaged";
    }
    if (!root.is_array())
        return "hledger's answer is no list of transactions";
    std::vector<HledgerTransaction> transactions;
    for (const Json& element : root) {
        auto transaction = transactionOf(element);
        if (!transaction)
            return "hledger's answer has another form than expected (transaction " +
                   std::to_string(transactions.size() + 1) + ")";
        transactions.push_back(std::move(*transaction));
    }
    return transactions;
}

} // namespace bridge
