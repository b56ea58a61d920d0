// The export-result dialog in a real window: results built from the recorded
// samples by the engine, packed by the worker into real zip archives that
// are read back with libzip.
#include "corr_dialogs2/export_dialog.h"

#include "corr_dialogs2/ui_utils.h"
#include "ui_helpers.h"

#include "corr_engine/archiver.h"
#include "corr_engine/engine.h"
#include "gui_test.h"
#include "modal_expectations.h"
#include "shareddlg3/file_dialogs.h"
#include "shareddlg3/message_window.h"
#include "shareddlg3/resources.h"
#include "shareddlg3/utils.h"
#include "wxkit1/tooltip.h"
#include "wxkit1/ui_settings.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <random>
#include <regex>

using corr_dialogs2::export_dlg_t;
using corr_dialogs2::translate;
using namespace export_filter_test;

namespace {

using engine_ptr_t = export_dlg_t::engine_ptr_t;

fs::path recorded(const std::string& name)
{
    return fs::path(CORR_SAMPLES_DIR) / "recorded" / name;
}

// A result named name in dir, imported by the engine from recorded files.
engine_ptr_t make_result(const fs::path& dir, const std::wstring& name,
                         const std::vector<fs::path>& files,
                         const std::vector<fs::path>& source_dirs = {})
{
    auto engine = corr_engine::engine_t::create();
    std::vector<basekit2::path_t> inputs(files.begin(), files.end());
    std::vector<basekit2::path_t> sources(source_dirs.begin(), source_dirs.end());
    corr_engine::import_files_report_t report;
    EXPECT_TRUE(engine->create_result(dir, name, inputs, sources, report)) << report.error.c_str();
    return engine;
}

// What a control of the dialog shows: a field's text, else its label.
std::wstring label_of(export_dlg_t& dlg, const wchar_t* name)
{
    wxWindow* w = dlg.find_control<wxWindow>(name);
    if (!w)
        return L"<no " + std::wstring(name) + L">";
    if (auto* field = dynamic_cast<wxTextCtrl*>(w))
        return field->GetValue().ToStdWstring();
    return w->GetLabel().ToStdWstring();
}

std::wstring log_of(export_dlg_t& dlg)
{
    auto* log = dlg.find_control<wxTextCtrl>(L"m_log");
    return log ? log->GetValue().ToStdWstring() : L"";
}

bool options_page_shown(export_dlg_t& dlg)
{
    return dlg.find_control<wxPanel>(L"m_options_panel")->IsShown() &&
           !dlg.find_control<wxPanel>(L"m_progress_panel")->IsShown();
}

// A host's loader: loads the result at dir on the worker thread (fails when
// dir is empty), saying so through the messenger.
class test_loader final : public corr_dialogs2::load_result_callback_t
{
public:
    test_loader(std::wstring name, fs::path dir) : m_name(std::move(name)), m_dir(std::move(dir)) {}

    bool load(notify2::IMessenger& messenger) override
    {
        loaded_on_gui = wxIsMainThread();
        ++loads;
        if (m_dir.empty())
            return false;
        messenger.message(notify2::msg_info, L"Loaded from the project");
        m_engine = corr_engine::engine_t::create();
        return m_engine->open_result(m_dir);
    }
    basekit2::intrusive_pointer_t<corr_engine::engine_t> get_engine() override { return m_engine; }
    std::wstring get_result_name() const override { return m_name; }
    void cancel() override { ++cancels; }

    std::atomic<int> loads{0};
    std::atomic<int> cancels{0};
    std::atomic<bool> loaded_on_gui{false};

private:
    std::wstring m_name;
    fs::path m_dir;
    engine_ptr_t m_engine;
};

// A host's loader that is slow to stop: its load goes on until the test
// releases it, or, once cancelled, for stop_time more.
class slow_loader final : public corr_dialogs2::load_result_callback_t
{
public:
    explicit slow_loader(std::chrono::milliseconds stop_time) : m_stop_time(stop_time) {}

    bool load(notify2::IMessenger&) override
    {
        std::unique_lock lock(m_mutex);
        loading = true;
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return m_released || m_cancelled; });
        if (!m_released)
            m_changed.wait_for(lock, m_stop_time, [&] { return m_released; });
        loading = false;
        finished = true;
        return false;
    }
    basekit2::intrusive_pointer_t<corr_engine::engine_t> get_engine() override { return {}; }
    std::wstring get_result_name() const override { return L"slow"; }
    void cancel() override
    {
        std::lock_guard lock(m_mutex);
        m_cancelled = true;
        m_changed.notify_all();
    }
    void release()
    {
        std::lock_guard lock(m_mutex);
        m_released = true;
        m_changed.notify_all();
    }

    std::atomic<bool> loading{false};
    std::atomic<bool> finished{false};

