#include "engine/plan/Plan.h"
#include "engine/plan/PlanFormat.h"
#include "engine/record/BytesJson.h"
#include "engine/record/RunRecord.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

using Json = nlohmann::ordered_json;

Json seenJson(const PlannedItem& item) {
    const auto& [size, identity, isWhole] = item.seen;
    if (!identity.isKnown())
        return nullptr;
    return {{"kind", nameOf(identity.kind)},
            {"size", size},
            {"entries", identity.entries},
            {"newestChange", exactTimeText(identity.newestChange)},
            {"trace", identity.trace}};
}

Json itemJson(const PlannedItem& item) {
    return {{"path", bytesJson(item.path)}, {"module", item.module},
            {"kind", nameOf(item.kind)},    {"size", item.size},
            {"checked", item.isChecked},    {"why", Json::parse(evidenceText(item.why ? &*item.why : nullptr))},
            {"seen", seenJson(item)}};
}

} // namespace

std::string keyOf(const PlannedItem& item) {
    std::string key = item.module;
    key += '\0';
    key += nameOf(std::max(item.kind, ChangedKind::Link));
    key += '\0';
    return key += item.path;
}

std::string exactTimeText(std::int64_t nanoseconds) {
    auto seconds = nanoseconds / kNanosecondsPerSecond;
    auto rest = nanoseconds % kNanosecondsPerSecond;
    if (rest < 0) {
        rest += kNanosecondsPerSecond;
        --seconds;
    }
    auto text = timeText(seconds);
    const auto fraction = std::to_string(kNanosecondsPerSecond + rest); // a one before the nine digits
    return text.replace(text.size() - 1, 1, "." + fraction.substr(1) + "Z");
}

Result<std::string> planText(const Plan& plan) {
    Json arguments = Json::array();
    for (const auto& argument : plan.arguments)
        arguments.push_back(bytesJson(argument));
    Json items = Json::array();
    for (const auto& item : plan.items)
        items.push_back(itemJson(item));
    auto text = Json{{"format", kPlanFormat},
                     {"made", plan.made},
                     {"program", plan.program},
                     {"target",
                      {{"root", bytesJson(plan.target.root)},
                       {"user", bytesJson(plan.target.user)},
                       {"version", plan.target.version},
                       {"processors", plan.target.processors}}},
                     {"command", plan.command},
                     {"arguments", std::move(arguments)},
                     {"incomplete", plan.isIncomplete},
                     {"items", std::move(items)}}
                    .dump(2) +
                "\n";
    if (text.size() > kLargestPlan)
        return Failure(Error{ErrorKind::TooLarge, {}, "too many items for one plan; name fewer modules"});
    return text;
}

} // namespace sweeply
