// The hierarchy of configuration descriptors the launch dialog builds its pages from.
#include "settings2/config_descriptor.h"

#include <gtest/gtest.h>

using settings2::simple_config_descriptor_t;

TEST(ConfigDescriptors, FreshRegistryHasOnlyItsRootAndDescriptorsGoUnderGroups)
{
    auto registry = settings2::createConfigDescriptorRegistry();
    auto root = registry->getRootNode();
    ASSERT_TRUE(root);
    EXPECT_EQ(root->getName(), settings2::IConfigDescriptorRegistry::rootGroupName);
    EXPECT_TRUE(root->isGroup());
    EXPECT_TRUE(root->getChildren().empty());
    EXPECT_EQ(settings2::createConfigDescriptorRegistry()->getRootNode()->getName(), root->getName());

    registry->addDescriptor(std::make_shared<simple_config_descriptor_t>(L"mi1", L"Leaks"), L"memory");
    registry->addDescriptor(std::make_shared<simple_config_descriptor_t>(L"mi2", L"Errors"), L"memory");
    registry->addDescriptor(std::make_shared<simple_config_descriptor_t>(L"asan", L"ASan"));
    registry->addDescriptor(nullptr);

    const auto children = root->getChildren();
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0]->getName(), L"memory");
    EXPECT_TRUE(children[0]->isGroup());
    ASSERT_EQ(children[0]->getChildren().size(), 2u) << "a second descriptor joins the existing group";
    EXPECT_EQ(children[1]->getName(), L"asan");
    EXPECT_FALSE(children[1]->isGroup());

    const auto mi2 = registry->findNode(L"mi2");
    ASSERT_TRUE(mi2);
    ASSERT_TRUE(mi2->getDescriptor());
    EXPECT_EQ(mi2->getDescriptor()->getTitle(), L"Errors");
    EXPECT_EQ(registry->findNode(L"nothing"), nullptr);
}
