#include "source_pane.h"

#include "editor_launcher.h"

#include "../host/fs_text.h"
#include "../host/source_text.h"

#include "corr_dialogs2/ui_utils.h"
#include "corr_engine/engine.h"
#include "platkit/strings/convert.h"
#include "shareddlg3/file_dialogs.h"

#include <wx/button.h>
#include <wx/frame.h>
#include <wx/simplebook.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/stc/stc.h>

#include <algorithm>
#include <cctype>

namespace corrview {
namespace fs = std::filesystem;
using corr_dialogs2::translate;
using platkit::generic::varg_list;

namespace {

const char* const cpp_keywords =
    "alignas alignof asm auto bool break case catch char char8_t char16_t char32_t class const "
    "consteval constexpr constinit const_cast continue co_await co_return co_yield decltype "
    "default delete do double dynamic_cast else enum explicit export extern false float for "
    "friend goto if inline int long mutable namespace new noexcept nullptr operator private "
    "protected public register reinterpret_cast requires restrict return short signed sizeof "
    "static static_assert static_cast struct switch template this thread_local throw true try "
    "typedef typeid typename union unsigned using virtual void volatile wchar_t while _Bool "
    "_Atomic _Noreturn _Thread_local";

bool is_c_or_cpp(const fs::path& file)
{
    std::string ext = file.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const char* known : {".c", ".cc", ".cpp", ".cxx", ".c++", ".h", ".hh", ".hpp", ".hxx",
                              ".h++", ".inl", ".ipp", ".tcc", ".m", ".mm"})
        if (ext == known)
            return true;
    // Headers of the standard library have no extension at all.
    return ext.empty();
}

std::wstring shown_name(const fs::path& file)
{
    return to_text(file);
}

} // namespace

source_pane_t::source_pane_t(wxWindow* parent, source_folders_t folders)
    : wxPanel(parent), m_folders(std::move(folders))
{
    auto* top = new wxBoxSizer(wxHORIZONTAL);
    m_caption =
        new wxStaticText(this, wxID_ANY, translate(L"corrview.source.none"), wxDefaultPosition,
                         wxDefaultSize, wxST_ELLIPSIZE_START | wxST_NO_AUTORESIZE);
    m_open = new wxButton(this, wxID_ANY, translate(L"corrview.source.open_in_editor"));
    m_open->SetToolTip(translate(L"corrview.source.open_in_editor.tip"));
    top->Add(m_caption, 1, wxALIGN_CENTER_VERTICAL | wxLEFT | wxRIGHT, FromDIP(4));
    top->Add(m_open, 0, wxALL, FromDIP(2));

    m_book = new wxSimplebook(this);
    build_text();
    m_message_page = new wxPanel(m_book);
    m_message = new wxStaticText(m_message_page, wxID_ANY, wxString());
    m_locate = new wxButton(m_message_page, wxID_ANY, translate(L"corrview.source.locate"));
    m_add_folder = new wxButton(m_message_page, wxID_ANY, translate(L"corrview.source.add_folder"));
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->Add(m_locate, 0, wxRIGHT, FromDIP(6));
    buttons->Add(m_add_folder, 0);
    auto* page = new wxBoxSizer(wxVERTICAL);
    page->Add(m_message, 0, wxEXPAND | wxALL, FromDIP(8));
    page->Add(buttons, 0, wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(8));
    m_message_page->SetSizer(page);
    m_book->AddPage(m_text, wxString());
    m_book->AddPage(m_message_page, wxString());

    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(top, 0, wxEXPAND);
    sizer->Add(m_book, 1, wxEXPAND);
    SetSizer(sizer);

    m_open->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { open_in_editor(); });
    m_locate->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { on_locate(); });
    m_add_folder->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { on_add_folder(); });
    // The message wraps to the pane's width.
    m_message_page->Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        m_message->Wrap(std::max(FromDIP(100), event.GetSize().GetWidth() - FromDIP(16)));
        event.Skip();
    });
    clear();
}

source_pane_t::~source_pane_t() = default;

