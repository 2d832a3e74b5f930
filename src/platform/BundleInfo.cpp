#include "platform/BundleInfo.h"

#include "platform/TargetPath.h"

namespace sweeply {

namespace {

// The largest real ones hold some hundred document types and stay below 200 kB.
constexpr std::size_t kLimit = std::size_t{4} << 20U;

} // namespace

Result<plist::Value> propertyListAtPath(const FileManager& files, const std::string& path) {
    return files.contentsAtPath(path, kLimit).and_then([&](const std::string& contents) -> Result<plist::Value> {
        auto value = plist::parse(contents);
        if (!value)
            return Failure(Error{ErrorKind::Damaged, path, value.error()});
        return std::move(*value);
    });
}

Result<plist::Value> infoOfBundle(const FileManager& files, std::string_view bundlePath) {
    return propertyListAtPath(files, joinedPath(bundlePath, "Contents/Info.plist"));
}

} // namespace sweeply
