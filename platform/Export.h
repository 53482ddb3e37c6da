#ifndef VORLANE_PLATFORM_EXPORT_H
#define VORLANE_PLATFORM_EXPORT_H

/// Marks what libVorlanePlatform shows to the outside; everything else is hidden.
#define VORLANE_PLATFORM_EXPORT __attribute__((visibility("default")))

#endif
