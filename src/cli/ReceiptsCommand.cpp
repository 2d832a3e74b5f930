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
        printJson({{"target", targetJson(session.application())}, {"receipts", list}});
        return ExitCode::Done;
    }
    for (const auto& package : packages) {
        std::string line = package.name;
        for (const auto& name : package.appNames.value_or(std::vector<std::string>()))
            line += "\t" + name;
        std::cout << (session.terminal().isOutputTerminal ? safeForTerminal(line) : line) << "\n";
    }
    return ExitCode::Done;
}

} // namespace sweeply
