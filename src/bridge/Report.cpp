#include "bridge/Report.h"

#include <QString>

#include <nlohmann/json.hpp>

#include <ostream>

namespace bridge {

void say(Surroundings& surroundings, std::string_view sentence) {
    surroundings.err << "korvel-today-bridge: " << lineOf(sentence) << '\n';
}

int failed(Surroundings& surroundings, std::string_view sentence) {
    say(surroundings, sentence);
    return Failed;
}

int misused(Surroundings& surroundings, std::string_view sentence) {
    say(surroundings, std::string(sentence) + "; see korvel-today-bridge --help");
    return Misused;
}

std::string lineOf(std::string_view text) {
    QString line = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    for (QChar& unit : line)
        if (unit.category() == QChar::Other_Control || unit.category() == QChar::Separator_Line ||
            unit.category() == QChar::Separator_Paragraph || unit.category() == QChar::Other_Format)
            unit = u' ';
    return line.toStdString();
}

void print(Surroundings& surroundings, std::string_view line) {
    surroundings.out << lineOf(line) << '\n';
}

void printJson(Surroundings& surroundings, const nlohmann::ordered_json& json) {
    using Json = nlohmann::ordered_json;
    surroundings.out << json.dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
}

} // namespace bridge
