#ifndef VORLANE_EXPORT_H
#define VORLANE_EXPORT_H

/// \file
/// What libVorlaneCore shows.

/// Marks what libVorlaneCore shows to the outside; everything else is hidden.
#define VORLANE_EXPORT __attribute__((visibility("default")))

#endif
