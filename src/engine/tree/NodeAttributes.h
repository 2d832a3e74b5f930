#pragma once

#include "engine/tree/Evidence.h"
#include "engine/tree/Icon.h"
#include "platform/ItemIdentity.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace sweeply {

/// What an entry of a tree is, wherever it stands: its name, its path, its picture, and what the faces and the modules
/// note about it. A name that is the path's last component is not stored twice.
class NodeAttributes {
  public:
    [[nodiscard]] std::string_view name() const;
    void setName(std::string_view name);
    /// Absolute target path; empty for a group that is no item itself.
    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] Icon icon() const { return m_icon; }
    void setIcon(Icon icon) { m_icon = icon; }
    [[nodiscard]] std::int8_t type() const { return m_type; }
    void setType(std::int8_t type) { m_type = type; }
    [[nodiscard]] bool isRootNode() const { return m_isRootNode; }
    void setAsRootNode() { m_isRootNode = true; }
    /// Should a removal pause before this group?
    [[nodiscard]] bool shouldWait() const { return m_shouldWait; }
    void setShouldWait(bool shouldWait) { m_shouldWait = shouldWait; }
    /// Should an outline show it expanded?
    [[nodiscard]] bool needExpand() const { return m_needExpand; }
    void setNeedExpand(bool needExpand) { m_needExpand = needExpand; }
    /// What the item was when it was found.
    [[nodiscard]] const ItemIdentity& seen() const { return m_seen; }
    void setSeen(const ItemIdentity& seen) { m_seen = seen; }
    /// Is its check mark remembered in the ignore list?
    [[nodiscard]] bool storeState() const { return m_storeState; }
    void setStoreState(bool storeState) { m_storeState = storeState; }
    /// Does only a click on itself check it, and not one on a group above?
    [[nodiscard]] bool isCheckedAlone() const { return m_isCheckedAlone; }
    void setCheckedAlone(bool isCheckedAlone) { m_isCheckedAlone = isCheckedAlone; }
    /// Why it is listed; nullptr for a group that is no item itself.
    [[nodiscard]] const Evidence* evidence() const { return m_evidence.get(); }
    /// The same, to be shared.
    [[nodiscard]] const SharedEvidence& sharedEvidence() const { return m_evidence; }
    void setEvidence(SharedEvidence evidence) { m_evidence = std::move(evidence); }

  protected:
    NodeAttributes() = default;
    NodeAttributes(std::string_view name, Icon icon, std::string path, std::int8_t type);
    ~NodeAttributes() = default;
    /// Another path under the same name.
    void replacePath(std::string path);

  private:
    std::string m_path;
    std::string m_name; ///< empty when it is the last component of m_path
    SharedEvidence m_evidence;
    ItemIdentity m_seen;
    Icon m_icon = Icon::None;
    std::int8_t m_type = 0;
    bool m_isRootNode : 1 = false;
    bool m_shouldWait : 1 = true;
    bool m_needExpand : 1 = false;
    bool m_storeState : 1 = false;
    bool m_isNamedByPath : 1 = false;
    bool m_isCheckedAlone : 1 = false;
};

} // namespace sweeply
