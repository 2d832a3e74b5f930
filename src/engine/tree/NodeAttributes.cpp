#include "engine/tree/NodeAttributes.h"

#include "platform/TargetPath.h"

#include <utility>

namespace sweeply {

NodeAttributes::NodeAttributes(std::string_view name, Icon icon, std::string path, std::int8_t type)
    : m_path(std::move(path)), m_icon(icon), m_type(type) {
    setName(name);
}

std::string_view NodeAttributes::name() const { return m_isNamedByPath ? lastPathComponent(m_path) : m_name; }

void NodeAttributes::setName(std::string_view name) {
    m_isNamedByPath = !m_path.empty() && name == lastPathComponent(m_path);
    m_name = m_isNamedByPath ? std::string_view{} : name;
}

void NodeAttributes::replacePath(std::string path) {
    const std::string oldName(name());
    m_path = std::move(path);
    setName(oldName);
}

} // namespace sweeply
