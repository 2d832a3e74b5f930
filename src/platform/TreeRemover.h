#pragma once

#include "platform/Error.h"
#include "platform/SystemCalls.h"

#include <string>

namespace sweeply {

/// Removes the item `name` of the open folder `parent` and everything below it, children first. `name` is one
/// component; an O_PATH descriptor will do.
///
/// - A link goes as a link; none is ever followed, also where one takes a folder's place meanwhile.
/// - Nothing mounted in the tree is entered or removed, nor is the item itself when it is a mount point.
/// - What cannot be removed is passed over. The error is the first one met; its path starts with `name`.
/// - What vanishes meanwhile is as good as removed, but an item that was never there is NotFound.
///
/// Any depth works with a bounded stack and a bounded number of descriptors. Blocks until all is done; in a big tree a
/// second thread helps. Any number of threads may remove at once, even the same tree.
Result<void> removeTree(int parent, const std::string& name, SystemCalls& calls = SystemCalls::plain());

} // namespace sweeply
