#pragma once
// What every import must hold, whatever the input: checked by the importer
// fuzz targets, which abort on a violation.
#include "corr_engine/result_converter.h"

#include <cstdlib>
#include <vector>

namespace fuzz {

inline void check(bool condition)
{
    if (!condition)
        std::abort();
}

inline void check_import(const corr_engine::import_report_t& report,
                         const std::vector<probstore3::problem_t>& problems)
{
    check(report.ok == report.error.empty());
    check(report.problems == problems.size());
    check(!report.truncated || !report.warnings.empty());
    for (size_t i = 0; i < problems.size(); ++i) {
        const auto& p = problems[i];
        check(p.id == i + 1);
        check(!p.type.empty());
        check(p.best_level >= 0);
        check(p.stacks.empty() ? p.best_level == 0
                               : static_cast<size_t>(p.best_level) < p.stacks[0].frames.size() ||
                                     (p.stacks[0].frames.empty() && p.best_level == 0));
    }
}

// The same input read two ways must give the same problems. (Only the
// outcome: expat may name a different reason for the same malformed bytes
// when they arrive in other pieces.)
inline void check_same(const corr_engine::import_report_t& a,
                       const std::vector<probstore3::problem_t>& pa,
                       const corr_engine::import_report_t& b,
                       const std::vector<probstore3::problem_t>& pb)
{
    check(a.ok == b.ok && a.truncated == b.truncated);
    check(pa.size() == pb.size());
    for (size_t i = 0; i < pa.size(); ++i)
        check(pa[i].stacks == pb[i].stacks && pa[i].description == pb[i].description &&
              pa[i].aux == pb[i].aux && pa[i].kind == pb[i].kind);
}

} // namespace fuzz
