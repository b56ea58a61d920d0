#pragma once
// The library is built with hidden visibility; exported classes and
// functions carry CORR_DIALOGS2_API.
#if defined(_WIN32)
#if defined(CORR_DIALOGS2_BUILD)
#define CORR_DIALOGS2_API __declspec(dllexport)
#else
#define CORR_DIALOGS2_API __declspec(dllimport)
#endif
#else
#define CORR_DIALOGS2_API __attribute__((visibility("default")))
#endif
