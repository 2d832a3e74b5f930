#include "appcore/bundles/SharedSurveys.h"

#include "appcore/TestTarget.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/SystemVersion.h"
#include "platform/TargetPath.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

namespace sweeply {

namespace {

using Lines = std::vector<std::string>;

Interest languages(std::string_view name, FileType) {
    return pathExtension(name) == "lproj" ? Interest::Item : Interest::Below;
}
Interest headers(std::string_view name, FileType) {
    return pathExtension(name) == "h" ? Interest::Item : Interest::Below;
}
Interest outsideLanguages(std::string_view name, FileType type) {
    if (type == FileType::Directory)
        return pathExtension(name) == "lproj" ? Interest::Nothing : Interest::Below;
    return pathExtension(name).empty() ? Interest::Item : Interest::Nothing;
}

class SharedSurveysTest : public testing::Test {
  protected:
    /// A bundle with every kind of entry that the three above meet, inside each other too.
    void makeBundle(const std::string& path, std::mt19937& random) {
        const std::vector<std::string> names{"en.lproj", "fr.lproj", "a.h",         "Headers",
                                             "program",  "x.png",    "MainMenu.nib"};
        std::vector<std::string> folders{path};
        for (int i = 0; i < 40; ++i) {
            const auto place = joinedPath(folders[random() % folders.size()], names[random() % names.size()]);
            if (m_target.files().attributesOfItemAtPath(place, Links::DontFollow))
                continue;
            if (const auto kind = random() % 8; kind == 0)
                m_target.link(place, "../x");
            else if (kind < 5)
                m_target.write(place, std::string(random() % 9000, 'x'));
            else
                m_target.write(joinedPath(folders.emplace_back(place), "first.h"), "x");
        }
    }
    /// In any order: that is the file system's.
    static Lines linesOf(const BundleSurvey& survey) {
        Lines lines;
        for (const auto& [path, type, mode, measured] : survey.items)
            lines.push_back(path + " " + std::to_string(static_cast<int>(type)) + " " + std::to_string(mode) + " " +
                            std::to_string(measured.size) + " " + std::to_string(measured.identity.trace) + " " +
                            std::to_string(measured.identity.entries) + (measured.isWhole ? "" : " not whole"));
        std::ranges::sort(lines);
        return lines;
    }
    [[nodiscard]] BundleSurvey alone(const std::string& bundle, const InterestIn& interest) const {
        return m_surveyor.survey(bundle, interest, {});
    }

    TestTarget m_target;
    SystemVersion m_version = SystemVersion::fromProductVersion("10.6.8").value();
    DiskSizes m_sizes{m_target.files(), m_version};
    BundleSurveyor m_surveyor{m_target.files(), m_sizes};
    SharedSurveys m_shared{m_target.files(), m_sizes};
    const std::vector<InterestIn> m_interests{languages, headers, outsideLanguages};
};

} // namespace

TEST_F(SharedSurveysTest, OneWalkFindsForEachWhatHeFindsAloneAndMeasuresAsEverywhere) {
    std::mt19937 random(7);
    for (int round = 0; round < 30; ++round) {
        const auto bundle = "/Applications/" + std::to_string(round) + ".app";
        makeBundle(bundle, random);
        const auto together = m_surveyor.surveyForAll(bundle, m_interests, {});
        ASSERT_TRUE(together);
        for (std::size_t i = 0; i < m_interests.size(); ++i) {
            const auto survey = alone(bundle, m_interests[i]);
            EXPECT_EQ(linesOf((*together)[i]), linesOf(survey));
            for (const auto& item : survey.items)
                EXPECT_EQ(item.measured, m_sizes.measure(item.path)) << item.path;
        }
    }
}

TEST_F(SharedSurveysTest, WhatCannotBeReadIsSaidByThoseWhoWantItAlone) {
    m_target.write("/A.app/fr.lproj/closed/x", "x");
    m_target.write("/A.app/Headers/a.h", "x");
    m_target.setMode("/A.app/fr.lproj/closed", 0);
    EXPECT_FALSE(m_surveyor.surveyForAll("/A.app", m_interests, {}));
    EXPECT_TRUE(m_target.files().problems().isEmpty());
    EXPECT_FALSE(alone("/A.app", outsideLanguages).failure);
    EXPECT_TRUE(m_target.files().problems().isEmpty());
    const auto survey = alone("/A.app", languages);
    m_target.setMode("/A.app/fr.lproj/closed", 0700);
    EXPECT_EQ(survey.items.size(), 1U);
    EXPECT_FALSE(survey.items.front().measured.isWhole);
    EXPECT_EQ(m_target.files().problems().all().front().path, "/A.app/fr.lproj/closed");
    EXPECT_EQ(alone("/No.app", languages).failure->kind, ErrorKind::NotFound);
}

// Whoever takes part: late, slowly, leaving some out, in another order, stopped on the way.
TEST_F(SharedSurveysTest, EverybodyGetsTheSameWhateverTheOthersDo) {
    std::mt19937 random(11);
    std::vector<std::string> bundles;
    for (int i = 0; i < 60; ++i)
        makeBundle(bundles.emplace_back("/Applications/" + std::to_string(i) + ".app"), random);
    std::vector<std::vector<Lines>> expected;
    for (const auto& interest : m_interests) {
        auto& lines = expected.emplace_back();
        for (const auto& bundle : bundles)
            lines.push_back(linesOf(alone(bundle, interest)));
    }
    std::atomic<int> differences = 0;
    const auto takePart = [&](std::size_t who, unsigned seed) {
        std::mt19937 habits(seed);
        const auto skips = habits() % 3;
        const bool isBackwards = habits() % 4 == 0;
        const auto end = habits() % 3 == 0 ? habits() % bundles.size() : bundles.size();
        auto part = m_shared.takePart(m_interests[who]);
        part.expect(bundles);
        std::stop_source stop;
        for (std::size_t i = 0; i < end; ++i) {
            if (skips == 1 && habits() % 4 == 0)
                continue;
            if (skips == 2)
                std::this_thread::yield();
            const auto bundle = isBackwards ? bundles.size() - 1 - i : i;
            differences += linesOf(part.surveyOf(bundles[bundle], stop.get_token())) != expected[who][bundle] ? 1 : 0;
        }
        stop.request_stop();
        (void)part.surveyOf(bundles.back(), stop.get_token());
    };
    for (unsigned round = 0; round < 20; ++round) {
        std::vector<std::jthread> threads;
        for (unsigned who = 0; who < 5; ++who)
            threads.emplace_back(takePart, who % m_interests.size(), round * 8 + who);
    }
    EXPECT_EQ(differences, 0);
}

} // namespace sweeply
