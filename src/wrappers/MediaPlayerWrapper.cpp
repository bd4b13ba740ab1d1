#include "MediaPlayerWrapper.h"

#include <cstdio>
#include <cstring>

#include "support/Errors.h"
#include "support/InitOrder.h"
#include "support/PlayerMethods.h"

using namespace quiravent;

Nan::Persistent<v8::Function> MediaPlayerWrapper::constructor
    __attribute__((init_priority(quiravent::kMediaPlayerConstructor)));

namespace {

using MediaPlayerWorker = PlayerWorker<MediaPlayer, pl_media_SetCallback_Event>;
using MediaMethods = PlayerMethods<MediaPlayer, MediaPlayerWorker>;

void SetBounds(MediaPlayer* player, const Info& info) {
    if (info[0]->IsUndefined()) return ThrowMissingBounds();
    const FourNumbers bounds = ReadRectangle(ReadObject(info[0]));
    (void)player->SetBounds(bounds.x, bounds.y, bounds.w, bounds.h);
}

void Seek(MediaPlayer* player, const Info& info) { (void)player->Seek(ReadUint32(info[0])); }

void SetPlaybackSpeed(MediaPlayer* player, const Info& info) {
    if (!info[0]->IsNumber()) return;
    int speed = static_cast<int>(ReadUint32(info[0]));
    (void)player->SetPlaybackSpeed(&speed);
    info.GetReturnValue().Set(static_cast<int32_t>(speed));
}

// Deliberately empty: scripts may call it, and nothing happens.
void GetThumbnail(MediaPlayer*, const Info&) {}

void GetBufferedTimes(MediaPlayer* player, const Info& info) {
    const v8::Local<v8::Array> result = Nan::New<v8::Array>();
    MediaMethods::ForEachBufferedTime(player, [&](unsigned index, v8::Local<v8::Object> range) {
        (void)Nan::Set(result, index, range);
    });
    info.GetReturnValue().Set(result);
}

v8::Local<v8::Object> MakeTrack(const s_pl_media_track_info& track) {
    const v8::Local<v8::Object> result = MakeUnsigned({{Property::id, track.id}});
    const size_t length = strnlen(track.language, sizeof track.language);
    const v8::Local<v8::String> language =
        Nan::New(track.language, static_cast<int>(length)).ToLocalChecked();
    (void)Nan::Set(result, NameOf(Property::language), language);
    return result;
}

void GetTracks(MediaPlayer* player, const Info& info) {
    if (!info[0]->IsString()) return;
    s_pl_media_track_info tracks[kRecords] = {};
    s_pl_media_track_info* first = tracks;
    unsigned count = kRecords;
    (void)player->GetTracks(ReadText(info[0]), &first, &count);
    if (count == 0) {
        (void)std::fputs(
            "[MediaPlayerWrapper::GetTracks] no value (undefined) returned for JavaScript\n",
            stdout);
        (void)std::fflush(stdout);
        return;
    }
    if (count > kRecords) count = kRecords;
    const v8::Local<v8::Array> result = Nan::New<v8::Array>(static_cast<int>(count));
    for (unsigned index = 0; index < count; ++index) {
        (void)Nan::Set(result, index, MakeTrack(tracks[index]));
    }
    info.GetReturnValue().Set(result);
}

void SelectTrack(MediaPlayer* player, const Info& info) {
    if (!info[0]->IsString() || !info[1]->IsNumber()) return;
    (void)player->SelectTrack(ReadText(info[0]), ReadUint32(info[1]));
}

}  // namespace

void MediaPlayerWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWith(exports, {MethodOf<MediaMethods::Call<&MediaPlayer::Fetch>>("fetch"),
                         MethodOf<MediaMethods::Call<&MediaPlayer::Start>>("start"),
                         MethodOf<MediaMethods::Call<&MediaPlayer::Pause>>("pause"),
                         MethodOf<MediaMethods::Call<&MediaPlayer::Resume>>("resume"),
                         MethodOf<MediaMethods::Call<&MediaPlayer::Stop>>("stop"),
                         MethodOf<MediaMethods::Unload>("unload"), MethodOf<SetBounds>("setBounds"),
                         MethodOf<Seek>("seek"), MethodOf<MediaMethods::GetTime>("getTime"),
                         MethodOf<SetPlaybackSpeed>("setPlaybackSpeed"),
                         MethodOf<MediaMethods::SetVolume>("setVolume"),
                         MethodOf<GetThumbnail>("getThumbnail"),
                         MethodOf<GetBufferedTimes>("getBufferedTimes"),
                         MethodOf<MediaMethods::RegisterListener>("registerListener"),
                         MethodOf<SelectTrack>("selectTrack"), MethodOf<GetTracks>("getTracks")});
}