private:
    const std::chrono::milliseconds m_stop_time;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_released = false;
    bool m_cancelled = false;
};

const std::wstring ext = corr_engine::archiver_t::get_default_file_ext();

} // namespace

TEST(ExportDialog, PacksTheResultIntoAZipAndSaysSoAtEachStage)
{
    temp_dir tmp;
    const fs::path result = tmp.path() / "results" / "run1";
    auto engine =
        make_result(result, L"run1",
                    {recorded("memcheck_overflow.xml"), recorded("helgrind_race_counter.xml"),
                     recorded("asan_use_after_free.txt")});
    fs::create_directories(tmp.path() / "out");
    export_dlg_t dlg(engine, tmp.path() / "out");
    EXPECT_EQ(L"run1", dlg.get_result_name());
    EXPECT_EQ(
        basekit2::path_t(tmp.path() / "out" / ("run1." + std::string(ext.begin(), ext.end()))),
        dlg.get_target());

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>(
        [&](export_dlg_t& d) {
            // Options page.
            EXPECT_TRUE(options_page_shown(d));
            EXPECT_EQ(translate(L"dlg.export.title", {{L"result_name", L"run1"}}), d.get_title());
            EXPECT_EQ(L"Export run1", d.get_title());
            EXPECT_EQ(dlg.get_target().str(), label_of(d, L"m_target_file"));
            EXPECT_FALSE(d.find_control<wxCheckBox>(L"m_src_files_cb")->IsChecked());
            EXPECT_TRUE(d.find_control<wxButton>(L"m_export_btn")->IsEnabled());
            const wxSize size = d.GetSize();
            EXPECT_GE(size.x, d.ConvertDialogToPixels(wxSize(360, 225)).x);
            save_screenshot(&d, "export_dlg");

            click(d.find_control<wxButton>(L"m_export_btn"));
            ASSERT_TRUE(corr_test::wait_until([&] { return d.is_finished(); }, 20000));
            // Finished: percent and status that arrive late change neither.
            corr_test::pump_events(400);
            EXPECT_FALSE(options_page_shown(d));
            EXPECT_EQ(L"Export of run1 finished", d.get_title());
            EXPECT_EQ(translate(L"dlg.export.status.done"), label_of(d, L"m_status_text"));
            EXPECT_EQ(translate(L"btn.close"), label_of(d, L"m_btn_cancel"));
            EXPECT_EQ(100, d.find_control<wxGauge>(L"m_gauge")->GetValue());
            EXPECT_EQ(L"", log_of(d));
            EXPECT_FALSE(d.has_warnings());
            save_screenshot(&d, "export_dlg_done");
            click(d.find_control<wxButton>(L"m_btn_cancel"));
        },
        30000);
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));

    const auto entries = read_archive(dlg.get_target().fs());
    EXPECT_EQ(folder_as_entries(result, "run1"), entries);
    EXPECT_TRUE(entries.count("run1/data/memcheck_overflow.xml"));
}

