#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "formats/Utf8.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace sweeply {

ExitCode runReceipts(Session& session) {
    const auto packages = session.application().packages().pkgs();
    if (session.commandLine().wantsJson) {
        Json list = Json::array();
        for (const auto& package : packages) {
            Json names = Json::array();
            for (const auto& name : package.appNames.value_or(std::vector<std::string>()))
                names.push_back(validUtf8(name));
            list.push_back({{"name", validUtf8(package.name)},
                            {"path", package.path.empty() ? Json(nullptr) : Json(validUtf8(package.path))},
                            {"baseDir", validUtf8(package.basedir)},
                            {"type", static_cast<int>(package.type)},
                            {"applications", names}});
        }
        session.print({{"target", targetJson(session.application())}, {"receipts", list}});
        return ExitCode::Done;
    }
    std::vector<std::vector<std::string>> rows;
    for (const auto& package : packages) {
        auto& row = rows.emplace_back(1, package.name);
        const auto names = package.appNames.value_or(std::vector<std::string>());
        row.insert(row.end(), names.begin(), names.end());
    }
    printColumns(std::cout, session.style(), rows);
    return ExitCode::Done;
}

} // namespace sweeply
