#include "resdir2/result_directory_manager.h"

#include <gtest/gtest.h>

using resdir2::ResultDirectoryManager;

TEST(ReservedDirectoryNames, DeviceNamesAloneOrWithAnExtensionAreReserved)
{
    for (const wchar_t* name : {L"CON", L"PRN", L"AUX", L"NUL", L"COM1", L"COM9", L"LPT1", L"LPT9",
                                L"CON.SUP", L"NUL.", L"COM3.TXT.BAK"})
        EXPECT_TRUE(ResultDirectoryManager::isReservedDirectoryName(name)) << name;
}

TEST(ReservedDirectoryNames, EverythingElseIsAllowed)
{
    for (const wchar_t* name : {L"", L"CONS", L"XCON", L"COM", L"COM0", L"COM10", L"LPT", L"LPT0",
                                L"CONSOLE.SUP", L"con", L"Com1", L".CON", L"A.CON", L"COM1X",
                                L"NULL"})
        EXPECT_FALSE(ResultDirectoryManager::isReservedDirectoryName(name)) << name;
}
