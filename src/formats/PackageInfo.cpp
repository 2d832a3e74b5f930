#include "formats/PackageInfo.h"

#include <pugixml.hpp>

namespace sweeply {

tl::expected<PackageInfo, std::string> parsePackageInfo(std::string_view bytes) {
    pugi::xml_document document;
    const auto parsed = document.load_buffer(bytes.data(), bytes.size());
    if (!parsed)
        return tl::unexpected(std::string(parsed.description()));
    const auto root = document.document_element();
    if (!root)
        return tl::unexpected(std::string("no element"));
    PackageInfo info{root.attribute("identifier").value(), {}};
    if (const auto location = root.attribute("install-location"))
        info.installLocation = location.value();
    return info;
}

} // namespace sweeply
