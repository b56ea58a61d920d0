#pragma once
// Rules for the names of result directories and the files in them.
#include <string>

namespace resdir2 {

class ResultDirectoryManager
{
public:
    // True for the device names that Windows reserves: CON, PRN, AUX, NUL,
    // COM1-COM9 and LPT1-LPT9, alone or followed by an extension ("CON.sup"
    // is the console too). Refused on every platform, so that results and
    // suppression files can be moved between systems. The caller upper-cases
    // the name; a lower-case "con" is not matched here.
    static bool isReservedDirectoryName(const std::wstring& name);
};

} // namespace resdir2
