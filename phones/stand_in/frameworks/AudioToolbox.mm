#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/system_sounds.h"

#import <AudioToolbox/AudioToolbox.h>

using noctara::PhoneCall;

OSStatus AudioServicesCreateSystemSoundID(CFURLRef file, SystemSoundID* sound) {
    constexpr OSStatus fileNotFound = -43;
    PhoneCall phone;
    return phone && phone->sounds.create(noctara::textOf([(NSURL*)file path]), *sound)
               ? 0
               : fileNotFound;
}

void AudioServicesPlaySystemSound(SystemSoundID sound) {
    if (PhoneCall phone; phone)
        phone->sounds.play(sound);
}

OSStatus AudioServicesDisposeSystemSoundID(SystemSoundID sound) {
    if (PhoneCall phone; phone)
        phone->sounds.dispose(sound);
    return 0;
}
