#include "cli/RootsList.h"

#include "cli/HostFile.h"

#include <algorithm>
#include <string_view>

namespace sweeply {

namespace {

/// Some hundred thousand roots; more is no list.
constexpr std::size_t kLargestList = std::size_t{64} << 20U;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // as some editors begin a text

} // namespace

Result<std::vector<std::string>> readRootsList(const std::string& file) {
    const auto contents = readHostFile(file, kLargestList);
    if (!contents)
        return Failure(contents.error());
    std::string_view rest = *contents;
    if (rest.starts_with(kByteOrderMark))
        rest.remove_prefix(kByteOrderMark.size());
    // A path that was cut short at such a byte would be another one.
    if (rest.find('\0') != std::string_view::npos)
        return Failure(Error{ErrorKind::Damaged, file, "holds a zero byte, so it is no list of roots"});
    std::vector<std::string> roots;
    while (!rest.empty()) {
        auto line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const auto text = line.find_first_not_of(" \t");
        if (text != std::string_view::npos && line[text] != '#')
            roots.emplace_back(line);
    }
    if (roots.empty())
        return Failure(Error{ErrorKind::NotFound, file, "names no roots"});
    return roots;
}

} // namespace sweeply
