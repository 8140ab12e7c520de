/// The phone's short sounds (`AudioServices`).
#pragma once

#include <cstdint>
#include <string>

namespace noctara {

/// A registered sound. 0 means no sound.
using SoundID = std::uint32_t;

/// Makes the phone vibrate (`kSystemSoundID_Vibrate`).
inline constexpr SoundID vibrationSound = 4095;

class SystemSounds {
public:
    virtual ~SystemSounds() = default;

    /// Registers the sound file at `path`. False if the file cannot be read; `id` is then
    /// unchanged.
    virtual bool create(const std::string& path, SoundID& id) = 0;

    /// Starts the sound (0 is ignored) and returns at once.
    virtual void play(SoundID id) = 0;

    virtual void dispose(SoundID id) = 0;
};

} // namespace noctara
