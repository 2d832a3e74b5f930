#include "modules/ModuleServices.h"

#include "appcore/SWApplicationCore.h"

namespace sweeply {

std::vector<std::string> ModuleServices::applicationsToScan(const WorkControl* control) const {
    auto paths = applications.createApplicationsArrayForController(control);
    std::erase_if(paths, [this](const std::string& path) { return !part.includes(path); });
    return paths;
}

} // namespace sweeply
