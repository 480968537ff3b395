/// @file
/// Which lock guards what, in a form that clang checks (-Wthread-safety) and other compilers skip.
#pragma once

#if defined(__clang__)
#define NFW_ANNOTATION(x) __attribute__((x))
#else
#define NFW_ANNOTATION(x)
#endif

#define NFW_GUARDED_BY(x) NFW_ANNOTATION(guarded_by(x))
#define NFW_REQUIRES(...) NFW_ANNOTATION(requires_capability(__VA_ARGS__))
#define NFW_EXCLUDES(...) NFW_ANNOTATION(locks_excluded(__VA_ARGS__))
#define NFW_ACQUIRE(...) NFW_ANNOTATION(acquire_capability(__VA_ARGS__))
#define NFW_RELEASE(...) NFW_ANNOTATION(release_capability(__VA_ARGS__))
#define NFW_SCOPED_LOCK NFW_ANNOTATION(scoped_lockable)
/// Beside each use stands the reason.
#define NFW_NO_THREAD_SAFETY_ANALYSIS NFW_ANNOTATION(no_thread_safety_analysis)
