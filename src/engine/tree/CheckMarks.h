#pragma once

namespace sweeply {

class Node;

/// How a check box looks.
enum class CheckState : int { Unchecked = 0, Checked = 1, Mixed = -1 };

/// What check marks say of a tree, and what setting one does to the marks and sizes around it. The rules are written in
/// Node's public operations, which keep its sums; Node offers each under the same name and says what it does.
namespace checkmarks {

[[nodiscard]] CheckState state(const Node& node);
[[nodiscard]] CheckState stateFromChildrenStates(const Node& node);
void setEnabled(Node& node, bool enabled, int direction);
void becomeEnabled(Node& node, bool enabled);
void setEveryChildEnabled(Node& node, bool enabled);
void silentSetEveryChildEnabled(Node& node, bool enabled);

} // namespace checkmarks

} // namespace sweeply
