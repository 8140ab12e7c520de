/// Sounds and the vibration, which the main thread plays.
#include "monitor/noctara_thread.h"

namespace noctara {

void NoctaraThread::playAudioOnMainThread(SoundID sound) {
    currentSoundId = sound;
    platform.threads.performOnMainThread("playAudioAsync", [this] { playAudioAsync(); });
}

void NoctaraThread::playAudioAsync() {
    platform.sounds.play(currentSoundId);
}

} // namespace noctara
