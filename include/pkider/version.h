// The version of the library that these headers belong to. Below version 1.0 a new minor version may change the
// interface.
//
//     #if PKIDER_VERSION_MAJOR == 0 && PKIDER_VERSION_MINOR < 2
#pragma once

#define PKIDER_VERSION_MAJOR 0
#define PKIDER_VERSION_MINOR 1
#define PKIDER_VERSION_PATCH 0
