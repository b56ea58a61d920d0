// The IDE interfaces: what an implementation inherits when it overrides
// nothing but the abstract operations, and the shape of the hierarchy that
// an IDE built separately relies on.
#include "eil1/eil1.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace eil1;

// Whether Derived can be reached from Base by static_cast: not when Base is
// a virtual base of Derived (or an ambiguous one).
template <class Base, class Derived, class = void> struct downcastable : std::false_type
{
};
template <class Base, class Derived>
struct downcastable<Base, Derived,
                    std::void_t<decltype(static_cast<Derived*>(std::declval<Base*>()))>>
    : std::true_type
{
};
template <class Base, class Derived>
constexpr bool non_virtual_base =
    std::is_base_of_v<Base, Derived>&& downcastable<Base, Derived>::value;
template <class Base, class Derived>
constexpr bool virtual_base =
    std::is_base_of_v<Base, Derived> && !downcastable<Base, Derived>::value;

static_assert(non_virtual_base<IVisual, IWindow> &&
              non_virtual_base<INativeWindowHolder, IWindow> &&
              non_virtual_base<IHelpViewer, IWindow>);
static_assert(virtual_base<IWindow, IToolWindow> && virtual_base<IWindow, IEditorWindow>);
static_assert(non_virtual_base<IWindow, INativeEditor>);
static_assert(non_virtual_base<IVisual, IWizard>);
static_assert(non_virtual_base<IVisual, IWizardPage> &&
              non_virtual_base<INativeWindowHolder, IWizardPage>);
static_assert(non_virtual_base<INativeWindowHolder, IOptionPage>);
static_assert(non_virtual_base<IItem, IFolder> && non_virtual_base<IFolder, IProject> &&
              non_virtual_base<IItem, IProject>);
static_assert(std::is_base_of_v<basekit2::object_interface_t, IBreakpoint> &&
              std::is_base_of_v<basekit2::object_interface_t, ISearchDirs> &&
              std::is_base_of_v<basekit2::object_interface_t, IProjectConfigurations>);
static_assert(!std::is_base_of_v<IMessageBridge, IMessageBridgeEx> &&
              !std::is_base_of_v<IVisual, IOutputWindow>);
static_assert(std::is_same_v<decltype(std::declval<IDE_Env&>().GetBreakpoint(0u)),
                             basekit2::sptr_t<IBreakpoint>>);

// Every interface can be destroyed through itself and copied.
template <class... I>
constexpr bool all_have_virtual_destructors = (std::has_virtual_destructor_v<I> && ...);
template <class... I> constexpr bool all_copy_assignable = (std::is_copy_assignable_v<I> && ...);
static_assert(
    all_have_virtual_destructors<
        IDE_Env, IDE_Info, IDECallbackInterface, ISolutionCallback, IBuildCallback, IDebugCallback,
        IWindowCallBack, IFeatureInfoCallback, IComboBoxCallBack, IMarkAndHighlightingCallBack,
        IVisual, INativeWindowHolder, IHelpViewer, IWindow, IToolWindow, IEditorWindow,
        INativeEditor, IOutputWindow, IStatusBar, IProgressBar, ICustomData, IItem, IFolder,
        IProject, IProjectConfigurations, ISearchDirs, IBreakpoint, ICommands, IComboBoxes,
        IOptionPage, IWizard, IWizardPage, IMessageBridge, IMessageBridgeEx>);
static_assert(all_copy_assignable<IDE_Env, IDE_Info, IDECallbackInterface, ISolutionCallback,
                                  IWindow, IToolWindow, INativeEditor, IProject, IBreakpoint,
                                  IMessageBridge, IMessageBridgeEx>);

// Implementations of the abstract operations only. An editor window reaches
// its IVisual through IWindow (see eil1/windows.h).
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winaccessible-base"
#endif
template <class Base> struct window_ops : Base
{
    bool IsVisible() override { return true; }
    void SetVisible(bool) override {}
    void* GetNativeWindow() override { return nullptr; }
    bool ShowHelp(const wchar_t*) override { return false; }
    const wchar_t* GetCaption() override { return L"w"; }
    void Activate() override {}
    bool Close() override { return true; }
    void SetWindowCallback(IWindowCallBack*) override {}
};

struct bare_editor : window_ops<INativeEditor>
{
    const wchar_t* GetFilePath() override { return L"/src/a.c"; }
    bool GoToLine(long) override { return false; }
};

