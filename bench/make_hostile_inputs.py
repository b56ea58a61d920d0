#!/usr/bin/env python3
"""Writes analyser output built to hurt an importer, one file per case, into
a folder: make_hostile_inputs.py DIR SCALE (SCALE 1 = the sizes named below;
smaller values shrink every case in proportion)."""
import os
import re
import sys

out, scale = sys.argv[1], float(sys.argv[2])
os.makedirs(out, exist_ok=True)
here = os.path.dirname(os.path.abspath(__file__))
recorded = os.path.join(here, "..", "samples", "recorded")


def n(count):
    return max(1, int(count * scale))


def helgrind_parts():
    text = open(os.path.join(recorded, "helgrind_race_counter.xml")).read()
    head = text[: text.index("<announcethread>")]
    error = text[text.index("<error>") : text.index("</error>") + len("</error>")]
    return head, error, "</valgrindoutput>\n"


def write(name, chunks):
    path = os.path.join(out, name)
    with open(path, "w") as f:
        for c in chunks:
            f.write(c)
    print(name)


head, error, tail = helgrind_parts()
# One thread announcement with a 1 MB function name, named by 100k errors.
big_fn = "f" * n(1 << 20)
announce = ("<announcethread>\n  <hthreadid>3</hthreadid>\n  <stack>\n    <frame>\n"
            "      <ip>0x1</ip>\n      <fn>" + big_fn + "</fn>\n    </frame>\n  </stack>\n"
            "</announcethread>\n")
one = re.sub(r"<unique>0x[0-9a-f]+</unique>", "<unique>@ID@</unique>", error, count=1)


def errors(count):
    for i in range(count):
        yield one.replace("@ID@", hex(i)) + "\n"


write("shared_thread_name.xml", [head, announce, *errors(n(100000)), tail])
# One error naming 10^6 threads.
many = error.replace("<hthreadid>3</hthreadid>",
                     "<hthreadid>3</hthreadid>" + "<hthreadid>3</hthreadid>" * n(1000000), 1)
write("many_thread_ids.xml", [head, many, "\n", tail])
# One huge comment, one huge attribute.
write("huge_comment.xml", [head, "<!-- ", "x" * n(200 << 20), " -->\n", error, "\n", tail])
write("huge_attribute.xml", [head, '<error a="', "y" * n(200 << 20), '">', error[len("<error>"):], "\n", tail])

# Sanitizer reports: 300k one-line reports; a 1 GB line without a newline;
# "ERROR: " repeated with no newline.
line = "/src/a.c:%d:7: runtime error: signed integer overflow: 2147483647 + 1 cannot be represented in type 'int'\n"
write("ubsan_one_liners.txt", (line % i for i in range(n(300000))))
write("one_long_line.txt", ["==1==ERROR: AddressSanitizer: heap-use-after-free "] +
      ["z" * (1 << 20)] * n(1024))
write("error_repeated.txt", ["ERROR: " * (1 << 17)] * n(1 << 10))
