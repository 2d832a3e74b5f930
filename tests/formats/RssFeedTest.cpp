#include "formats/RssFeed.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

std::string feed(const std::string& items) {
    return "<?xml version=\"1.0\"?><rss version=\"2.0\" xmlns:blacklist=\"http://example.invalid/\"><channel>" + items +
           "</channel></rss>";
}

TEST(RssFeedTest, TheNewestItemComesFirstInWhateverZoneItWasWritten) {
    const auto items =
        parseRssFeed(feed("<item><title>undated</title></item>"
                          "<item><title>old</title><pubDate>Tue, 02 Jun 2009 10:00:00 GMT</pubDate></item>"
                          "<item><title>new</title><pubDate>02 Jun 2009 09:30 -0200</pubDate>"
                          "<enclosure url='http://host/a.tgz' blacklist:version='1.2'/></item>"
                          "<item><title>nonsense</title><pubDate>99 Foo 2009 1:1:1 GMT</pubDate></item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 4U);
    EXPECT_EQ((*items)[0].title, "new");
    EXPECT_EQ((*items)[0].published, 1243942200);
    EXPECT_EQ((*items)[0].enclosureAttribute("blacklist:version"), "1.2");
    EXPECT_EQ((*items)[0].enclosureAttribute("length"), "");
    EXPECT_EQ((*items)[1].title, "old");
    EXPECT_EQ((*items)[2].title, "undated");
    EXPECT_FALSE((*items)[3].published);
}

TEST(RssFeedTest, WhatIsNoFeedIsAnErrorThatSaysWhy) {
    EXPECT_NE(parseRssFeed("<rss><channel>").error().find("no well-formed XML"), std::string::npos);
    EXPECT_EQ(parseRssFeed("<html><body/></html>").error(), "no RSS feed");
    EXPECT_FALSE(parseRssFeed(""));
    EXPECT_TRUE(parseRssFeed(feed(""))->empty());
    // An entity that would read a file or swell stays what it is written as.
    const auto items = parseRssFeed("<!DOCTYPE rss [<!ENTITY x SYSTEM 'file:///etc/passwd'>]>" +
                                    feed("<item><title>&x;</title></item>").substr(21));
    ASSERT_TRUE(items);
    EXPECT_EQ((*items)[0].title, "&x;");
}

} // namespace
} // namespace sweeply
