#pragma once
// Where the tests find their fixtures and the built resources. Every test
// gets this header first (a forced include), and CORR_TEST_DATA_DIR,
// CORR_SAMPLES_DIR and CORR_RESOURCE_DIR stand for these calls: the folders
// are compiled into one small library instead of into every test's command
// line, so a checkout elsewhere reuses the compiler cache for all the rest.
#include <string>

namespace corr_test_paths {

std::string test_data(); // tests/data of the checkout
std::string samples();   // samples/ of the checkout
std::string resources(); // the built resource archives

} // namespace corr_test_paths
