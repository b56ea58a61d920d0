// Pieces of the view framework that need no window: geometry, the sender
// list, the element tree, viewers with handlers, and a combo box not bound
// to a window.
#include "uicore7/geometry.h"
#include "uicore7/sender_list.h"
#include "uiframe7/combo_box.h"
#include "uiframe7/viewer_base.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using uicore7::rectangle;

TEST(Rectangle, NormaliseAndContainsWithEdges)
{
    rectangle<int> r(10, 20, 0, 5);
    r.normalize();
    EXPECT_EQ(r, (rectangle<int>(0, 5, 10, 20)));
    EXPECT_TRUE(r.contains(0, 5));
    EXPECT_TRUE(r.contains(10, 20));
    EXPECT_FALSE(r.contains(11, 20));
    EXPECT_FALSE(r.contains(5, 4));
    EXPECT_EQ(r.intersection({5, 0, 30, 10}), (rectangle<int>(5, 5, 10, 10)));
    EXPECT_TRUE(r.intersection({20, 20, 30, 30}).empty());
    const uicore7::screen_rectangle<int> s = r;
    EXPECT_EQ(s.width(), 10);
    EXPECT_EQ(rectangle<double>::from(s).height(), 15.0);
}

namespace {
struct counter : uicore7::IListener
{
    int calls = 0;
};
struct other : uicore7::IListener
{
};
} // namespace

TEST(SenderList, SendsToListenersOfTheInterfaceAndSurvivesRemovalDuringTheWalk)
{
    auto list = uicore7::CreateDefSenderList();
    counter a, b;
    other c;
    list->AddListener(&a);
    list->AddListener(&a);
    list->AddListener(nullptr);
    list->AddListener(&c);
    list->AddListener(&b);
    EXPECT_EQ(list->GetListenerCount(), 3u);
    list->Send<counter>([&](counter& l) {
        ++l.calls;
        list->RemoveListener(&b); // b leaves before its turn
    });
    EXPECT_EQ(a.calls, 1);
    EXPECT_EQ(b.calls, 0);
    EXPECT_FALSE(list->HasListener(&b));
}

TEST(VisualElement, ReParentDetachesAndDestructionLeavesNoDanglingLinks)
{
    auto parent = std::make_unique<uiframe7::CVisualElement>();
    auto child = std::make_unique<uiframe7::CVisualElement>();
    uiframe7::CVisualElement other_parent;
    child->ReParent(parent.get(), 0);
    EXPECT_EQ(child->GetParent(), parent.get());
    child->ReParent(&other_parent, 0);
    EXPECT_TRUE(parent->GetChildren().empty());
    ASSERT_EQ(other_parent.GetChildren().size(), 1u);
    child->ReParent(nullptr, uiframe7::CVisualElement::rpSilent);
    EXPECT_TRUE(other_parent.GetChildren().empty());

    child->ReParent(parent.get(), 0);
    parent.reset(); // the child stays, without a parent
    EXPECT_EQ(child->GetParent(), nullptr);
    child->ReParent(&other_parent, 0);
    child.reset(); // and a destroyed child leaves its parent
    EXPECT_TRUE(other_parent.GetChildren().empty());
    EXPECT_EQ(other_parent.GetHost(), nullptr);
}

namespace {
struct handler : uiframe7::CEventHandler
{
    std::vector<int>* order;
    int id;
    bool set_handled = false;
    bool consume = false;
    handler(std::vector<int>* o, int i) : order(o), id(i) {}
    bool ProcessButtonDown(int, int, int, uicore7::MouseButton, bool* handled) override
    {
        order->push_back(id);
        if (set_handled)
            *handled = true;
        return consume;
    }
};
struct viewer : uiframe7::CViewerBase
{
    int own = 0;
    bool ViewerButtonDown(int, int, int, uicore7::MouseButton) override
    {
        ++own;
        return true;
    }
};
} // namespace

TEST(ViewerBase, HandlersGoFirstAndCanStopTheViewer)
{
    std::vector<int> order;
    handler first(&order, 1), second(&order, 2);
    viewer v;
    v.AddEventHandler(&first);
    v.AddEventHandler(&second);
    v.AddEventHandler(&first);
    EXPECT_EQ(v.GetEventHandlerCount(), 2u);

    v.OnMouseDown(1, 2, 0, uicore7::mbLeft);
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_EQ(v.own, 1);

    first.set_handled = true; // later handlers still see it, the viewer does not
    v.OnMouseDown(1, 2, 0, uicore7::mbLeft);
    EXPECT_EQ(order, (std::vector<int>{1, 2, 1, 2}));
    EXPECT_EQ(v.own, 1);

    first.set_handled = false;
    first.consume = true; // returning true stops everything after it
    v.OnMouseDown(1, 2, 0, uicore7::mbLeft);
    EXPECT_EQ(order, (std::vector<int>{1, 2, 1, 2, 1}));
    EXPECT_EQ(v.own, 1);

    EXPECT_TRUE(v.RemoveEventHandler(&first));
    EXPECT_FALSE(v.RemoveEventHandler(&first));
    v.OnMouseDown(1, 2, 0, uicore7::mbLeft);
    EXPECT_EQ(v.own, 2);
}

namespace {
struct choice_listener : uiframe7::IComboBoxEvents
{
    std::vector<int> items;
    void CBOnChoicItem(uiframe7::CComboBox*, int item) override { items.push_back(item); }
};
} // namespace

TEST(ComboBox, EntriesAndSelectionWithoutAWindow)
{
    uiframe7::CComboBox combo(uicore7::CreateDefSenderList());
    choice_listener listener;
    combo.AddListener(&listener);
    EXPECT_EQ(combo.GetSenderList()->GetListenerCount(), 1u);
    EXPECT_EQ(combo.AddString(L"value"), 0);
    EXPECT_EQ(combo.AddString(L"[any]"), 1);
    combo.SetSelection(1);
    EXPECT_EQ(combo.GetSelection(), 1);
    EXPECT_EQ(combo.GetStringSelection(), L"[any]");
    EXPECT_EQ(combo.GetString(5), L"");
    EXPECT_EQ(combo.FindString(L"value"), 0);
    combo.SetSelection(7);
    EXPECT_EQ(combo.GetSelection(), -1);
    // Unbound: no editor opens, nothing ends, nobody hears of it.
    EXPECT_FALSE(combo.IsInitialized());
    EXPECT_FALSE(combo.BeginEdit({0, 0, 10, 10}, nullptr));
    combo.EndEdit(true);
    EXPECT_FALSE(combo.IsEditing());
    EXPECT_TRUE(listener.items.empty());
    combo.Clear();
    EXPECT_EQ(combo.GetCount(), 0);
    EXPECT_EQ(combo.GetSelection(), -1);
}
