#include "audio/SoundEffectPlayer.h"

CSoundEffectPlayer::CSoundEffectPlayer(HWND owner, int voices)
    : samples(static_cast<size_t>(voices > 0 ? voices : 1)) {
  AcquireBass(owner);
}

CSoundEffectPlayer::~CSoundEffectPlayer() {
  if (const BassApi* bass = Bass()) {
    for (HSAMPLE sample : samples) {
      if (sample) bass->BASS_SampleFree(sample);
    }
  }
  ReleaseBass();
}

bool CSoundEffectPlayer::PlayFile(const std::wstring& path, float volume) {
  const BassApi* bass = Bass();
  if (!bass) return false;
  HSAMPLE& sample = samples[voice];
  if (sample) bass->BASS_SampleFree(sample);
  sample = bass->BASS_SampleLoad(FALSE, path.c_str(), 0, 0, 1, BASS_UNICODE | BASS_SAMPLE_OVER_POS);
  if (!sample) return false;
  HCHANNEL channel = bass->BASS_SampleGetChannel(sample, FALSE);
  voice = (voice + 1) % samples.size();
  bass->BASS_ChannelSetAttribute(channel, BASS_ATTRIB_VOL, volume);
  bass->BASS_ChannelPlay(channel, FALSE);
  return true;
}

void CSoundEffectPlayer::GetErrorText(std::wstring& text) {
  const BassApi* bass = Bass();
  text = bass ? std::wstring(BassErrorName(bass->BASS_ErrorGetCode())) : LibraryMissingText(kBassFileName);
}
