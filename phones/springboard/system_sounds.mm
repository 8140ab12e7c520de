#include "platform/system_sounds.h"

#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

#import <AudioToolbox/AudioToolbox.h>

namespace noctara {

namespace {

class SpringBoardSounds final : public SystemSounds {
public:
    bool create(const std::string& path, SoundID& id) override {
        @autoreleasepool {
            NSURL* url = [NSURL fileURLWithPath:stringOf(path)];
            SystemSoundID created = 0;
            if (AudioServicesCreateSystemSoundID((CFURLRef)url, &created) != 0)
                return false;
            id = created;
            return true;
        }
    }

    void play(SoundID id) override { AudioServicesPlaySystemSound(id); }

    void dispose(SoundID id) override { AudioServicesDisposeSystemSoundID(id); }
};

} // namespace

SystemSounds& springBoardSounds() {
    static auto& sounds = *new SpringBoardSounds;
    return sounds;
}

} // namespace noctara
