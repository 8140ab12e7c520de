/// Sounds and the vibration. The main thread plays them.
#include "monitor/noctara_thread.h"

namespace noctara {

void NoctaraThread::playAudioOnMainThread(SoundID sound) {
    currentSoundId = sound;
    platform.threads->performOnMainThread("playAudioAsync", [this] { playAudioAsync(); });
}

void NoctaraThread::playAudioAsync() {
    platform.sounds->play(currentSoundId);
}

} // namespace noctara
