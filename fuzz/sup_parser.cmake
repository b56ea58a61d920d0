# The suppression-file parser: users edit these files by hand.
corr_add_fuzzer(sup_parser SOURCES sup_parser_fuzzer.cpp LIBS probstore3)
# Coverage feedback needs the parser itself instrumented, not only the driver.
target_compile_options(suppfmt3 PRIVATE -fsanitize=fuzzer-no-link,address,undefined)
target_link_options(suppfmt3 PRIVATE -fsanitize=address,undefined)