void source_pane_t::build_text()
{
    m_text = new wxStyledTextCtrl(m_book, wxID_ANY);
    wxStyledTextCtrl& t = *m_text;
    const wxFont font(wxFontInfo(wxNORMAL_FONT->GetPointSize()).Family(wxFONTFAMILY_TELETYPE));
    t.StyleSetFont(wxSTC_STYLE_DEFAULT, font);
    t.StyleClearAll();
    t.SetLexer(wxSTC_LEX_CPP);
    t.SetKeyWords(0, cpp_keywords);
    // Colouring only: no greying of #if branches, which costs a pass that
    // keeps every macro of a large file.
    t.SetProperty("lexer.cpp.track.preprocessor", "0");
    t.SetProperty("lexer.cpp.update.preprocessor", "0");
    const wxColour comment(0, 128, 0), keyword(0, 0, 192), text(163, 21, 21), number(9, 134, 88),
        preprocessor(128, 64, 0);
    for (int style : {wxSTC_C_COMMENT, wxSTC_C_COMMENTLINE, wxSTC_C_COMMENTDOC,
                      wxSTC_C_COMMENTLINEDOC, wxSTC_C_COMMENTDOCKEYWORD})
        t.StyleSetForeground(style, comment);
    t.StyleSetForeground(wxSTC_C_WORD, keyword);
    t.StyleSetBold(wxSTC_C_WORD, true);
    for (int style : {wxSTC_C_STRING, wxSTC_C_CHARACTER, wxSTC_C_STRINGEOL, wxSTC_C_VERBATIM,
                      wxSTC_C_STRINGRAW})
        t.StyleSetForeground(style, text);
    t.StyleSetForeground(wxSTC_C_NUMBER, number);
    t.StyleSetForeground(wxSTC_C_PREPROCESSOR, preprocessor);

    // Margin 0: line numbers; margin 1: the frame's arrow.
    t.SetMarginType(0, wxSTC_MARGIN_NUMBER);
    t.SetMarginWidth(0, t.TextWidth(wxSTC_STYLE_LINENUMBER, "_999999"));
    t.SetMarginType(1, wxSTC_MARGIN_SYMBOL);
    t.SetMarginWidth(1, FromDIP(14));
    t.SetMarginMask(1, 1 << marker_arrow);
    t.MarkerDefine(marker_arrow, wxSTC_MARK_SHORTARROW, wxColour(120, 60, 0),
                   wxColour(255, 200, 60));
    t.MarkerDefine(marker_line, wxSTC_MARK_BACKGROUND, wxNullColour, wxColour(255, 240, 170));
    t.SetWrapMode(wxSTC_WRAP_NONE);
    t.SetUndoCollection(false);
    // No modification events: the text only changes as a whole, and sending
    // them makes loading a large file several times slower.
    t.SetModEventMask(0);
    t.SetReadOnly(true);
}

void source_pane_t::set_result(corr_engine::engine_t* engine)
{
    std::vector<fs::path> result_folders;
    m_project.clear();
    if (engine && engine->has_result()) {
        for (const auto& dir : engine->get_source_dirs())
            result_folders.push_back(to_fs(dir));
        m_project = project_of(*engine);
    }
    m_locator.set_result_folders(std::move(result_folders));
    m_locator.set_user_folders(user_folders());
    clear();
}

std::vector<fs::path> source_pane_t::user_folders() const
{
    return m_project.empty() ? std::vector<fs::path>() : m_folders.get(m_project);
}

void source_pane_t::clear()
{
    m_recorded.clear();
    show_message(translate(L"corrview.source.select_frame"), false);
    set_file({}, 0);
}

bool source_pane_t::is_showing_source() const
{
    return m_book->GetSelection() == 0;
}

void source_pane_t::show_frame(const probstore3::frame_t& frame)
{
    const long line = frame.line == probstore3::no_line ? 0 : static_cast<long>(frame.line);
    if (frame.source.empty()) {
        m_recorded.clear();
        const std::wstring where = platkit::strings::utf8_to_wide(
            frame.function.empty() ? frame.module : frame.module + "!" + frame.function);
        show_message(translate(L"corrview.source.no_source", varg_list().add(L"frame", where)),
                     false);
        set_file({}, 0);
        return;
    }
    const source_search_t search = m_locator.find(frame.source);
    if (search.found.empty()) {
        std::wstring places;
        for (const auto& place : search.looked_in)
            places += L"\n    " + shown_name(place);
        if (places.empty())
            places = L"\n    " + translate(L"corrview.source.nowhere");
        m_recorded = frame.source;
        m_recorded_line = line;
        show_message(translate(L"corrview.source.missing",
                               varg_list()
                                   .add(L"file", platkit::strings::utf8_to_wide(frame.source))
                                   .add(L"places", places)),
                     true);
        set_file({}, 0);
        return;
    }
    show_file(search.found, line);
}

bool source_pane_t::show_file(const fs::path& file, long line)
{
    if (file == m_file && is_showing_source()) {
        mark_line(line);
        set_file(file, line);
        return true;
    }
    const source_text_t source = read_source_text(file);
    if (source.problem != source_text_t::no_problem) {
        const wchar_t* reason = L"corrview.source.unreadable";
        if (source.problem == source_text_t::missing)
            reason = L"corrview.source.gone";
        else if (source.problem == source_text_t::not_a_file)
            reason = L"corrview.source.not_a_file";
        else if (source.problem == source_text_t::too_large)
            reason = L"corrview.source.too_large";
        show_message(
            translate(
                reason,
                varg_list().add(L"file", shown_name(file)).add(L"megabytes", source.size >> 20)),
            false);
        set_file({}, 0);
        return false;
    }
    wxStyledTextCtrl& t = *m_text;
    t.Freeze();
    t.SetReadOnly(false);
    t.ClearAll();
    t.SetLexer(is_c_or_cpp(file) ? wxSTC_LEX_CPP : wxSTC_LEX_NULL);
    // The bytes go in as they are: the control keeps UTF-8 itself.
    if (!source.utf8.empty())
        t.AppendTextRaw(source.utf8.data(), static_cast<int>(source.utf8.size()));
    t.SetReadOnly(true);
    t.Thaw();
    m_book->ChangeSelection(0);
    mark_line(line);
    set_file(file, line);
    if (source.converted)
        set_status(
            translate(L"corrview.source.not_utf8", varg_list().add(L"file", shown_name(file))));
    return true;
}