TEST(ExportDialog, TargetFieldTakesANameInTheFolderAndAddsTheArchiveExtension)
{
    temp_dir tmp;
    auto engine = make_result(tmp.path() / "run2", L"run2", {recorded("tsan_race_counter.txt")});
    const fs::path out = tmp.path() / "out";
    fs::create_directories(out);
    export_dlg_t dlg(engine, out);

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>(
        [&](export_dlg_t& d) {
            auto* field = d.find_control<wxTextCtrl>(L"m_target_file");
            auto* export_btn = d.find_control<wxButton>(L"m_export_btn");

            // Characters a path cannot hold vanish as they are typed; the field
            // says why until the next edit.
            field->ChangeValue("");
            type_into(field, "na*me?.txt|");
            ASSERT_TRUE(corr_test::wait_until([&] { return field->GetValue() == "name.txt"; }))
                << field->GetValue();
            EXPECT_EQ(8, field->GetInsertionPoint());
            const auto* tip = wxkit1::GetTooltip(field);
            ASSERT_NE(nullptr, tip);
            EXPECT_EQ(shareddlg3::get_disabled_tooltip_text(shareddlg3::path_disabled_chars),
                      tip->GetText());
            EXPECT_EQ(wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_invalid_input),
                      field->GetBackgroundColour());
            EXPECT_TRUE(export_btn->IsEnabled());

            // Empty: nothing to export to.
            field->SetValue("");
            ASSERT_NE(nullptr, wxkit1::GetTooltip(field));
            EXPECT_EQ(shareddlg3::translate_shared(L"pref.result_saving.undefined_tooltip_text"),
                      wxkit1::GetTooltip(field)->GetText());
            EXPECT_FALSE(export_btn->IsEnabled());

            // A plain name: marking gone.
            field->SetValue("name.txt");
            EXPECT_EQ(nullptr, wxkit1::GetTooltip(field));
            EXPECT_TRUE(export_btn->IsEnabled());

            click(export_btn);
            ASSERT_TRUE(corr_test::wait_until([&] { return d.is_finished(); }, 20000));
            d.EndModal(wxID_CANCEL);
        },
        30000);
    dlg.show_modal(nullptr);

    const fs::path expected = out / ("name.txt." + std::string(ext.begin(), ext.end()));
    EXPECT_EQ(basekit2::path_t(expected), dlg.get_target());
    ASSERT_TRUE(fs::exists(expected));
    EXPECT_EQ(folder_as_entries(tmp.path() / "run2", "run2"), read_archive(expected));
    EXPECT_FALSE(fs::exists(out / "name.txt"));
}

TEST(ExportDialog, BrowseAsksWhereToSaveTheArchive)
{
    temp_dir tmp;
    auto engine = make_result(tmp.path() / "run3", L"run3", {recorded("ubsan_null.txt")});
    export_dlg_t dlg(engine, tmp.path());
    const basekit2::path_t chosen(tmp.path() / "elsewhere.corrz");

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>([&](export_dlg_t& d) {
        corr_test::modal_expectations nested;
        nested.expect<shareddlg3::file_dialog_t>([&](shareddlg3::file_dialog_t& f) {
            EXPECT_EQ(shareddlg3::file_dlg_mode::save, f.mode());
            EXPECT_EQ(translate(L"btn.save_as"), f.caption());
            EXPECT_EQ(translate(L"dlg.export.browse_mask") + L" (*." + ext + L")|*." + ext,
                      f.wildcard());
            EXPECT_EQ(dlg.get_target(), f.start());
            f.set_path(chosen);
            return int(wxID_OK);
        });
        click(d.find_control<wxButton>(L"m_browse_btn"));
        EXPECT_TRUE(corr_test::wait_until([&] { return nested.all_met(); }));
        EXPECT_EQ(chosen.str(), label_of(d, L"m_target_file"));
        d.EndModal(wxID_CANCEL);
    });
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));
    EXPECT_FALSE(fs::exists(chosen.fs())) << "nothing is written before Export";
}

TEST(ExportDialog, AnArchiveThatCannotBeCreatedIsReportedAndTheOptionsComeBack)
{
    temp_dir tmp;
    auto engine = make_result(tmp.path() / "run4", L"run4", {recorded("memcheck_leaks.xml")});
    const fs::path missing = tmp.path() / "no-such-folder" / "run4.corrz";
    export_dlg_t dlg(engine, tmp.path());

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>([&](export_dlg_t& d) {
        d.find_control<wxTextCtrl>(L"m_target_file")->SetValue(missing.wstring());
        corr_test::modal_expectations nested;
        nested.expect_message(
            shareddlg3::message_window_t::answer_yes, [&](shareddlg3::message_dialog_t& m) {
                EXPECT_EQ(shareddlg3::message_window_t::icon_error, m.message().icon());
                EXPECT_EQ(0u, m.message().text().find(translate(L"dlg.export.error.nozip")));
                EXPECT_NE(std::wstring::npos, m.message().text().find(missing.wstring()))
                    << "the message names the file";
                EXPECT_TRUE(m.message().text().find(L"does not exist") != std::wstring::npos);
            });
        click(d.find_control<wxButton>(L"m_export_btn"));
        ASSERT_TRUE(corr_test::wait_until([&] { return nested.all_met(); }));
        corr_test::pump_events(100);
        EXPECT_TRUE(options_page_shown(d));
        EXPECT_TRUE(d.find_control<wxButton>(L"m_export_btn")->IsEnabled());
        EXPECT_EQ(L"Export run4", d.get_title());
        EXPECT_FALSE(d.is_finished());
        click(d.find_control<wxButton>(L"m_btn_cancel"));
    });
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));
    EXPECT_FALSE(fs::exists(missing.parent_path()));
}

