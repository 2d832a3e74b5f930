#include "platform/DirectoryEnumerator.h"
#include "platform/Volume.h"

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

class ReadProblemsTest : public VolumeTest {
  protected:
    ReadProblemsTest() {
        for (const char* path : {"/a/closed", "/a/b/c/closed"})
            setClosed(path, true);
        files().problems().setListener([this](const Error& error) { m_told.push_back(error.path); });
    }
    ~ReadProblemsTest() override {
        for (const char* path : {"/a/closed", "/a/b/c/closed"})
            setClosed(path, false);
    }
    void setClosed(const std::string& path, bool isClosed) const {
        if (isClosed)
            write(path + "/file", "x");
        fs::permissions(host(path), isClosed ? fs::perms::none : fs::perms::owner_all);
    }
    Strings problems() const {
        Strings lines;
        for (const auto& error : files().problems().all())
            lines.push_back(error.message());
        return lines;
    }

    Strings m_told;
};

TEST_F(ReadProblemsTest, EveryQuestionThatFindsNoAnswerAddsOnePath) {
    using Question = std::function<void(const FileManager&, const std::string&)>;
    const Question questions[]{
        [](const auto& files, const auto& path) { (void)files.contentsOfDirectoryAtPath(path); },
        [](const auto& files, const auto& path) { (void)files.enumeratorAtPath(path + "/"); },
        [](const auto& files, const auto& path) { (void)files.openDirectory(path); },
        [](const auto& files, const auto& path) { (void)files.contentsAtPath(path + "/file", 1); },
        [](const auto& files, const auto& path) { (void)files.beginningOfFileAtPath(path + "/file", 1); },
        [](const auto& files, const auto& path) { (void)files.fileExistsAtPath(path + "/file"); },
        [](const auto& files, const auto& path) { (void)files.directoryExistsAtPath(path + "/file"); },
        [](const auto& files, const auto& path) { (void)files.isMissingAtPath(path + "/file"); },
        [](const auto& files, const auto& path) { (void)files.attributesOfItemAtPath(path + "/file", Links::Follow); },
    };
    for (const auto& question : questions) {
        files().problems().startOver();
        m_told.clear();
        for (int time = 0; time < 2; ++time)
            question(files(), "/a/closed");
        ASSERT_EQ(files().problems().all().size(), 1u) << &question - questions;
        EXPECT_EQ(problems()[0], "/a/closed: Permission denied");
        EXPECT_EQ(m_told.size(), 1u);
        question(files(), "/a/missing");
        question(files(), "/victim/below/a/file");
        question(files(), "relative");
        EXPECT_EQ(files().problems().all().size(), 1u);
    }
}

TEST_F(ReadProblemsTest, WalkAddsAllThatItPassesOverToTheListThatItIsGiven) {
    ReadProblems own;
    auto walk = files().enumeratorAtPath("/a", own);
    while (walk.next()) {
    }
    EXPECT_EQ(own.all().size(), 2u);
    EXPECT_EQ(problems(), Strings());
    auto other = files().enumeratorAtPath("/");
    while (other.next()) {
    }
    std::ranges::sort(m_told);
    EXPECT_EQ(m_told, (Strings{"/a/b/c/closed", "/a/closed"}));
}

TEST_F(ReadProblemsTest, FolderThatShowsOnlyNamesIsTheProblemAndNotItsEntries) {
    for (const char* file : {"/names/1", "/names/2", "/names/folder/3"})
        write(file, "x");
    fs::permissions(host("/names"), fs::perms::owner_read);
    auto walk = files().enumeratorAtPath("/names");
    while (walk.next())
        (void)walk.attributes();
    (void)files().contentsAtPath("/names/folder/3", 1);
    fs::permissions(host("/names"), fs::perms::owner_all);
    EXPECT_EQ(problems(), Strings{"/names: Permission denied"});
}

TEST_F(ReadProblemsTest, RemovalAndDamageAddNothingAndAreToldWhenAddedOnPurpose) {
    files().problems().setRemoving(true);
    (void)files().openDirectory("/a/closed");
    files().problems().add({ErrorKind::Other, "/list", "line 3"});
    files().problems().setRemoving(false);
    files().problems().add({ErrorKind::Damaged, "/damaged", "line 3"});
    EXPECT_EQ(problems(), Strings());
    EXPECT_EQ(m_told, (Strings{"/list", "/damaged"}));
    (void)files().openDirectory("/a/closed");
    EXPECT_EQ(problems(), Strings{"/a/closed: Permission denied"});
}

} // namespace
} // namespace sweeply
