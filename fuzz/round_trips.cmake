# Import -> suppression file -> read back, and the result marker file.
set(_engine ${PROJECT_SOURCE_DIR}/platform/corr_engine)
corr_add_fuzzer(suppress_round_trip SOURCES suppress_round_trip_fuzzer.cpp
  ${_engine}/src/result_converter.cpp ${_engine}/src/valgrind_xml_importer.cpp
  ${_engine}/src/sanitizer_report_importer.cpp ${_engine}/src/best_location.cpp ${_engine}/src/problem_types.cpp
  LIBS platkit basekit2 probstore3 EXPAT::EXPAT)
target_include_directories(fuzz_suppress_round_trip PRIVATE ${_engine}/include)
corr_add_fuzzer(result_marker SOURCES result_marker_fuzzer.cpp ${_engine}/src/result_manifest.cpp
  LIBS platkit basekit2)
target_include_directories(fuzz_result_marker PRIVATE ${_engine}/include)
