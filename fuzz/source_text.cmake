# The viewer's reading of source files as UTF-8: any bytes a file can hold.
corr_add_fuzzer(source_text SOURCES source_text_fuzzer.cpp
  ${PROJECT_SOURCE_DIR}/apps/corrview/host/source_text.cpp LIBS)
target_include_directories(fuzz_source_text PRIVATE ${PROJECT_SOURCE_DIR}/apps/corrview)