// A result whose packing takes seconds: 96 MB of random lowercase text
// (deflate cannot skip it as incompressible, nor race through it).
TEST(ExportDialog, CancelWhilePackingRemovesThePartialArchiveAndKeepsAnOldOne)
{
    temp_dir tmp;
    const fs::path result = tmp.path() / "big";
    auto engine = corr_engine::engine_t::create();
    ASSERT_TRUE(engine->create_result(result, L"big"));
    std::mt19937_64 random(42);
    for (int f = 0; f < 6; ++f) {
        std::string data(16u << 20, 'a');
        for (size_t i = 0; i + 8 <= data.size(); i += 8) {
            std::uint64_t r = random();
            for (int k = 0; k < 8; ++k, r >>= 8)
                data[i + k] = static_cast<char>('a' + (r & 0xff) % 26);
        }
        write_file(result / "data" / ("part" + std::to_string(f) + ".log"), data);
    }
    const fs::path out = tmp.path() / "out";
    const fs::path target = out / "big.corrz";
    write_file(target, "an earlier export");
    export_dlg_t dlg(engine, out);

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>(
        [&](export_dlg_t& d) {
            click(d.find_control<wxButton>(L"m_export_btn")); // and agree to replace the old one
            auto* gauge = d.find_control<wxGauge>(L"m_gauge");
            ASSERT_TRUE(corr_test::wait_until([&] { return gauge->GetValue() > 0; }, 20000));
            EXPECT_FALSE(d.is_finished()) << "packing should still run";
            EXPECT_EQ(L"Exporting big: " + std::to_wstring(gauge->GetValue()) + L"%",
                      d.get_title());
            EXPECT_EQ(L"Packing big", label_of(d, L"m_status_text"));
            EXPECT_EQ(L"Cancel", label_of(d, L"m_btn_cancel"));
            // What is being written lies beside the target.
            ASSERT_TRUE(corr_test::wait_until(
                [&] {
                    return std::distance(fs::directory_iterator(out), fs::directory_iterator()) > 1;
                },
                20000));
            save_screenshot(&d, "export_dlg_progress");
            click(d.find_control<wxButton>(L"m_btn_cancel"));
        },
        60000);
    modal.expect_message(shareddlg3::message_window_t::answer_yes);
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));

    // Cancel waited for the worker: nothing partial is left beside the target.
    std::vector<fs::path> left;
    for (const auto& e : fs::directory_iterator(out))
        left.push_back(e.path());
    EXPECT_EQ(std::vector<fs::path>{target}, left);
    EXPECT_EQ("an earlier export", read_file(target));
    // The worker's warning still reaches the log and the flag.
    EXPECT_TRUE(corr_test::wait_until([&] { return !log_of(dlg).empty(); }));
    EXPECT_EQ(translate(L"dlg.export.warning.msg",
                        {{L"message", translate(L"dlg.export.warning.canceled")}}),
              log_of(dlg));
    EXPECT_TRUE(dlg.has_warnings());
}

TEST(ExportDialog, AnExistingArchiveIsReplacedOnlyWhenTheUserAgrees)
{
    temp_dir tmp;
    auto engine = make_result(tmp.path() / "run6", L"run6", {recorded("tsan_race_counter.txt")});
    const fs::path out = tmp.path() / "out";
    const fs::path target = out / ("run6." + std::string(ext.begin(), ext.end()));
    write_file(target, "an earlier export");
    export_dlg_t dlg(engine, out);

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>([&](export_dlg_t& d) {
        // No: back on the options page, nothing started, the old file as it was.
        corr_test::modal_expectations inner;
        inner.expect_message(shareddlg3::message_window_t::answer_no,
                             [&](shareddlg3::message_dialog_t& m) {
                                 EXPECT_EQ(translate(L"dlg.export.replace", {{L"file", target.wstring()}}),
                                           m.message().text());
                             });
        click(d.find_control<wxButton>(L"m_export_btn"));
        ASSERT_TRUE(corr_test::wait_until([&] { return inner.all_met(); }));
        corr_test::pump_events(30);
        EXPECT_TRUE(options_page_shown(d));
        EXPECT_TRUE(d.find_control<wxButton>(L"m_export_btn")->IsEnabled());
        EXPECT_EQ("an earlier export", read_file(target));

        // A file chosen through Browse was agreed to in the save dialog: no second question.
        inner.expect_file(basekit2::path_t(target));
        click(d.find_control<wxButton>(L"m_browse_btn"));
        ASSERT_TRUE(corr_test::wait_until([&] { return inner.all_met(); }));
        click(d.find_control<wxButton>(L"m_export_btn"));
        ASSERT_TRUE(corr_test::wait_until([&] { return d.is_finished(); }, 20000));
        d.EndModal(wxID_CANCEL);
    });
    dlg.show_modal(nullptr);
    EXPECT_EQ(folder_as_entries(tmp.path() / "run6", "run6"), read_archive(target));
}

