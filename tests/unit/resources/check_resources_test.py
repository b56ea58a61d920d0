#!/usr/bin/env python3
"""Runs the resource check on small hand-made trees: a clean one passes,
and each kind of mismatch is reported with its file and line."""
import os
import subprocess
import sys
import tempfile
import textwrap
import unittest

SCRIPT = sys.argv.pop(1) if len(sys.argv) > 1 else os.path.join(
    os.path.dirname(__file__), "..", "..", "..", "resources", "check_resources.py")

PO_HEADER = 'msgid ""\nmsgstr ""\n"Content-Type: text/plain; charset=UTF-8\\n"\n\n'


def po(entries):
    return PO_HEADER + "".join(f'msgid "{k}"\nmsgstr "{v}"\n\n' for k, v in entries.items())


LAYOUT = textwrap.dedent("""\
    <?xml version="1.0" encoding="UTF-8"?>
    <resource xmlns="http://www.wxwidgets.org/wxxrc" version="2.5.3.0">
      <object class="wxDialog" name="dlg.demo">
        <title>dlg.demo.title</title>
        <object class="wxBoxSizer">
          <object class="sizeritem">
            <object class="wxButton" name="m_btn_ok"><label>btn.ok</label></object>
          </object>
          <object class="sizeritem">
            <object class="wxTextCtrl" name="m_name"><tooltip>dlg.demo.name_tip</tooltip></object>
          </object>
        </object>
      </object>
    </resource>
    """)

SOURCE = textwrap.dedent("""\
    // A comment may mention translate(L"dlg.not.a.key") and find_control<X>(L"m_nothing").
    demo_dlg_t::demo_dlg_t() { set_dialog_name(L"dlg.demo"); }
    void demo_dlg_t::on_init_dialog() {
        m_ok = find_control<wxButton>(L"m_btn_ok");
        m_name = find_control<wxTextCtrl>(L"m_name");
        set_title(translate(L"dlg.demo.caption", args));
        const auto ext = translate(L"dlg.demo.kind." + kind);
        const auto tip = translate_shared(L"shared_tip");
    }
    """)

CATALOG = {"dlg.demo.title": "Demo", "btn.ok": "OK", "dlg.demo.name_tip": "Name",
           "dlg.demo.caption": "Demo {n}", "dlg.demo.kind.a": "Kind A"}
SHARED = {"shared_tip": "Tip"}
ALLOW = "dialogs:dlg.demo.kind.*   # built from the kind at run time\n"


class ResourceCheck(unittest.TestCase):
    def run_check(self, catalog=CATALOG, shared=SHARED, layout=LAYOUT, source=SOURCE, allow=ALLOW):
        with tempfile.TemporaryDirectory() as d:
            files = {"dialogs.po": po(catalog), "shared.po": po(shared), "dialogs.xrc": layout,
                     "src/demo.cpp": source, "allow.txt": allow}
            for name, text in files.items():
                path = os.path.join(d, name)
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, "w", encoding="utf-8") as f:
                    f.write(text)
            stamp = os.path.join(d, "stamp")
            result = subprocess.run(
                [sys.executable, SCRIPT, "--catalog", f"dialogs={d}/dialogs.po",
                 "--catalog", f"shareddlg={d}/shared.po", "--layout", f"{d}/dialogs.xrc=dialogs",
                 "--sources", f"{d}/src", "--allow", f"{d}/allow.txt", "--stamp", stamp],
                capture_output=True, text=True)
            return result.returncode, result.stderr.replace(d + "/", ""), os.path.exists(stamp)

    def assert_problem(self, output, *parts):
        for line in output.splitlines():
            if all(p in line for p in parts):
                return
        self.fail(f"no problem line with {parts} in:\n{output}")

    def test_consistent_tree_passes_and_writes_the_stamp(self):
        code, out, stamped = self.run_check()
        self.assertEqual(code, 0, out)
        self.assertTrue(stamped)

    def test_key_used_in_code_but_missing_from_the_catalogue(self):
        catalog = dict(CATALOG)
        del catalog["dlg.demo.caption"]
        code, out, stamped = self.run_check(catalog=catalog)
        self.assertEqual(code, 1)
        self.assertFalse(stamped)
        self.assert_problem(out, "src/demo.cpp:6:", "'dlg.demo.caption'", "not in the 'dialogs' catalogue")

    def test_shared_key_is_looked_up_in_the_shared_catalogue(self):
        code, out, _ = self.run_check(shared={})
        self.assert_problem(out, "src/demo.cpp:8:", "'shared_tip'", "'shareddlg'")

    def test_layout_text_that_is_no_key(self):
        layout = LAYOUT.replace("<label>btn.ok</label>", "<label>OK</label>")
        code, out, _ = self.run_check(layout=layout)
        self.assertEqual(code, 1)
        self.assert_problem(out, "dialogs.xrc:7:", "<label> 'OK'", "never visible text")
        self.assert_problem(out, "dialogs.po", "'btn.ok'", "used nowhere")

    def test_control_missing_from_the_layout_of_its_dialog(self):
        source = SOURCE.replace('L"m_name"', 'L"m_nmae"')
        code, out, _ = self.run_check(source=source)
        self.assert_problem(out, "src/demo.cpp:5:", "'m_nmae'", "not in the layout of 'dlg.demo'")

    def test_lookup_without_a_dialog_name(self):
        source = SOURCE.replace('set_dialog_name(L"dlg.demo");', "")
        code, out, _ = self.run_check(source=source)
        self.assert_problem(out, "src/demo.cpp:4:", "sets no dialog name")

    def test_unused_key_and_stale_or_silent_allow_list_entries(self):
        catalog = dict(CATALOG, **{"dlg.demo.orphan": "Nobody"})
        allow = ALLOW + "dialogs:dlg.gone.*   # was removed\ndialogs:dlg.demo.orphan\n"
        code, out, _ = self.run_check(catalog=catalog, allow=allow)
        self.assert_problem(out, "allow.txt:2:", "matches no catalogue key")
        self.assert_problem(out, "allow.txt:3:", "needs a comment")
        catalog_only = self.run_check(catalog=catalog)[1]
        self.assert_problem(catalog_only, "dialogs.po", "'dlg.demo.orphan'", "used nowhere")

    def test_key_shaped_literal_that_is_neither_key_nor_layout(self):
        source = SOURCE + 'const wchar_t* k = L"dlg.demo.titel";\n'
        code, out, _ = self.run_check(source=source)
        self.assert_problem(out, "'dlg.demo.titel'", "looks like a message key")

    def test_comments_are_not_code(self):
        code, out, _ = self.run_check()
        self.assertNotIn("dlg.not.a.key", out)
        self.assertNotIn("m_nothing", out)


if __name__ == "__main__":
    unittest.main(verbosity=1)
