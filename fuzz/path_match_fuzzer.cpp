// Checks the linear-time wildcard matcher against a plain dynamic-programming
// matcher on arbitrary masks and texts.
#include "basekit2/path.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

bool reference_match(const std::wstring& text, const std::wstring& mask)
{
    // dp[j]: mask[0..i) matches text[0..j)
    std::vector<char> dp(text.size() + 1, 0), next(text.size() + 1, 0);
    dp[0] = 1;
    for (wchar_t m : mask) {
        std::fill(next.begin(), next.end(), 0);
        if (m == L'*') {
            char any = 0;
            for (size_t j = 0; j <= text.size(); ++j) {
                any = any || dp[j];
                next[j] = any;
            }
        } else {
            for (size_t j = 1; j <= text.size(); ++j)
                next[j] = dp[j - 1] && (m == L'?' || m == text[j - 1]);
        }
        dp.swap(next);
    }
    return dp[text.size()];
}

// Small alphabet so that matches are common.
wchar_t to_char(uint8_t b)
{
    static const wchar_t alphabet[] = L"ab/*?.";
    return alphabet[b % 6];
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const size_t split = data[0] % (size);
    std::wstring mask, text;
    for (size_t i = 1; i < size; ++i) {
        const wchar_t c = to_char(data[i]);
        if (i <= split)
            mask.push_back(c);
        else if (c != L'*' && c != L'?')
            text.push_back(c);
    }
    if (basekit2::wildcard_match(text, mask) != reference_match(text, mask))
        std::abort();
    (void)basekit2::path_t(text).match(mask);
    return 0;
}
