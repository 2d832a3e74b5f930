#include "modules/eraser/EraserController.h"

#include "modules/ModuleWorld.h"

#include <fcntl.h>
#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

/// With the real tools, which overwriting needs.
class EraserTest : public ModuleTest {
  protected:
    EraserTest() {
        m_module = &m_world.add(8, std::make_unique<EraserController>(services(), *m_world.coordinator, [this] {
                                    return m_world.coordinator->useSecureErase();
                                }));
    }
    std::string listed() { return textOf(*m_module->rootNode()); }

    EraserController* m_module = nullptr;
};

TEST_F(EraserTest, DroppedItemsAreListedOnceAndRemoved) {
    writeAll({"/Users/sam/Documents/a", "/tmp/folder/b"});
    link("/tmp/link", "/Users/sam/Documents");
    drop(*m_module, {"~/Documents/a", "/tmp/folder/", "/tmp/folder", "/tmp/link", "/nothing"});
    EXPECT_EQ(listed(), "[x] ~/Documents/a 4000\n[x] /tmp/folder 4000\n[x] /tmp/link 0\n");
    m_world.remove();
    EXPECT_EQ(listed(), "");
    EXPECT_THAT(there({"/tmp/folder", "/tmp/link", "/Users/sam/Documents"}), ElementsAre("/Users/sam/Documents"));
}

TEST_F(EraserTest, ScanIsOverAtOnceAndTheDropAreaForgetsItems) {
    write("/a");
    drop(*m_module, {"/a"});
    m_world.scan();
    EXPECT_EQ(listed(), "[x] /a 4000\n");
    m_module->showDropImageView();
    EXPECT_EQ(listed(), "");
    EXPECT_FALSE(m_module->ifAnyEnabled());
    drop(*m_module, {"/a"});
    EXPECT_TRUE(m_module->ifAnyEnabled());
}

TEST_F(EraserTest, SecureEraseOverwritesAWholeTreeAndSaysWhatStays) {
    m_world.coordinator->setUseSecureErase(true);
    write("/tmp/it's $(x)/secret", std::string(5000, 's'));
    const UniqueFd held(::open(host("/tmp/it's $(x)/secret").c_str(), O_RDONLY | O_CLOEXEC));
    write("/tmp/other/linked", "contents");
    std::filesystem::create_hard_link(host("/tmp/other/linked"), host("/name"));
    const auto erase = [this](const std::string& path) { return m_world.gate.perform({Operation::Overwrite, path}); };
    EXPECT_EQ(erase("/tmp/it's $(x)").kind, OutcomeKind::Erased);
    EXPECT_FALSE(m_world.exists("/tmp/it's $(x)"));
    std::string left(5000, '\0');
    EXPECT_EQ(::pread(held.get(), left.data(), left.size(), 0), 5000);
    EXPECT_EQ(left, std::string(5000, '\xff'));
    EXPECT_THAT(erase("/tmp/other").error.reason, HasSubstr("hard link"));
    EXPECT_EQ(read("/name"), "contents");
    EXPECT_EQ(erase("/Users/sam/Library").kind, OutcomeKind::Refused);
}

} // namespace
} // namespace sweeply
