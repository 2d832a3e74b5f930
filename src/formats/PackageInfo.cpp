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
    return PackageInfo{root.attribute("identifier").value(), root.attribute("install-location").value()};
}

} // namespace sweeply
