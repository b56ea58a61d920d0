# Fuzz targets of the analyser-output importers. The importer sources are
# compiled into each target so that libFuzzer's coverage sees inside them.
set(_engine ${PROJECT_SOURCE_DIR}/platform/corr_engine)
set(_importers
  ${_engine}/src/result_converter.cpp ${_engine}/src/valgrind_xml_importer.cpp
  ${_engine}/src/sanitizer_report_importer.cpp ${_engine}/src/best_location.cpp ${_engine}/src/problem_types.cpp)

foreach(name valgrind_xml sanitizer_report)
  corr_add_fuzzer(${name} SOURCES ${name}_fuzzer.cpp ${_importers} LIBS platkit basekit2 probstore3 EXPAT::EXPAT)
  target_include_directories(fuzz_${name} PRIVATE ${_engine}/include)
endforeach()
