#include "bridge/PlansText.h"

#include <nlohmann/json.hpp>

namespace bridge {

namespace {

using Json = nlohmann::json;

Json jsonOfPlan(const Plan& plan) {
    Json json{{"key", plan.key},         {"name", plan.name},
              {"payee", plan.payee},     {"category", plan.category},
              {"account", plan.account}, {"direction", static_cast<int>(plan.direction)},
              {"single", plan.isSingle}, {"occurrences", Json::array()}};
    if (plan.amount) {
        json["amount"] = textOfDecimal(plan.amount->number);
        json["currency"] = plan.amount->currency;
    }
    for (const Occurrence& occurrence : plan.occurrences)
        json["occurrences"].push_back({textOfDay(occurrence.day), textOfDay(occurrence.nominal)});
    return json;
}

// The members throw where they are absent or of another kind.
std::optional<Plan> planOfJson(const Json& json) {
    Plan plan;
    plan.key = json.at("key").get<std::string>();
    plan.name = json.at("name").get<std::string>();
    plan.payee = json.at("payee").get<std::string>();
    plan.category = json.at("category").get<std::string>();
    plan.account = json.at("account").get<std::string>();
    plan.isSingle = json.at("single").get<bool>();
    const int direction = json.at("direction").get<int>();
    if (direction < 0 || direction > static_cast<int>(Direction::Transfer))
        return std::nullopt;
    plan.direction = static_cast<Direction>(direction);
    if (json.contains("amount")) {
        const auto number = decimalOfText(json["amount"].get<std::string>());
        if (!number)
            return std::nullopt;
        plan.amount = Amount{*number, json.at("currency").get<std::string>()};
    }
    for (const Json& days : json.at("occurrences")) {
        const auto day = dayOfText(days.at(0).get<std::string>());
        const auto nominal = dayOfText(days.at(1).get<std::string>());
        if (!day || !nominal)
            return std::nullopt;
        plan.occurrences.push_back({*day, *nominal});
    }
    return plan;
}

} // namespace

std::string textOfPlans(const std::vector<Plan>& plans) {
    Json list = Json::array();
    for (const Plan& plan : plans)
        list.push_back(jsonOfPlan(plan));
    return list.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<std::vector<Plan>> plansOfText(std::string_view text) {
    const Json list = Json::parse(text, nullptr, false);
    if (!list.is_array())
        return std::nullopt;
    std::vector<Plan> plans;
    try {
        for (const Json& json : list) {
            auto plan = planOfJson(json);
            if (!plan)
                return std::nullopt;
            plans.push_back(std::move(*plan));
        }
    } catch (const Json::exception&) {
        return std::nullopt;
    }
    return plans;
}

} // namespace bridge
