#pragma once
// Descriptions of configurable things (an analysis type's settings, a group
// of analysis types) and the hierarchy they are arranged in. The launch
// dialog builds one page per descriptor and one description page per group.
#include <memory>
#include <string>
#include <vector>

namespace settings2 {

class IConfigDescriptor
{
public:
    virtual ~IConfigDescriptor() = default;
    // The name the descriptor is known by (an analysis type's identifier).
    virtual std::wstring getName() const = 0;
    // Its title for people.
    virtual std::wstring getTitle() const = 0;
    virtual std::wstring getDescription() const = 0;
};

class IConfigDescriptorHierarchyNode
{
public:
    virtual ~IConfigDescriptorHierarchyNode() = default;
    virtual std::wstring getName() const = 0;
    virtual std::wstring getTitle() const = 0;
    // True for a group (it has children, or may have); false for a leaf
    // that stands for one descriptor.
    virtual bool isGroup() const = 0;
    // The descriptor of a leaf; null for a group.
    virtual std::shared_ptr<const IConfigDescriptor> getDescriptor() const = 0;
    virtual std::vector<std::shared_ptr<IConfigDescriptorHierarchyNode>> getChildren() const = 0;
};

class IConfigDescriptorRegistry
{
public:
    virtual ~IConfigDescriptorRegistry() = default;
    // The root group; every registry has one, named rootGroupName().
    virtual std::shared_ptr<IConfigDescriptorHierarchyNode> getRootNode() const = 0;
    // Adds a descriptor as a leaf under the group of that name (made under
    // the root when missing; the root itself for an empty name).
    virtual void addDescriptor(std::shared_ptr<const IConfigDescriptor> descriptor,
                               const std::wstring& group = {}) = 0;
    // The node of that name anywhere below the root (or the root); null when none.
    virtual std::shared_ptr<IConfigDescriptorHierarchyNode> findNode(const std::wstring& name) const = 0;

    static constexpr const wchar_t* rootGroupName = L"all";
};

// A fresh registry holding only its root group.
std::shared_ptr<IConfigDescriptorRegistry> createConfigDescriptorRegistry();

// A descriptor with fixed texts.
class simple_config_descriptor_t : public IConfigDescriptor
{
public:
    simple_config_descriptor_t(std::wstring name, std::wstring title, std::wstring description = {})
        : m_name(std::move(name)), m_title(std::move(title)), m_description(std::move(description))
    {
    }
    std::wstring getName() const override { return m_name; }
    std::wstring getTitle() const override { return m_title; }
    std::wstring getDescription() const override { return m_description; }

private:
    std::wstring m_name, m_title, m_description;
};

} // namespace settings2
