// The export macro of the interface. A host defines PKIDER_STATIC when it links the static form of the library; the
// CMake targets and the pkg-config module do it for their users.
#pragma once

// Written when the library is configured: compares this program's standard library with the one of the library.
#if __has_include(<pkider/built_with.h>)
#include <pkider/built_with.h>
#endif

#if defined(PKIDER_STATIC)
#define PKIDER_API
#elif defined(_WIN32) && defined(PKIDER_BUILDING)
#define PKIDER_API __declspec(dllexport)
#elif defined(_WIN32)
#define PKIDER_API __declspec(dllimport)
#elif defined(__GNUC__)
#define PKIDER_API __attribute__((visibility("default")))
#else
#define PKIDER_API
#endif
