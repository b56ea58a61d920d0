#pragma once
// The problem store of a session.
#include "suppfmt3/errdef.h"

#include <string>

namespace probstore3 {

class aggregator_t
{
public:
    // The store's own English text of a suppression-file result code.
    static std::wstring get_suppfmt_errdef_string(suppfmt3::suppfmt_errdef code);
};

} // namespace probstore3
