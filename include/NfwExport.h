/// @file
/// What leaves the library: everything else is hidden.
#pragma once

#define NFW_API __attribute__((visibility("default")))

/// Lets the compiler check a format against its arguments; positions count from 1.
#define NFW_PRINTF(nFormat, nFirst) __attribute__((format(printf, nFormat, nFirst)))
