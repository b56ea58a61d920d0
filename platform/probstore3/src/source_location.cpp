#include "probstore3/source_location.h"

#include <boost/make_shared.hpp>

#include <string_view>

namespace probstore3 {
namespace {

// The last component of a path, whichever separator it uses.
std::string leaf(std::string_view path)
{
    const size_t slash = path.find_last_of("/\\");
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

} // namespace

boost::shared_ptr<agg_source_location_t> agg_source_location_t::from_problem(const problem_t& problem)
{
    const frame_t* best = problem.best_frame();
    return best ? boost::make_shared<agg_source_location_t>(*best) : boost::shared_ptr<agg_source_location_t>();
}

platkit::types::variant agg_source_location_t::exact_short_mod_name() const { return leaf(m_frame.module); }

platkit::types::variant agg_source_location_t::func_name() const { return m_frame.function; }

platkit::types::variant agg_source_location_t::short_file() const { return leaf(m_frame.source); }

platkit::types::variant agg_source_location_t::full_file() const { return m_frame.source; }

} // namespace probstore3
