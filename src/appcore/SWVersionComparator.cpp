#include "appcore/SWVersionComparator.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

namespace sweeply {

namespace {

using PartType = SWVersionComparator::PartType;

/// Beyond 32 bits the greatest number, as the field's tools read it.
std::int32_t valueOf(const std::string& digits) {
    std::int32_t value = 0;
    const auto outcome = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return outcome.ec == std::errc::result_out_of_range ? std::numeric_limits<std::int32_t>::max() : value;
}

template<typename T>
int order(const T& a, const T& b) {
    return a == b ? 0 : (a < b ? -1 : 1);
}

int compareParts(const std::string& a, const std::string& b) {
    const PartType typeA = SWVersionComparator::typeOfCharacter(a);
    const PartType typeB = SWVersionComparator::typeOfCharacter(b);
    if (typeA != typeB) {
        if (typeA == PartType::String)
            return -1;
        if (typeB == PartType::String)
            return 1;
        return typeA == PartType::Period ? -1 : 1;
    }
    switch (typeA) {
    case PartType::Number:
        return order(valueOf(a), valueOf(b));
    case PartType::String:
        return order(a, b);
    case PartType::Period:
        break;
    }
    return 0;
}

} // namespace

PartType SWVersionComparator::typeOfCharacter(std::string_view part) {
    if (part == ".")
        return PartType::Period;
    return !part.empty() && part.front() >= '0' && part.front() <= '9' ? PartType::Number : PartType::String;
}

std::vector<std::string> SWVersionComparator::splitVersionString(std::string_view version) {
    std::vector<std::string> parts;
    PartType current = PartType::Period;
    for (std::size_t i = 0; i < version.size(); ++i) {
        const auto character = version.substr(i, 1);
        const PartType type = typeOfCharacter(character);
        if (parts.empty() || type != current || type == PartType::Period)
            parts.emplace_back();
        parts.back() += character;
        current = type;
    }
    return parts;
}

int SWVersionComparator::compareVersion(std::string_view a, std::string_view b) {
    const auto partsA = splitVersionString(a);
    const auto partsB = splitVersionString(b);
    const std::size_t common = std::min(partsA.size(), partsB.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (const int difference = compareParts(partsA[i], partsB[i]); difference != 0)
            return difference;
    }
    if (partsA.size() == partsB.size())
        return 0;
    const bool isALonger = partsA.size() > partsB.size();
    const bool isPreRelease = typeOfCharacter((isALonger ? partsA : partsB)[common]) == PartType::String;
    return isALonger == isPreRelease ? -1 : 1;
}

} // namespace sweeply
