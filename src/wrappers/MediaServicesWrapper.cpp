#include "MediaServicesWrapper.h"

#include <string>
#include <utility>

#include "AdPlayerWrapper.h"
#include "MediaPlayerWrapper.h"
#include "interfaces/MediaServices.h"
#include "support/Entry.h"
#include "support/Errors.h"
#include "support/OneShotJob.h"

using namespace quiravent;

namespace {

class MediaServicesWorker : public OneShotJob<MediaPlayerWrapper> {
  public:
    MediaServicesWorker(v8::Local<v8::Value> callback, std::string url, const FourNumbers& bounds)
        : OneShotJob(callback, "Error on getPlayer"), m_url(std::move(url)), m_bounds(bounds) {}

  private:
    MediaPlayer* Produce() override {
        return MediaServices::GetPlayer(m_url, m_bounds.x, m_bounds.y, m_bounds.w, m_bounds.h);
    }

    std::string m_url;
    FourNumbers m_bounds;
};

class MediaServicesWorker_AdPlayer : public OneShotJob<AdPlayerWrapper> {
  public:
    MediaServicesWorker_AdPlayer(v8::Local<v8::Value> callback, std::string url)
        : OneShotJob(callback, "ERROR"), m_url(std::move(url)) {}

  private:
    AdPlayer* Produce() override {
        e_pl_ad_media_error error = e_pl_ad_media_error_none;
        return MediaServices::GetAdPlayer(m_url, &error);
    }

    std::string m_url;
};

/// Both functions test alike and say "getPlayer": the rectangle, too, which an ad player doesn't
/// use. Deliberate.
bool RefuseArguments(const Info& info) {
    if (!info[0]->IsString()) {
        ThrowTypeError("getPlayer() error. I believe that you need to choose a real video url.");
    } else if (info[1]->IsUndefined()) {
        ThrowTypeError("getPlayer() error. You must write configure a rectangle.");
    } else if (info[2]->IsUndefined()) {
        ThrowMissingCallback("getPlayer");
    } else {
        return false;
    }
    return true;
}

void GetPlayer(const Info& info) {
    if (RefuseArguments(info)) return;
    const std::string url = ReadText(info[0]);
    const FourNumbers bounds = ReadRectangle(ReadObject(info[1]));
    Nan::AsyncQueueWorker(new MediaServicesWorker(info[2], url, bounds));
}

void GetAdPlayer(const Info& info) {
    if (RefuseArguments(info)) return;
    Nan::AsyncQueueWorker(new MediaServicesWorker_AdPlayer(info[2], ReadText(info[0])));
}

}  // namespace

void MediaServicesWrapper::Init(v8::Local<v8::Object> exports) {
    ExportNamespace(exports, "mediaServices",
                    {MemberOf<GetPlayer>("getPlayer"), MemberOf<GetAdPlayer>("getAdPlayer")});
}
