#ifndef VORLANE_PLATFORM_EXPORT_H
#define VORLANE_PLATFORM_EXPORT_H

/// \file
/// What libVorlanePlatform shows.

/// Marks what libVorlanePlatform shows to the outside; everything else is hidden.
#define VORLANE_PLATFORM_EXPORT __attribute__((visibility("default")))

#endif
