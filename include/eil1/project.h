#pragma once
// The IDE's project model as the front end sees it: items, folders and
// projects, data the front end keeps in a project, a project's
// configurations and search folders, and breakpoints.
#include "eil1/types.h"

#include "basekit2/intrusive.h"

namespace eil1 {

// Data of the front end that a project saves with itself (under a key).
class CORR_DIALOGS2_API ICustomData
{
    EIL1_SPECIAL_MEMBERS(ICustomData);

    // The data as text for the project file, and back; Load answers false
    // for text it cannot read (and keeps what it had).
    virtual const wchar_t* Save() = 0;
    virtual bool Load(const wchar_t* text) = 0;
};

// A file or folder of a project.
class CORR_DIALOGS2_API IItem
{
    EIL1_SPECIAL_MEMBERS(IItem);

    virtual const wchar_t* GetName() = 0;
    // Full path of the file or folder on disk ("" for a virtual folder).
    virtual const wchar_t* GetPath() = 0;
    // The project the item belongs to (null: none known).
    virtual IProject* GetHostProject();
};

class CORR_DIALOGS2_API IFolder : public IItem
{
    EIL1_DERIVED_SPECIAL_MEMBERS(IFolder);

    virtual unsigned int GetItemCount() = 0;
    // Null for an index past the end.
    virtual IItem* GetItem(unsigned int index) = 0;
};

class IProjectConfigurations;
class ISearchDirs;

class CORR_DIALOGS2_API IProject : public IFolder
{
    EIL1_DERIVED_SPECIAL_MEMBERS(IProject);

    // Which debugger the project asks for.
    enum class DebuggerType {
        IdeDefault = 0, // whatever the IDE uses
        Native = 1,
        Gdb = 2,
        Remote = 3,
    };

    // The program the project builds, and where it runs.
    virtual const wchar_t* GetTargetPath() = 0;
    virtual const wchar_t* GetWorkingDirectory() = 0;
    virtual void Save();
    // Keeps data under a key (null removes it); the project saves it with itself.
    virtual void SetData(ICustomData* data, const wchar_t* key);
    virtual ICustomData* GetData(const wchar_t* key);
    virtual void RemoveFile(const wchar_t* file);
    // The IDE's identifier of the project ("" when it has none).
    virtual const wchar_t* GetProjectID();
    virtual bool IsReadOnly();
    virtual DebuggerType GetDebuggerType();
    virtual basekit2::sptr_t<IProjectConfigurations> GetConfigurations() = 0;
    virtual basekit2::sptr_t<ISearchDirs> GetSearchDirs() = 0;
    virtual unsigned int GetProjectDependenciesCount();
    virtual IProject* GetDependencyProject(unsigned int index);
};

// The build configurations of a project ("Debug", "Release", ...).
class CORR_DIALOGS2_API IProjectConfigurations : public basekit2::object_interface_t
{
    EIL1_REF_COUNTED_SPECIAL_MEMBERS(IProjectConfigurations)

    virtual unsigned int GetCount() = 0;
    virtual const wchar_t* GetName(unsigned int index) = 0;
    // Index of the active configuration.
    virtual unsigned int GetActive() = 0;
};

// Folders where a project's sources and headers are found.
class CORR_DIALOGS2_API ISearchDirs : public basekit2::object_interface_t
{
    EIL1_REF_COUNTED_SPECIAL_MEMBERS(ISearchDirs)

    virtual unsigned int GetCount() = 0;
    virtual const wchar_t* GetDir(unsigned int index) = 0;
};

class CORR_DIALOGS2_API IBreakpoint : public basekit2::object_interface_t
{
    EIL1_REF_COUNTED_SPECIAL_MEMBERS(IBreakpoint)

    enum class BreakpointType {
        Line = 0,     // at a line of a file
        Function = 1, // at the entry of a function
        Address = 2,  // at an instruction address
        Data = 3,     // when memory changes
    };

    virtual bool IsEnabled();
    virtual BreakpointType GetType();
    virtual const wchar_t* GetFile() = 0;
    virtual long GetLine() = 0;
    virtual const wchar_t* GetFunction() = 0;
};

} // namespace eil1
