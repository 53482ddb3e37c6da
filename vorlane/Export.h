#ifndef VORLANE_EXPORT_H
#define VORLANE_EXPORT_H

/// Marks what libVorlaneCore shows to the outside; everything else is hidden.
#define VORLANE_EXPORT __attribute__((visibility("default")))

#endif
