#include "appcore/receipts/PackageCache.h"

#include "formats/KeyedArchive.h"

namespace sweeply {

namespace {

constexpr const char* kPackages = "pkgs";
constexpr const char* kName = "name";
constexpr const char* kApplications = "appNames";
constexpr const char* kBaseDir = "baseDir";
constexpr const char* kType = "type";

std::optional<Package> packageIn(const KeyedArchive& archive, const plist::Value* object) {
    const auto* name = object ? archive.member(*object, kName) : nullptr;
    if (!name || !name->asString() || name->asString()->empty())
        return std::nullopt;
    Package package;
    package.name = *name->asString();
    const auto* baseDir = archive.member(*object, kBaseDir);
    package.basedir = baseDir && baseDir->asString() ? *baseDir->asString() : std::string();
    const auto* type = archive.member(*object, kType);
    const auto number = type ? type->asSigned().value_or(0) : 0;
    if (number < 0 || number > static_cast<int>(Package::Type::Database))
        return std::nullopt;
    package.type = static_cast<Package::Type>(number);
    if (const auto* names = archive.member(*object, kApplications)) {
        package.appNames.emplace();
        for (const auto* element : archive.elements(names)) {
            if (element && element->asString())
                package.appNames->push_back(*element->asString());
        }
    }
    return package;
}

} // namespace

std::string archiveOfPackages(const std::vector<Package>& packages) {
    KeyedArchiveWriter writer;
    std::vector<plist::Uid> objects;
    for (const auto& package : packages) {
        plist::Uid names = KeyedArchiveWriter::kNil;
        if (package.appNames) {
            std::vector<plist::Uid> elements;
            for (const auto& name : *package.appNames)
                elements.push_back(writer.addText(name));
            names = writer.addArray(elements);
        }
        const auto name = writer.addText(package.name);
        const auto baseDir = writer.addText(package.basedir);
        objects.push_back(writer.addObject(
            "Package",
            {{kApplications, names}, {kName, name}, {kBaseDir, baseDir}, {kType, static_cast<int>(package.type)}}));
    }
    const auto list = writer.addArray(objects);
    return writer.finish(writer.addDictionary({writer.addText(kPackages)}, {list}));
}

Result<std::vector<Package>> packagesInArchive(std::string_view bytes) {
    const auto archive = KeyedArchive::parse(bytes);
    if (!archive)
        return Failure(Error{ErrorKind::Damaged, {}, archive.error()});
    std::vector<Package> packages;
    for (const auto* object : archive->elements(archive->valueForKey(archive->root(), kPackages))) {
        if (auto package = packageIn(*archive, object))
            packages.push_back(*std::move(package));
    }
    return packages;
}

} // namespace sweeply
