#include "appcore/ownership/FolderListings.h"

#include "appcore/TestTarget.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

std::vector<std::string> namesOf(const FolderListing& listing, std::initializer_list<std::string_view> texts) {
    std::vector<std::string> names;
    for (const auto* entry : listing.withAnyOf(texts))
        names.push_back(entry->name);
    return names;
}

TEST(FolderListingsTest, NamesAreFoundByAnyTextOnceAndInOrder) {
    const FolderListing listing({{"org.a.plist"}, {"b"}, {"A\norg.a org.a"}, {"c"}, {"org.a"}});
    EXPECT_THAT(namesOf(listing, {"org.a"}), ElementsAre("org.a.plist", "A\norg.a org.a", "org.a"));
    EXPECT_THAT(namesOf(listing, {"A", "plist", "org.a"}), ElementsAre("org.a.plist", "A\norg.a org.a", "org.a"));
    EXPECT_THAT(namesOf(listing, {"", "bA", std::string_view("b\0A", 3)}), ElementsAre("b"))
        << "a candidate, which the comparison of its name then refuses";
    EXPECT_THAT(namesOf(listing, {"", "bA", "org.b"}), IsEmpty());
    EXPECT_THAT(namesOf(FolderListing({}), {"a"}), IsEmpty());
}

TEST(FolderListingsTest, FolderIsListedOnce) {
    TestTarget target;
    target.makeFile("/folder/a", "");
    FolderListings listings(target.files());
    EXPECT_THAT(namesOf(*listings.of("/folder"), {"a"}), ElementsAre("a"));
    EXPECT_THAT(namesOf(*listings.of("/missing"), {"a"}), IsEmpty());
    target.makeFile("/folder/also", "");
    EXPECT_THAT(namesOf(*listings.of("/folder"), {"a"}), ElementsAre("a"));
    EXPECT_THAT(namesOf(*FolderListings(target.files()).of("/folder"), {"also"}), ElementsAre("also"));
}

} // namespace
} // namespace sweeply
