# Fuzz targets of the analyser-output importers. The importer sources are
# compiled into each target so that libFuzzer's coverage sees inside them.
set(_engine ${PROJECT_SOURCE_DIR}/platform/corr_engine)
set(_importer_common ${_engine}/src/best_location.cpp ${_engine}/src/problem_types.cpp)

corr_add_fuzzer(valgrind_xml
  SOURCES valgrind_xml_fuzzer.cpp ${_engine}/src/valgrind_xml_importer.cpp ${_importer_common}
  LIBS platkit basekit2 probstore3 EXPAT::EXPAT)
target_include_directories(fuzz_valgrind_xml PRIVATE ${_engine}/include)

corr_add_fuzzer(sanitizer_report
  SOURCES sanitizer_report_fuzzer.cpp ${_engine}/src/sanitizer_report_importer.cpp ${_importer_common}
  LIBS platkit basekit2 probstore3)
target_include_directories(fuzz_sanitizer_report PRIVATE ${_engine}/include)
