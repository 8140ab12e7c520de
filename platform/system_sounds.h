/// The phone's short sounds (`AudioServices`).
#pragma once

#include <cstdint>
#include <string>

namespace noctara {

/// A registered sound. 0 is no sound.
using SoundID = std::uint32_t;

/// The sound that is a vibration (`kSystemSoundID_Vibrate`).
inline constexpr SoundID vibrationSound = 4095;

class SystemSounds {
public:
    virtual ~SystemSounds() = default;

    /// Registers the sound file at `path`. False, with `id` untouched, when it cannot be read.
    virtual bool create(const std::string& path, SoundID& id) = 0;

    /// Starts the sound (0 is ignored) and returns at once.
    virtual void play(SoundID id) = 0;

    virtual void dispose(SoundID id) = 0;
};

} // namespace noctara
