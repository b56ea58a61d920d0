#include "test_paths.h"

namespace corr_test_paths {

std::string test_data() { return CORR_PATHS_TEST_DATA; }
std::string samples() { return CORR_PATHS_SAMPLES; }
std::string resources() { return CORR_PATHS_RESOURCES; }

} // namespace corr_test_paths
