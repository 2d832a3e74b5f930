#include "engine/tree/NodeOrder.h"

#include "engine/tree/Node.h"

namespace sweeply {

namespace {

template<typename T>
int threeWay(const T& a, const T& b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

int opposite(int comparison) { return comparison < 0 ? 1 : -1; }

} // namespace

std::optional<NodeOrder> orderFor(const SortDescriptor& descriptor) {
    // An ascending name column lists names from Z to A, and only that one.
    if (descriptor.key == "Name")
        return NodeOrder{NodeKey::Name, descriptor.ascending};
    if (descriptor.key == "Size")
        return NodeOrder{NodeKey::Size, !descriptor.ascending};
    if (descriptor.key == "Number")
        return NodeOrder{NodeKey::Number, !descriptor.ascending};
    return std::nullopt;
}

int compareNamesAscending(const Node& receiver, const Node& other) { return threeWay(receiver.name(), other.name()); }
int compareSizesAscending(const Node& receiver, const Node& other) {
    return threeWay(receiver.longSize(), other.longSize());
}
int compareNumbersAscending(const Node& receiver, const Node& other) {
    return threeWay(receiver.count(), other.count());
}
int compareNamesDescending(const Node& receiver, const Node& other) {
    return opposite(compareNamesAscending(receiver, other));
}
int compareSizesDescending(const Node& receiver, const Node& other) {
    return opposite(compareSizesAscending(receiver, other));
}
int compareNumbersDescending(const Node& receiver, const Node& other) {
    return opposite(compareNumbersAscending(receiver, other));
}

} // namespace sweeply
