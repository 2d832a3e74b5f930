#pragma once

#include <QPushButton>
#include <functional>
#include <memory>

class QTemporaryDir;

namespace sweeply {

/// Writes a sample volume to try things on, in a temporary folder, which goes with the button, or in one that the
/// person chooses. Main thread.
class SampleButton final : public QPushButton {
  public:
    /// `made` gets the folder of this machine that holds the sample; `failed`, why there is none.
    SampleButton(std::function<void(const QString&)> made, std::function<void(const QString&)> failed);
    ~SampleButton() override;

    void makeTemporary();

  private:
    void makeInChosenFolder();
    void makeIn(const QString& folder);

    const std::function<void(const QString&)> m_made;
    const std::function<void(const QString&)> m_failed;
    std::unique_ptr<QTemporaryDir> m_temporary;
};

} // namespace sweeply