TEST(ExportDialog, AFailedLoadLeavesTheDialogWaitingAndCancelStillCloses)
{
    auto loader = boost::shared_ptr<test_loader>(new test_loader(L"lost", {}));
    temp_dir tmp;
    export_dlg_t dlg(loader, tmp.path());
    EXPECT_EQ(L"lost", dlg.get_result_name());
    EXPECT_EQ(basekit2::path_t(tmp.path() / "lost.corrz"), dlg.get_target());

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>([&](export_dlg_t& d) {
        EXPECT_EQ(L"Export lost", d.get_title());
        click(d.find_control<wxButton>(L"m_export_btn"));
        ASSERT_TRUE(corr_test::wait_until([&] {
            return loader->loads == 1 &&
                   label_of(d, L"m_status_text") == translate(L"dlg.export.loading_result");
        }));
        // Long enough for any message batch (500 ms) or completion to arrive.
        corr_test::pump_events(800);
        EXPECT_FALSE(loader->loaded_on_gui);
        EXPECT_EQ(L"", log_of(d));
        EXPECT_FALSE(d.is_finished());
        EXPECT_EQ(L"Cancel", label_of(d, L"m_btn_cancel"));
        EXPECT_EQ(L"Export lost", d.get_title());
        click(d.find_control<wxButton>(L"m_btn_cancel"));
    });
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));
    EXPECT_GE(loader->cancels, 1);
    EXPECT_TRUE(fs::is_empty(tmp.path()));
}

TEST(ExportDialog, CancelNeverWaitsForTheWorkerAndTheDialogEndsWhenItHasStopped)
{
    auto loader = boost::shared_ptr<slow_loader>(new slow_loader(std::chrono::seconds(30)));
    temp_dir tmp;
    export_dlg_t dlg(loader, tmp.path());

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>([&](export_dlg_t& d) {
        click(d.find_control<wxButton>(L"m_export_btn"));
        ASSERT_TRUE(corr_test::wait_until([&] { return loader->loading.load(); }));
        auto* cancel = d.find_control<wxButton>(L"m_btn_cancel");
        click(cancel);
        // The window goes on working and says what it waits for.
        ASSERT_TRUE(corr_test::wait_until([&] {
            return label_of(d, L"m_status_text") == translate(L"dlg.export.status.cancelling");
        }));
        EXPECT_TRUE(d.is_cancelling());
        EXPECT_FALSE(cancel->IsEnabled());
        EXPECT_TRUE(loader->loading);
        save_screenshot(&d, "export_dlg_cancelling");
        d.Close(); // the close box waits as Cancel does
        corr_test::pump_events(50);
        EXPECT_TRUE(d.IsModal());
        // The worker stops: the dialog ends.
        loader->release();
        ASSERT_TRUE(corr_test::wait_until([&] { return !d.IsModal(); }));
    });
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));
    EXPECT_TRUE(loader->finished);
    EXPECT_TRUE(fs::is_empty(tmp.path()));
}

TEST(ExportDialog, ADialogDestroyedWhileItsWorkerRunsDoesNotWaitForIt)
{
    // Once cancelled, this loader takes two seconds to stop.
    auto loader = boost::shared_ptr<slow_loader>(new slow_loader(std::chrono::seconds(2)));
    temp_dir tmp;
    {
        export_dlg_t dlg(loader, tmp.path());
        corr_test::modal_expectations modal;
        modal.expect_shown<export_dlg_t>([&](export_dlg_t& d) {
            click(d.find_control<wxButton>(L"m_export_btn"));
            ASSERT_TRUE(corr_test::wait_until([&] { return loader->loading.load(); }));
            d.EndModal(wxID_CANCEL); // as a host that closes it
        });
        dlg.show_modal(nullptr);
    }
    EXPECT_TRUE(loader->loading) << "the destructor waited for the worker";
    // The worker ends on its own, cut off from the dialog that is gone.
    EXPECT_TRUE(corr_test::wait_until([&] { return loader->finished.load(); }, 10000));
    corr_test::pump_events(50);
}

