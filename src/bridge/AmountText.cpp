#include "bridge/AmountText.h"

#include "platform/system/LocaleName.h"

#include <unicode/dcfmtsym.h>
#include <unicode/numberformatter.h>
#include <unicode/ucurr.h>

#include <algorithm>
#include <cstdlib>

namespace bridge {

namespace {

namespace number = icu::number;

constexpr const char* noCurrency = "XXX"; // the code of ISO 4217 for transactions without a currency

bool isIsoCode(const std::string& name) {
    const auto isCapital = [](char unit) { return unit >= 'A' && unit <= 'Z'; };
    UErrorCode status = U_ZERO_ERROR;
    return name.size() == 3 && std::all_of(name.begin(), name.end(), isCapital) &&
           ucurr_isAvailable(icu::UnicodeString::fromUTF8(name).getTerminatedBuffer(), U_DATE_MIN, U_DATE_MAX,
                             &status) &&
           U_SUCCESS(status);
}

// The locale's symbols with a true minus in place of a hyphen.
icu::DecimalFormatSymbols symbolsOf(const icu::Locale& locale, UErrorCode& status) {
    icu::DecimalFormatSymbols symbols(locale, status);
    icu::UnicodeString minus = symbols.getSymbol(icu::DecimalFormatSymbols::kMinusSignSymbol);
    minus.findAndReplace(icu::UnicodeString(u'-'), icu::UnicodeString(u'\u2212'));
    symbols.setSymbol(icu::DecimalFormatSymbols::kMinusSignSymbol, minus);
    return symbols;
}

UNumberSignDisplay signOf(Direction direction) {
    return direction == Direction::Transfer ? UNUM_SIGN_NEVER : UNUM_SIGN_EXCEPT_ZERO;
}

} // namespace

std::string amountLocale() {
    for (const char* variable : {"LC_ALL", "LC_MONETARY", "LANG"})
        if (const char* value = std::getenv(variable); value && *value)
            return platform::icuLocaleName(value);
    return platform::icuLocaleName("");
}

std::string amountText(const Plan& plan, const std::string& localeName) {
    if (!plan.amount)
        return {};
    Decimal amount = plan.amount->number;
    if ((amount.units < 0) != (plan.direction == Direction::Expense))
        amount.units = -amount.units;
    const std::string& name = plan.amount->currency;
    const icu::Locale locale(localeName.c_str());
    UErrorCode status = U_ZERO_ERROR;
    icu::DecimalFormatSymbols symbols = symbolsOf(locale, status);
    auto format = number::NumberFormatter::withLocale(locale).sign(signOf(plan.direction));
    int places = amount.places;
    if (isIsoCode(name)) {
        const icu::CurrencyUnit currency(icu::StringPiece(name), status);
        places = std::max(
            places, static_cast<int>(ucurr_getDefaultFractionDigits(currency.getISOCurrency(), &status)));
        format = format.unit(currency);
    } else if (!name.empty()) {
        symbols.setSymbol(icu::DecimalFormatSymbols::kCurrencySymbol, icu::UnicodeString::fromUTF8(name));
        format = format.unit(icu::CurrencyUnit(icu::StringPiece(noCurrency), status));
    }
    const icu::UnicodeString text = format.symbols(symbols)
                                        .precision(number::Precision::fixedFraction(places))
                                        .formatDecimal(textOfDecimal(amount), status)
                                        .toString(status);
    std::string result;
    return U_SUCCESS(status) ? text.toUTF8String(result) : textOfDecimal(amount) + " " + name;
}

} // namespace bridge
