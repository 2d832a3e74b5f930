#include "modules/draggedfiles/DraggedFilesController.h"

#include "engine/FakeModule.h"
#include "modules/UninstallWorld.h"
#include "modules/draggedfiles/DropTargets.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::ElementsAre;

class DraggedFilesTest : public UninstallWorldTest {
  protected:
    DraggedFilesTest() {
        for (const auto view : std::vector<std::uint8_t>{3, 4, 5, 7, 8})
            m_modules[view] = &m_world.add(
                view, std::make_unique<FakeView>(std::to_string(view), m_world.services(), *m_world.coordinator));
        m_extensions = &addExtensions();
        m_files = std::make_unique<DraggedFilesController>(DraggedFilesController::Destinations{
            *m_modules[3], *m_modules[4], *m_modules[5], *m_modules[7], *m_modules[8], *m_extensions});
        m_files->setFinished([this] { ++m_finished; });
        m_world.coordinator->setMainView(&m_window);
        write("/Users/sam/Library/Widgets/A.wdgt/x");
    }
    ~DraggedFilesTest() override { m_world.end(); }

    void choose(void (DraggedFilesController::*choice)(), const std::vector<std::string>& paths) {
        for (const auto& path : paths)
            m_files->addFileToListWithPath(path);
        ((*m_files).*choice)();
        m_world.waitUntil([this] { return !m_world.coordinator->isScanning(); });
        EXPECT_TRUE(m_files->records().empty());
    }
    /// What the modules got, by their view codes.
    std::string received() {
        std::string text;
        for (const auto& [view, module] : m_modules) {
            for (const auto& node : module->rootNode()->children())
                text += std::to_string(view) + ":" + node->path() + " ";
        }
        return text;
    }

    struct Window final : MainView {
        void changeViewTo(std::uint8_t view) override { shown.push_back(view); }
        std::vector<int> shown;
    } m_window;
    std::map<int, FakeView*> m_modules;
    ExtensionsScanController* m_extensions = nullptr;
    std::unique_ptr<DraggedFilesController> m_files;
    int m_finished = 0;
};

TEST_F(DraggedFilesTest, FilesGoWhereThePersonSaysAndTheListIsEmptyThen) {
    choose(&DraggedFilesController::uninstallApps, {"/a.app", "/Users/sam/Library/Widgets/A.wdgt"});
    choose(&DraggedFilesController::quickRemove, {"/b"});
    choose(&DraggedFilesController::slimApps, {"/c"});
    choose(&DraggedFilesController::close, {"/d"});
    EXPECT_EQ(received(), "3:/c 4:/c 5:/c 7:/a.app 8:/b ");
    EXPECT_EQ(textOf(*m_extensions->uninstallControllers()[0]->rootNode()), "[x] A 4000\n");
    EXPECT_THAT(m_window.shown, ElementsAre(7, 8, 3));
    EXPECT_EQ(m_finished, 4);
}

TEST_F(DraggedFilesTest, DropTargetsTakeFilesAndNothingElse) {
    ADDropImageView area(*m_modules[7], m_world.log);
    ADDropButton button(*m_modules[8], m_world.log);
    Drag files;
    files.offersFileNames = true;
    files.fileNames = {"/a.app"};
    Drag rows;
    rows.offersOwnPaths = true;
    rows.ownPaths = {"/row"};
    Drag copied = files;
    copied.allowsGenericOperation = false;
    Drag empty = files;
    empty.fileNames.reset();
    empty.source = "x\ny";
    for (const auto& refused : {copied, rows, Drag()}) {
        EXPECT_FALSE(area.draggingEntered(refused));
        EXPECT_FALSE(area.performDragOperation(refused));
    }
    EXPECT_FALSE(area.showsFullImage());
    EXPECT_TRUE(area.draggingEntered(files));
    EXPECT_TRUE(area.showsFullImage());
    area.draggingEnded();
    EXPECT_FALSE(area.showsFullImage());
    EXPECT_FALSE(area.performDragOperation(empty));
    EXPECT_THAT(m_world.log.lines(), testing::Contains("Dragging Error for sender x\ny"));
    EXPECT_TRUE(area.performDragOperation(files));
    EXPECT_TRUE(button.performDragOperation(rows));
    m_world.waitUntil([this] { return !m_world.coordinator->isScanning(); });
    EXPECT_EQ(received(), "7:/a.app 8:/row ");
}

} // namespace
} // namespace sweeply
