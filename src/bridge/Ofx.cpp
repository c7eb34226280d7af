#include "bridge/Ofx.h"

#include "bridge/Report.h"

#include <algorithm>
#include <map>
#include <utility>

namespace bridge {

namespace {

constexpr std::string_view header =
    "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:UNICODE\n"
    "CHARSET:NONE\nCOMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n";
constexpr std::string_view success = "<STATUS><CODE>0<SEVERITY>INFO</STATUS>";

std::string escaped(const std::string& text) {
    std::string result;
    for (const char byte : lineOf(text))
        if (byte == '&')
            result += "&amp;";
        else if (byte == '<')
            result += "&lt;";
        else if (byte == '>')
            result += "&gt;";
        else
            result += byte;
    return result;
}

// Noon, so that no time zone moves the day.
std::string dateOf(Day day) {
    std::string text = textOfDay(day);
    std::erase(text, '-');
    return text + "120000";
}

std::string transactionOf(const OfxPayment& payment) {
    const bool isOut = payment.amount.number.units < 0;
    std::string text = std::string("<STMTTRN><TRNTYPE>") + (isOut ? "DEBIT" : "CREDIT") + "<DTPOSTED>" +
                       dateOf(payment.paid) + "<TRNAMT>" + textOfDecimal(payment.amount.number) + "<FITID>" +
                       escaped(payment.id);
    if (!payment.payee.empty())
        text += "<NAME>" + escaped(payment.payee);
    return text + "</STMTTRN>\n";
}

} // namespace

std::string ofxOf(const std::vector<OfxPayment>& payments) {
    std::map<std::pair<std::string, std::string>, std::vector<const OfxPayment*>> statements;
    Day first = payments.empty() ? Day() : payments.front().paid;
    Day last = first;
    for (const OfxPayment& payment : payments) {
        statements[{payment.account, payment.amount.currency}].push_back(&payment);
        first = std::min(first, payment.paid);
        last = std::max(last, payment.paid);
    }
    std::string text = std::string(header) + "<OFX>\n<SIGNONMSGSRSV1><SONRS>" + std::string(success) +
                       "<DTSERVER>" + dateOf(last) +
                       "<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1>\n<BANKMSGSRSV1>\n";
    int number = 0;
    for (const auto& [name, lines] : statements) {
        text += "<STMTTRNRS><TRNUID>" + std::to_string(++number) + std::string(success) +
                "\n<STMTRS><CURDEF>" + escaped(name.second) + "\n<BANKACCTFROM><BANKID>1<ACCTID>" +
                escaped(name.first) + "<ACCTTYPE>CHECKING</BANKACCTFROM>\n<BANKTRANLIST><DTSTART>" +
                dateOf(first) + "<DTEND>" + dateOf(last) + '\n';
        for (const OfxPayment* payment : lines)
            text += transactionOf(*payment);
        text += "</BANKTRANLIST>\n<LEDGERBAL><BALAMT>0.00<DTASOF>" + dateOf(last) +
                "</LEDGERBAL>\n</STMTRS></STMTTRNRS>\n";
    }
    return text + "</BANKMSGSRSV1>\n</OFX>\n";
}

} // namespace bridge
