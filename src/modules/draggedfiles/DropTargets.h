#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sweeply {

class ADScanControllerView;
class SystemLog;

/// What hovers over a drop target.
struct Drag {
    /// The source leaves it to the target what becomes of the items, and does not insist on copying or linking.
    bool allowsGenericOperation = true;
    /// The types on offer, and their paths where the data is really there.
    bool offersFileNames = false;
    bool offersOwnPaths = false; ///< rows of our own result lists
    std::optional<std::vector<std::string>> fileNames;
    std::optional<std::vector<std::string>> ownPaths;
    /// Where it comes from, for the log.
    std::string source;
};

/// A place on screen that takes files for a module. Main thread.
class DropTarget {
  public:
    virtual ~DropTarget() = default;

    /// Does it take this? It looks full as long as the drag stays.
    bool draggingEntered(const Drag& drag);
    void draggingExited() { showImage(false); }
    void draggingEnded() { showImage(false); }
    [[nodiscard]] bool prepareForDragOperation(const Drag& drag) const { return accepts(drag); }
    /// Hands the paths to the module; false when there are none, which is logged.
    bool performDragOperation(const Drag& drag);

    [[nodiscard]] bool showsFullImage() const { return m_showsFullImage; }
    /// Called when it has to be drawn anew.
    void setNeedsDisplay(std::function<void()> needsDisplay) { m_needsDisplay = std::move(needsDisplay); }

  protected:
    /// Both outlive this.
    DropTarget(ADScanControllerView& delegate, SystemLog& log) : m_delegate(delegate), m_log(log) {}

  private:
    [[nodiscard]] virtual bool takesOwnPaths() const = 0;
    [[nodiscard]] virtual const char* complaint() const = 0;
    [[nodiscard]] bool accepts(const Drag& drag) const;
    void showImage(bool full);

    ADScanControllerView& m_delegate;
    SystemLog& m_log;
    std::function<void()> m_needsDisplay = [] {};
    bool m_showsFullImage = false;
};

/// The large area of an empty result view. Takes files of the desktop only.
class ADDropImageView final : public DropTarget {
  public:
    ADDropImageView(ADScanControllerView& delegate, SystemLog& log) : DropTarget(delegate, log) {}

  private:
    [[nodiscard]] bool takesOwnPaths() const override { return false; }
    [[nodiscard]] const char* complaint() const override { return "Dragging Error for sender %@"; }
};

/// A button that takes files of the desktop and rows of our own lists.
class ADDropButton final : public DropTarget {
  public:
    ADDropButton(ADScanControllerView& delegate, SystemLog& log) : DropTarget(delegate, log) {}

  private:
    [[nodiscard]] bool takesOwnPaths() const override { return true; }
    [[nodiscard]] const char* complaint() const override { return "Dragging Error for %@"; }
};

} // namespace sweeply
