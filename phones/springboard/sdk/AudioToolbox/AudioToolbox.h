/// AudioToolbox's system sounds.
#pragma once

#import <CoreFoundation/CoreFoundation.h>

#include <cstdint>

extern "C" {

using OSStatus = std::int32_t;
using SystemSoundID = std::uint32_t;

/// Other than 0, with `sound` untouched, when the file cannot be read.
OSStatus AudioServicesCreateSystemSoundID(CFURLRef file, SystemSoundID* sound);
void AudioServicesPlaySystemSound(SystemSoundID sound);
OSStatus AudioServicesDisposeSystemSoundID(SystemSoundID sound);

} // extern "C"