void source_pane_t::mark_line(long line)
{
    wxStyledTextCtrl& t = *m_text;
    t.MarkerDeleteAll(marker_arrow);
    t.MarkerDeleteAll(marker_line);
    if (line <= 0 || line > t.GetLineCount()) {
        t.GotoLine(0);
        t.SetFirstVisibleLine(0);
        return;
    }
    const int index = static_cast<int>(line - 1);
    t.MarkerAdd(index, marker_arrow);
    t.MarkerAdd(index, marker_line);
    t.GotoLine(index);
    // The line in the middle, with the lines around it above and below.
    t.SetFirstVisibleLine(std::max(0, index - t.LinesOnScreen() / 2));
}

void source_pane_t::show_message(const std::wstring& text, bool offer_locate)
{
    m_message->SetLabelText(text);
    m_message->Wrap(
        std::max(FromDIP(100), m_message_page->GetClientSize().GetWidth() - FromDIP(16)));
    m_locate->Show(offer_locate);
    m_add_folder->Show(offer_locate);
    m_message_page->Layout();
    m_book->ChangeSelection(1);
}

void source_pane_t::set_file(const fs::path& file, long line)
{
    const bool changed = file != m_file;
    m_file = file;
    m_line = file.empty() ? 0 : line;
    m_open->Enable(!file.empty());
    if (file.empty())
        m_caption->SetLabelText(translate(L"corrview.source.none"));
    else if (line > 0)
        m_caption->SetLabelText(
            translate(L"corrview.source.caption.line",
                      varg_list().add(L"file", shown_name(file)).add(L"line", line)));
    else
        m_caption->SetLabelText(shown_name(file));
    m_caption->SetToolTip(file.empty() ? wxString() : wxString(shown_name(file)));
    if (changed && m_file_changed)
        m_file_changed();
}

void source_pane_t::set_status(const std::wstring& text)
{
    if (auto* frame = wxDynamicCast(wxGetTopLevelParent(this), wxFrame))
        if (frame->GetStatusBar())
            frame->SetStatusText(text);
}

bool source_pane_t::open_in_editor()
{
    if (m_file.empty())
        return false;
    return launch_editor(this, m_file, m_line);
}

bool source_pane_t::open_in_editor(const probstore3::frame_t& frame)
{
    show_frame(frame);
    return open_in_editor();
}

void source_pane_t::on_locate()
{
    if (m_recorded.empty())
        return;
    const std::wstring ext = to_text(fs::path(m_recorded).extension());
    const basekit2::path_t chosen = shareddlg3::file_dlg(
        this, shareddlg3::file_dlg_mode::open, basekit2::path_t(),
        ext.empty() ? ext : ext.substr(1), translate(L"corrview.source.locate.filter"),
        translate(L"corrview.source.locate.caption",
                  varg_list().add(L"file", platkit::strings::utf8_to_wide(m_recorded))));
    if (chosen.empty())
        return;
    const fs::path folder = folder_for(m_recorded, to_fs(chosen));
    const long line = m_recorded_line;
    if (!m_project.empty() && !folder.empty() && !m_folders.add(m_project, folder))
        set_status(translate(L"corrview.source.not_remembered",
                             varg_list().add(L"reason", m_folders.error())));
    auto folders = m_locator.user_folders();
    if (!folder.empty() && std::find(folders.begin(), folders.end(), folder) == folders.end())
        folders.push_back(folder);
    m_locator.set_user_folders(std::move(folders));
    show_file(to_fs(chosen), line);
}

void source_pane_t::on_add_folder()
{
    const basekit2::path_t chosen = shareddlg3::folder_dlg(
        this, basekit2::path_t(), translate(L"corrview.source.add_folder.caption"));
    if (chosen.empty())
        return;
    const fs::path folder = to_fs(chosen);
    if (!m_project.empty() && !m_folders.add(m_project, folder))
        set_status(translate(L"corrview.source.not_remembered",
                             varg_list().add(L"reason", m_folders.error())));
    auto folders = m_locator.user_folders();
    if (std::find(folders.begin(), folders.end(), folder) == folders.end())
        folders.push_back(folder);
    m_locator.set_user_folders(std::move(folders));
    if (m_recorded.empty())
        return;
    probstore3::frame_t frame;
    frame.source = m_recorded;
    frame.line =
        m_recorded_line > 0 ? static_cast<std::uint64_t>(m_recorded_line) : probstore3::no_line;
    show_frame(frame);
}

} // namespace corrview
