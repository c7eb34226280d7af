#include "bridge/sources/HledgerAccounts.h"

#include <QString>

#include <algorithm>
#include <utility>

namespace bridge {

namespace {

using Kind = HledgerAccounts::Kind;

constexpr std::pair<std::string_view, Kind> topNames[] = {
    {"активы", Kind::Own},
    {"обязательства", Kind::Own},
    {"доходы", Kind::Category},
    {"расходы", Kind::Category},
    {"капитал", Kind::Equity},
    {"aktiva", Kind::Own},
    {"vermögen", Kind::Own},
    {"passiva", Kind::Own},
    {"verbindlichkeiten", Kind::Own},
    {"schulden", Kind::Own},
    {"ausgaben", Kind::Category},
    {"aufwand", Kind::Category},
    {"aufwendungen", Kind::Category},
    {"einnahmen", Kind::Category},
    {"erträge", Kind::Category},
    {"eigenkapital", Kind::Equity},
    {"activos", Kind::Own},
    {"pasivos", Kind::Own},
    {"gastos", Kind::Category},
    {"ingresos", Kind::Category},
    {"patrimonio", Kind::Equity},
    {"actif", Kind::Own},
    {"actifs", Kind::Own},
    {"passif", Kind::Own},
    {"passifs", Kind::Own},
    {"dépenses", Kind::Category},
    {"charges", Kind::Category},
    {"revenus", Kind::Category},
    {"capitaux", Kind::Equity},
    {"attività", Kind::Own},
    {"passività", Kind::Own},
    {"spese", Kind::Category},
    {"uscite", Kind::Category},
    {"entrate", Kind::Category},
    {"الأصول", Kind::Own},
    {"الخصوم", Kind::Own},
    {"المصروفات", Kind::Category},
    {"الإيرادات", Kind::Category},
    {"دارایی", Kind::Own},
    {"بدهی", Kind::Own},
    {"هزینه", Kind::Category},
    {"درآمد", Kind::Category},
    {"נכסים", Kind::Own},
    {"התחייבויות", Kind::Own},
    {"הוצאות", Kind::Category},
    {"הכנסות", Kind::Category},
    {"資産", Kind::Own},
    {"負債", Kind::Own},
    {"費用", Kind::Category},
    {"収益", Kind::Category},
    {"純資産", Kind::Equity},
};

Kind kindOfTopName(std::string_view account) {
    const std::string_view top = account.substr(0, account.find(':'));
    const std::string name =
        QString::fromUtf8(top.data(), static_cast<qsizetype>(top.size())).toLower().toStdString();
    const auto* const found = std::find_if(std::begin(topNames), std::end(topNames),
                                           [&](const auto& row) { return row.first == name; });
    return found == std::end(topNames) ? Kind::Unknown : found->second;
}

} // namespace

HledgerAccounts::HledgerAccounts(std::string_view lines) {
    constexpr std::string_view mark = "; type: ";
    while (!lines.empty()) {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(std::min(line.size() + 1, lines.size()));
        const std::size_t at = line.rfind(mark);
        // The type is the last letter of the line, and may be missing.
        if (at == std::string_view::npos || line.size() != at + mark.size() + 1)
            continue;
        const std::string_view padded = line.substr(0, at);
        types_[std::string(padded.substr(0, padded.find_last_not_of(' ') + 1))] = line.back();
    }
}

char HledgerAccounts::typeOf(std::string account) const {
    for (;;) {
        if (const auto found = types_.find(account); found != types_.end())
            return found->second;
        const std::size_t colon = account.rfind(':');
        if (colon == std::string::npos)
            return '\0';
        account.resize(colon);
    }
}

HledgerAccounts::Kind HledgerAccounts::kindOf(const std::string& account) const {
    switch (typeOf(account)) {
    case 'A':
    case 'C':
    case 'L':
        return Kind::Own;
    case 'R':
    case 'X':
        return Kind::Category;
    case 'E':
    case 'V':
        return Kind::Equity;
    default:
        return kindOfTopName(account);
    }
}

} // namespace bridge
