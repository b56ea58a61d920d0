#include "settings2/config_descriptor.h"

namespace settings2 {
namespace {

class node_t : public IConfigDescriptorHierarchyNode
{
public:
    node_t(std::wstring name, std::wstring title, std::shared_ptr<const IConfigDescriptor> descriptor)
        : m_name(std::move(name)), m_title(std::move(title)), m_descriptor(std::move(descriptor))
    {
    }
    std::wstring getName() const override { return m_name; }
    std::wstring getTitle() const override { return m_title; }
    bool isGroup() const override { return !m_descriptor; }
    std::shared_ptr<const IConfigDescriptor> getDescriptor() const override { return m_descriptor; }
    std::vector<std::shared_ptr<IConfigDescriptorHierarchyNode>> getChildren() const override
    {
        return {m_children.begin(), m_children.end()};
    }

    std::vector<std::shared_ptr<node_t>> m_children;

private:
    std::wstring m_name, m_title;
    std::shared_ptr<const IConfigDescriptor> m_descriptor;
};

std::shared_ptr<node_t> find(const std::shared_ptr<node_t>& node, const std::wstring& name)
{
    if (node->getName() == name)
        return node;
    for (const auto& child : node->m_children)
        if (auto found = find(child, name))
            return found;
    return nullptr;
}

class registry_t : public IConfigDescriptorRegistry
{
public:
    std::shared_ptr<IConfigDescriptorHierarchyNode> getRootNode() const override { return m_root; }

    void addDescriptor(std::shared_ptr<const IConfigDescriptor> descriptor, const std::wstring& group) override
    {
        if (!descriptor)
            return;
        std::shared_ptr<node_t> parent = group.empty() ? m_root : find(m_root, group);
        if (!parent || !parent->isGroup()) {
            parent = std::make_shared<node_t>(group, group, nullptr);
            m_root->m_children.push_back(parent);
        }
        const std::wstring name = descriptor->getName();
        const std::wstring title = descriptor->getTitle();
        parent->m_children.push_back(std::make_shared<node_t>(name, title, std::move(descriptor)));
    }

    std::shared_ptr<IConfigDescriptorHierarchyNode> findNode(const std::wstring& name) const override
    {
        return find(m_root, name);
    }

private:
    std::shared_ptr<node_t> m_root = std::make_shared<node_t>(rootGroupName, rootGroupName, nullptr);
};

} // namespace

std::shared_ptr<IConfigDescriptorRegistry> createConfigDescriptorRegistry()
{
    return std::make_shared<registry_t>();
}

} // namespace settings2
