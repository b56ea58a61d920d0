#include "resdir2/result_directory_manager.h"

#include <array>

namespace resdir2 {

bool ResultDirectoryManager::isReservedDirectoryName(const std::wstring& name)
{
    static const std::array<const wchar_t*, 4> devices = {L"CON", L"PRN", L"AUX", L"NUL"};
    // The device is the part before the first dot.
    const std::wstring base = name.substr(0, name.find(L'.'));
    for (const wchar_t* device : devices)
        if (base == device)
            return true;
    if (base.size() == 4 && (base.compare(0, 3, L"COM") == 0 || base.compare(0, 3, L"LPT") == 0))
        return base[3] >= L'1' && base[3] <= L'9';
    return false;
}

} // namespace resdir2