struct bare_editor_window : window_ops<IEditorWindow>
{
    const wchar_t* GetDocumentPath() override { return L"/src/a.c"; }
    bool IsModified() override { return false; }
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

struct bare_output : IOutputWindow
{
    void Write(int, const wchar_t*) override {}
    void Clear(int) override {}
};

struct bare_info : IDE_Info
{
    const wchar_t* GetIdeName() override { return L"ide"; }
};

struct bare_ide_callback : IDECallbackInterface
{
    void OnLoad(IDE_Env*) override {}
};

struct bare_item : IItem
{
    const wchar_t* GetName() override { return L"a.c"; }
    const wchar_t* GetPath() override { return L"/src/a.c"; }
};

struct bare_project : IProject
{
    const wchar_t* GetName() override { return L"p"; }
    const wchar_t* GetPath() override { return L"/src"; }
    unsigned int GetItemCount() override { return 0; }
    IItem* GetItem(unsigned int) override { return nullptr; }
    const wchar_t* GetTargetPath() override { return L"/src/a"; }
    const wchar_t* GetWorkingDirectory() override { return L"/src"; }
    basekit2::sptr_t<IProjectConfigurations> GetConfigurations() override { return {}; }
    basekit2::sptr_t<ISearchDirs> GetSearchDirs() override { return {}; }
};

struct bare_breakpoint : IBreakpoint
{
    const wchar_t* GetFile() override { return L"/src/a.c"; }
    long GetLine() override { return 3; }
    const wchar_t* GetFunction() override { return L"main"; }
};

struct bare_env : IDE_Env
{
    IDE_Info* GetIdeInfo() override { return nullptr; }
    void* GetMainWindow() override { return nullptr; }
    IDE_Mode GetIdeMode() override { return IDE_Mode::Design; }
    void SetCallback(IDECallbackInterface*) override {}
    IStatusBar* GetStatusBar() override { return nullptr; }
    IOutputWindow* GetOutputWindow() override { return nullptr; }
    IProgressBar* GetProgressBar() override { return nullptr; }
    ICommands* GetCommands() override { return nullptr; }
    IComboBoxes* GetComboBoxes() override { return nullptr; }
    bool OpenDocument(const wchar_t*, long) override { return false; }
};

// Answers written as text, so that one table holds every kind.
std::string text(bool v)
{
    return v ? "true" : "false";
}
std::string text(const wchar_t* v)
{
    return v ? "\"" + std::string(v, v + std::wcslen(v)) + "\"" : "null";
}
std::string text(const void* v)
{
    return v ? "object" : "null";
}
std::string span(const INativeEditor::EditorTextSpan& s)
{
    return "span " + std::to_string(s.start_line) + " " + std::to_string(s.start_column) + " " +
           std::to_string(s.end_line) + " " + std::to_string(s.end_column);
}
template <class E> std::string value(E e)
{
    return "value " + std::to_string(static_cast<long long>(e));
}
// Operations that answer nothing: they must run, and leave the object as it was.
const std::string nothing = "(nothing)";

struct row_t
{
    const char* operation;
    std::function<std::string()> call;
    std::string expected;
};

TEST(Eil1Defaults, AnImplementationThatOverridesNothingGetsTheDocumentedAnswers)
{
    bare_env env;
    bare_ide_callback ide;
    struct : ISolutionCallback
    {
    } solution;
    struct : IBuildCallback
    {
    } build;
    struct : IDebugCallback
    {
    } debug;
    struct : IWindowCallBack
    {
    } window_callback;
    bare_editor editor;
    bare_editor_window editor_window;
    bare_output output;
    bare_item item;
    bare_project project;
    bare_info info;
    const auto breakpoint = basekit2::make_intrusive<basekit2::ref_counted_t<bare_breakpoint>>();
    INativeEditor::EditorTextSpan span_in{2, 1, 2, 5};
    IItem* items[] = {&item};
    std::vector<IDE_Env::StackFrame> frames;
    auto run = [](auto f) {
        return [f]() {
            f();
            return nothing;
        };
    };

    const row_t table[] = {
        // IDE_Env
        {"IDE_Env::SetWindowVisibility", run([&] { env.SetWindowVisibility(L"Problems", true); }),
         nothing},
        {"IDE_Env::Quit", [&] { return text(env.Quit()); }, "true"},
        {"IDE_Env::GetMessageBridge", [&] { return text(env.GetMessageBridge()); }, "null"},
        {"IDE_Env::SetBuildCallback", run([&] { env.SetBuildCallback(&build); }), nothing},
        {"IDE_Env::IsBuildStateInProgress", [&] { return text(env.IsBuildStateInProgress()); },
         "false"},
        {"IDE_Env::GetProjectByID", [&] { return text(env.GetProjectByID(L"p")); }, "null"},
        {"IDE_Env::GetBeforeBuildOption", [&] { return value(env.GetBeforeBuildOption()); },
         "value 3"},
        {"IDE_Env::Save", run([&] { env.Save(IDE_Env::BeforeBuild::SaveAll); }), nothing},
        {"IDE_Env::Attach", [&] { return text(env.Attach(42)); }, "false"},
        {"IDE_Env::AttachEx",
         [&] { return value(env.AttachEx(42, IDE_Env::DebuggerType::Gdb, L"")); }, "value 1"},
        {"IDE_Env::Detach", [&] { return text(env.Detach(42, true)); }, "false"},
        {"IDE_Env::Continue", [&] { return text(env.Continue(true)); }, "false"},
        {"IDE_Env::Pause", [&] { return text(env.Pause(false)); }, "false"},
        {"IDE_Env::StepOver", [&] { return text(env.StepOver(true)); }, "false"},
        {"IDE_Env::StepInto", [&] { return text(env.StepInto(true)); }, "false"},
        {"IDE_Env::StepOut", [&] { return text(env.StepOut(true)); }, "false"},
        {"IDE_Env::GetActiveEditorFile", [&] { return text(env.GetActiveEditorFile()); }, "\"\""},
        {"IDE_Env::GetNativeEditor", [&] { return text(env.GetNativeEditor(L"/src/a.c")); },
         "null"},
        {"IDE_Env::AddSolutionCallback", run([&] { env.AddSolutionCallback(&solution); }), nothing},
        {"IDE_Env::RemoveSolutionCallback", run([&] { env.RemoveSolutionCallback(&solution); }),
         nothing},
        {"IDE_Env::AddDebugCallback", run([&] { env.AddDebugCallback(&debug); }), nothing},
        {"IDE_Env::RemoveDebugCallback", run([&] { env.RemoveDebugCallback(&debug); }), nothing},
        {"IDE_Env::ExecutionCommand", run([&] { env.ExecutionCommand(7); }), nothing},
        {"IDE_Env::GetBreakpointsCount", [&] { return std::to_string(env.GetBreakpointsCount()); },
         "0"},
        {"IDE_Env::GetBreakpoint", [&] { return text(env.GetBreakpoint(0).get()); }, "null"},
        {"IDE_Env::ActivateDebuggedThreadByID",
         [&] { return text(env.ActivateDebuggedThreadByID(1)); }, "false"},
        {"IDE_Env::GetStackFramesByThreadID",
         [&] {
             env.GetStackFramesByThreadID(1, frames);
             return std::to_string(frames.size()) + " frames";
         },
         "0 frames"},
        {"IDE_Env::ClientCoreWasLoaded", run([&] { env.ClientCoreWasLoaded(); }), nothing},
        {"IDE_Env::OpenRecentProject", run([&] { env.OpenRecentProject(L"/p/project.corrproj"); }),
         nothing},
        {"IDE_Env::OpenRecentResult", run([&] { env.OpenRecentResult(L"/p/r/r.corr"); }), nothing},
        // IDECallbackInterface
        {"IDECallbackInterface::QueryPageChange",
         [&] { return text(ide.QueryPageChange(nullptr)); }, "true"},
        {"IDECallbackInterface::OnCommand(items)", [&] { return text(ide.OnCommand(5, items, 1)); },
         "false"},
        {"IDECallbackInterface::OnCommand", run([&] { ide.OnCommand(5); }), nothing},
        {"IDECallbackInterface::OnPreUnload", run([&] { ide.OnPreUnload(); }), nothing},
        {"IDECallbackInterface::OnChangeActiveDocumentWindow(file)",
         run([&] { ide.OnChangeActiveDocumentWindow(&editor, L"/src/a.c"); }), nothing},
        {"IDECallbackInterface::OnChangeActiveDocumentWindow",
         run([&] { ide.OnChangeActiveDocumentWindow(&editor); }), nothing},
        {"IDECallbackInterface::OnChangeIDEMode",
         run([&] { ide.OnChangeIDEMode(IDE_Mode::Debug); }), nothing},
        {"IDECallbackInterface::OnQueryUnload", [&] { return text(ide.OnQueryUnload()); }, "true"},
        {"IDECallbackInterface::OnCompare", run([&] { ide.OnCompare(L"a.sup", L"b.sup"); }),
         nothing},
        {"IDECallbackInterface::OnWindowSize",
         [&] { return text(ide.OnWindowSize(nullptr, 10, 10)); }, "false"},
        {"IDECallbackInterface::OnOpenHelp", [&] { return text(ide.OnOpenHelp(L"topic")); },
         "false"},
        {"IDECallbackInterface::OnOpenWindow",
         [&] { return text(ide.OnOpenWindow(WindowRole::Tool, nullptr)); }, "false"},
        // ISolutionCallback: every query allows.
        {"ISolutionCallback::ProjectAdded", run([&] { solution.ProjectAdded(&project); }), nothing},
        {"ISolutionCallback::QueryProjectRemove",
         [&] { return text(solution.QueryProjectRemove(&project)); }, "true"},
        {"ISolutionCallback::QueryProjectRename",
         [&] { return text(solution.QueryProjectRename(&project, L"q")); }, "true"},
        {"ISolutionCallback::QueryProjectItemRename",
         [&] { return text(solution.QueryProjectItemRename(&project, L"a.c", L"b.c")); }, "true"},
        {"ISolutionCallback::ProjectItemDeleted", run([&] { solution.ProjectItemDeleted(L"a.c"); }),
         nothing},
        {"ISolutionCallback::StartUpProjectChanged",
         run([&] { solution.StartUpProjectChanged(&project); }), nothing},
        {"ISolutionCallback::OnSaveDocument", run([&] { solution.OnSaveDocument(L"/src/a.c"); }),
         nothing},
        {"ISolutionCallback::NewProjectCreation",
         [&] { return text(solution.NewProjectCreation(&project)); }, "true"},
        {"ISolutionCallback::ProjectCreationCanceled",
         run([&] { solution.ProjectCreationCanceled(&project); }), nothing},
        {"ISolutionCallback::QueryProjectItemRemove",
         [&] { return text(solution.QueryProjectItemRemove(&project, &item)); }, "true"},
        {"ISolutionCallback::QueryProjectItemsRemove",
         [&] { return text(solution.QueryProjectItemsRemove(items, 1)); }, "true"},
        {"ISolutionCallback::QueryCloseSolution",
         [&] { return text(solution.QueryCloseSolution()); }, "true"},
        // IBuildCallback, IDebugCallback
        {"IBuildCallback::BuildStarted", run([&] { build.BuildStarted(&project); }), nothing},
        {"IBuildCallback::BuildFinished", run([&] { build.BuildFinished(&project); }), nothing},
        {"IDebugCallback::OnCustomStoppingDebug",
         [&] { return text(debug.OnCustomStoppingDebug(3, L"why")); }, "true"},
        {"IDebugCallback::OnExceptionNotHandled",
         [&] { return value(debug.OnExceptionNotHandled(L"std::bad_alloc", L"", 1, L"a.c:3")); },
         "value 1"},
        // IWindowCallBack
        {"IWindowCallBack::OnSetFocus", run([&] { window_callback.OnSetFocus(&editor); }), nothing},
        {"IWindowCallBack::OnLostFocus",
         run([&] { window_callback.OnLostFocus(&editor, nullptr); }), nothing},
        {"IWindowCallBack::OnClose", [&] { return text(window_callback.OnClose(&editor)); },
         "true"},
        {"IWindowCallBack::CanDrop",
         [&] { return text(window_callback.CanDrop(&editor, &project, L"a.c", 1, 1)); }, "false"},
        {"IWindowCallBack::OnDrop",
         run([&] { window_callback.OnDrop(&editor, &project, L"a.c", 1, 1); }), nothing},
        {"IWindowCallBack::OnShow", run([&] { window_callback.OnShow(&editor, false); }), nothing},
        {"IWindowCallBack::OnBeforeReparent",
         run([&] { window_callback.OnBeforeReparent(&editor); }), nothing},
        {"IWindowCallBack::OnAfterReparent", run([&] { window_callback.OnAfterReparent(&editor); }),
         nothing},
        // IEditorWindow, IOutputWindow
        {"IEditorWindow::SetTabTooltip then GetTabTooltip",
         [&] {
             editor_window.SetTabTooltip(L"tip");
             return text(editor_window.GetTabTooltip());
         },
         "\"\""},
        {"IOutputWindow::WriteFromGUI", run([&] { output.WriteFromGUI(0, L"line"); }), nothing},
        // INativeEditor: read-only, no lines, no edit points, no lock; changes change nothing.
        {"INativeEditor::IsReadOnly", [&] { return text(editor.IsReadOnly()); }, "false"},
        {"INativeEditor::GetLineCount", [&] { return std::to_string(editor.GetLineCount()); }, "0"},
        {"INativeEditor::InsertLine, SetLineText then GetLineCount",
         [&] {
             editor.InsertLine(1, L"int x;");
             editor.SetLineText(1, L"int y;");
             return std::to_string(editor.GetLineCount());
         },
         "0"},
        {"INativeEditor::DeleteLine", run([&] { editor.DeleteLine(1); }), nothing},
        {"INativeEditor::GetLineText", [&] { return text(editor.GetLineText(1)); }, "\"\""},
        {"INativeEditor::GetSelectionSpan", [&] { return span(editor.GetSelectionSpan()); },
         "span 0 0 0 0"},
        {"INativeEditor::AddEditPoint",
         [&] { return std::to_string(editor.AddEditPoint(&span_in)); }, "4294967295"},
        {"INativeEditor::GetEditPoint", [&] { return span(editor.GetEditPoint(0)); },
         "span 0 0 0 0"},
        {"INativeEditor::GetEditPointText", [&] { return text(editor.GetEditPointText(0)); },
         "\"\""},
        {"INativeEditor::DeleteEditPoint", run([&] { editor.DeleteEditPoint(0); }), nothing},
        {"INativeEditor::LockTextBuffer", [&] { return text(editor.LockTextBuffer()); }, "false"},
        {"INativeEditor::UnLockTextBuffer", run([&] { editor.UnLockTextBuffer(); }), nothing},
        // The project model.
        {"IItem::GetHostProject", [&] { return text(item.GetHostProject()); }, "null"},
        {"IProject::GetHostProject (from IItem)", [&] { return text(project.GetHostProject()); },
         "null"},
        {"IProject::Save", run([&] { project.Save(); }), nothing},
        {"IProject::SetData then GetData",
         [&] {
             project.SetData(nullptr, L"corr");
             return text(project.GetData(L"corr"));
         },
         "null"},
        {"IProject::RemoveFile", run([&] { project.RemoveFile(L"/src/a.c"); }), nothing},
        {"IProject::GetProjectID", [&] { return text(project.GetProjectID()); }, "\"\""},
        {"IProject::IsReadOnly", [&] { return text(project.IsReadOnly()); }, "false"},
        {"IProject::GetDebuggerType", [&] { return value(project.GetDebuggerType()); }, "value 0"},
        {"IProject::GetProjectDependenciesCount",
         [&] { return std::to_string(project.GetProjectDependenciesCount()); }, "0"},
        {"IProject::GetDependencyProject", [&] { return text(project.GetDependencyProject(0)); },
         "null"},
        {"IBreakpoint::IsEnabled", [&] { return text(breakpoint->IsEnabled()); }, "false"},
        {"IBreakpoint::GetType", [&] { return value(breakpoint->GetType()); }, "value 0"},
        // IDE_Info
        {"IDE_Info::GetIdeVersion",
         [&] {
             IDE_Info::IdeVersion version{7, 7, true};
             const bool ok = info.GetIdeVersion(&version);
             return text(ok) + " " + std::to_string(version.major_version) + " " +
                    std::to_string(version.minor_version) + " " + text(version.prerelease);
         },
         "true 1 0 false"},
        {"IDE_Info::GetIdeVersion(null)", [&] { return text(info.GetIdeVersion(nullptr)); },
         "false"},
    };
    for (const row_t& row : table)
        EXPECT_EQ(row.call(), row.expected) << row.operation;
}

TEST(Eil1Defaults, AReferenceCountedBreakpointLivesAsLongAsItsPointers)
{
    struct counted_breakpoint : bare_breakpoint
    {
        explicit counted_breakpoint(int* deleted) : m_deleted(deleted) {}
        ~counted_breakpoint() override { ++*m_deleted; }
        int* m_deleted;
    };
    int deleted = 0;
    basekit2::sptr_t<IBreakpoint> kept;
    {
        const auto made =
            basekit2::make_intrusive<basekit2::ref_counted_t<counted_breakpoint>>(&deleted);
        kept = made;
        EXPECT_EQ(made->ref_count(), 2);
    }
    EXPECT_EQ(deleted, 0);
    EXPECT_EQ(kept->GetLine(), 3);
    kept.reset();
    EXPECT_EQ(deleted, 1);
}

} // namespace
