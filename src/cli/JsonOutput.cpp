#include "cli/JsonOutput.h"

#include "cli/JsonPrinter.h"
#include "formats/Utf8.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace sweeply {

Json evidenceJson(const Evidence& evidence) { return Json::parse(evidenceText(&evidence)); }

const char* nameOfUnits(SizeUnits units) { return units == SizeUnits::Decimal ? "decimal" : "binary"; }

Json targetJson(const Application& application) {
    const Target& target = application.target();
    return {{"root", validUtf8(target.files->rootPath())},
            {"home", validUtf8(target.folders.home)},
            {"user", validUtf8(target.folders.userName)},
            {"version", target.version.productVersion()},
            {"units", nameOfUnits(application.units())}};
}

Json modulesJson(Application& application, const std::vector<ShownModule>& modules) {
    std::lock_guard lock(application.treeLock());
    Json list = Json::array();
    for (const auto& [name, title, viewCode, isChecked, module] : modules)
        list.push_back({{"module", name},
                        {"viewCode", viewCode},
                        {"checked", isChecked},
                        {"totalSize", module.totalSize()},
                        {"totalSizeText", stringSizeFromLong(module.totalSize(), application.units())},
                        {"filesFound", module.filesFound()},
                        {"statusText", module.statusText()},
                        {"tree", treeReference(*module.rootNode(), application.units())}});
    return list;
}

Json scanJson(Application& application) {
    const auto modules = shownModules(application);
    const auto totals = totalsOf(modules);
    Json problems = Json::array();
    for (const auto& problem : application.target().files->problems().all())
        problems.push_back({{"path", validUtf8(problem.path)}, {"reason", validUtf8(problem.reason)}});
    return {{"target", targetJson(application)},
            {"modules", modulesJson(application, modules)},
            {"totals",
             {{"totalSize", totals.totalSize},
              {"foundSize", totals.foundSize},
              {"filesFound", totals.filesFound},
              {"filesFoundInEnabled", totals.filesFoundInEnabled}}},
            {"incomplete", !problems.empty()},
            {"problems", problems}};
}

Json cleanJson(Session& session, bool wasStopped) {
    auto& application = session.application();
    Json failed = Json::array();
    Json items = Json::array();
    for (const auto& report : application.gate().reports()) {
        if (!report.outcome.isDone())
            failed.push_back(validUtf8(report.path));
        items.push_back(itemJson(recordedItem(report)));
    }
    const auto sums = application.gate().sums();
    Json alerts = Json::array();
    for (const auto& [alert, answer] : session.alerts().records())
        alerts.push_back({{"title", alert.title}, {"text", alert.text}, {"answer", alert.buttons[answer.button]}});
    const std::uint64_t freed = application.statistics().currentRemovedAmountOfSpace();
    return {{"target", targetJson(application)},
            {"run", application.runs().run() ? Json(*application.runs().run()) : Json(nullptr)},
            {"removed", sums.removed},
            {"freed", freed},
            {"freedText", stringSizeFromLong(freed, application.units())},
            {"kept", sums.kept},
            {"items", items},
            {"failed", failed},
            {"stopped", wasStopped},
            {"couldntRemoveSomething", application.gate().couldntRemoveSomething()},
            {"incomplete", !application.target().files->problems().isEmpty()},
            {"alerts", alerts},
            {"modules", modulesJson(application, shownModules(application))}};
}

Json itemJson(const RecordedItem& item) {
    return {{"path", validUtf8(item.path)},
            {"module", item.module},
            {"kind", item.kind},
            {"size", item.size},
            {"outcome", item.outcome},
            {"reason", item.reason ? Json(validUtf8(*item.reason)) : Json(nullptr)},
            {"why", Json::parse(item.why)}};
}

void addFigures(Json& sums, const Json& object, SizeUnits units) {
    constexpr std::string_view kText = "Text";
    for (const auto& [key, value] : object.items()) {
        if (value.is_boolean()) {
            sums[key] = sums.value(key, false) || value.get<bool>();
        } else if (value.is_number_unsigned()) {
            sums[key] = sums.value(key, std::uint64_t{0}) + value.get<std::uint64_t>();
        } else if (value.is_object() && key != "target") {
            if (!sums.contains(key))
                sums[key] = Json::object();
            addFigures(sums[key], value, units);
        } else if (key.ends_with(kText)) {
            if (const auto size = sums.find(key.substr(0, key.size() - kText.size())); size != sums.end())
                sums[key] = stringSizeFromLong(size->get<std::uint64_t>(), units);
        }
    }
}

void printJson(const Json& json) {
    writeJson(std::cout, json, JsonLayout::Indented);
    std::cout << "\n";
}

} // namespace sweeply