TEST(ExportDialog, ALoadedResultIsPackedWithItsSourcesAndTheLoaderMessagesInTheLog)
{
    temp_dir tmp;
    // The recorded report names the sources where they were built; here they
    // lie in a folder of this test.
    const fs::path src = tmp.path() / "src";
    fs::create_directories(src);
    fs::copy_file(fs::path(CORR_SAMPLES_DIR) / "src" / "mem_overflow.c", src / "mem_overflow.c");
    std::vector<fs::path> reports;
    for (const char* name : {"asan_overflow.txt", "asan_use_after_free.txt"}) {
        const std::string report = std::regex_replace(
            read_file(recorded(name)), std::regex(R"(/[^\s<>:]*/samples/src)"), src.string());
        ASSERT_NE(std::string::npos, report.find(src.string() + "/mem_")) << name;
        reports.push_back(tmp.path() / "in" / name);
        write_file(reports.back(), report);
    }
    // mem_use_after_free.c is not there: packing goes on with a warning.
    const fs::path result = tmp.path() / "withsrc";
    make_result(result, L"withsrc", reports, {src});

    auto loader = boost::shared_ptr<test_loader>(new test_loader(L"withsrc", result));
    const fs::path out = tmp.path() / "out";
    fs::create_directories(out);
    export_dlg_t dlg(loader, out);

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>(
        [&](export_dlg_t& d) {
            d.find_control<wxCheckBox>(L"m_src_files_cb")->SetValue(true);
            click(d.find_control<wxButton>(L"m_export_btn"));
            const std::wstring expected_log =
                L"Loaded from the project\n" +
                translate(
                    L"dlg.export.warning.msg",
                    {{L"message", L"The source file " + (src / "mem_use_after_free.c").wstring() +
                                      L" was not found; it is not in the archive."}});
            ASSERT_TRUE(corr_test::wait_until(
                [&] { return d.is_finished() && log_of(d) == expected_log; }, 20000))
                << log_of(d);
            EXPECT_TRUE(d.has_warnings());
            EXPECT_EQ(L"Export of withsrc finished", d.get_title());
            click(d.find_control<wxButton>(L"m_btn_cancel"));
        },
        30000);
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));

    auto expected = folder_as_entries(result, "withsrc");
    const std::string in_archive =
        "withsrc/sources/" + src.relative_path().generic_string() + "/mem_overflow.c";
    ASSERT_EQ('/', src.generic_string()[0]);
    expected["withsrc/sources/"] = "";
    expected[in_archive] = read_file(src / "mem_overflow.c");
    EXPECT_EQ(expected, read_archive(out / "withsrc.corrz"));
}

TEST(ExportDialog, APackingFailureIsLoggedAsErrorLines)
{
    temp_dir tmp;
    const fs::path result = tmp.path() / "run5";
    auto engine = make_result(result, L"run5", {recorded("ubsan_multi.txt")});
    export_dlg_t dlg(engine, tmp.path());
    fs::remove_all(result); // gone between opening and exporting

    corr_test::modal_expectations modal;
    modal.expect_shown<export_dlg_t>([&](export_dlg_t& d) {
        click(d.find_control<wxButton>(L"m_export_btn"));
        // The worker's messages are in the log by the time "finished" shows.
        ASSERT_TRUE(corr_test::wait_until([&] { return d.is_finished(); }));
        const std::wstring expected =
            L"Error: The result folder " + result.wstring() + L" does not exist.\n" +
            translate(L"dlg.export.error.msg",
                      {{L"message", translate(L"dlg.export.error.general")}});
        EXPECT_EQ(expected, log_of(d));
        corr_test::pump_events(600); // a second batch would come within 500 ms
        EXPECT_EQ(expected, log_of(d));
        EXPECT_EQ(L"Export of run5 finished", d.get_title());
        save_screenshot(&d, "export_dlg_errors");
        EXPECT_FALSE(d.has_warnings());
        click(d.find_control<wxButton>(L"m_btn_cancel"));
    });
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));
    EXPECT_FALSE(fs::exists(tmp.path() / "run5.corrz"));
}
