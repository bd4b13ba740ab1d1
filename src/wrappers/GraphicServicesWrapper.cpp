#include "GraphicServicesWrapper.h"

#include <string>
#include <utility>

#include "CanvasWrapper.h"
#include "FontWrapper.h"
#include "interfaces/GraphicServices.h"
#include "support/Entry.h"
#include "support/Errors.h"
#include "support/OneShotJob.h"
#include "support/Results.h"

using namespace quiravent;

namespace {

class LoadImageWorker : public OneShotJob<CanvasWrapper> {
  public:
    LoadImageWorker(v8::Local<v8::Value> callback, std::string path)
        : OneShotJob(callback, "Error on loading image"), m_path(std::move(path)) {}

  private:
    Canvas* Produce() override { return GraphicServices::LoadImage(m_path); }

    std::string m_path;
};

class LoadFontWorker : public OneShotJob<FontWrapper> {
  public:
    LoadFontWorker(v8::Local<v8::Value> callback, std::string path, uint32_t size)
        : OneShotJob(callback, "Error on loading font"), m_path(std::move(path)), m_size(size) {}

  private:
    Font* Produce() override { return GraphicServices::LoadFont(m_path, m_size); }

    std::string m_path;
    uint32_t m_size;
};

void ReturnCanvas(const Info& info, Canvas* canvas) {
    if (canvas != nullptr) info.GetReturnValue().Set(CanvasWrapper::ToScript(canvas));
}

void GetTargetCanvas(const Info& info) { ReturnCanvas(info, GraphicServices::GetTargetCanvas()); }

void CreateCanvas(const Info& info) {
    const uint32_t width = ReadUint32(info[0]);
    const uint32_t height = ReadUint32(info[1]);
    ReturnCanvas(info, GraphicServices::CreateCanvas(width, height));
}

void LoadImage(const Info& info) {
    if (!info[0]->IsString()) {
        return ThrowTypeError("loadImage() error. I believe that you need to choose a real image.");
    }
    if (info[1]->IsUndefined()) return ThrowMissingCallback("loadImage");
    Nan::AsyncQueueWorker(new LoadImageWorker(info[1], ReadText(info[0])));
}

void LoadFont(const Info& info) {
    // The text speaks of the font in the second case too, where the size is at fault: deliberate.
    if (!info[0]->IsString() || !info[1]->IsNumber()) {
        return ThrowTypeError("loadFont() error. I believe that you need to choose a real font.");
    }
    if (info[2]->IsUndefined()) return ThrowMissingCallback("loadFont");
    const uint32_t size = ReadUint32(info[1]);
    if (size == 0) {
        return ThrowTypeError("loadFont() error. You must use an integer value (>0).");
    }
    Nan::AsyncQueueWorker(new LoadFontWorker(info[2], ReadText(info[0]), size));
}

void GetVRAMStats(const Info& info) {
    int used = 0;
    int free = 0;
    (void)GraphicServices::GetVRAMStats(&used, &free);
    ReturnIntegers<Property::used, Property::free>(info, used, free);
}

// Deliberately empty: a canvas or a font stays just as it was.
void CleanUp(const Info&) {}

}  // namespace

void GraphicServicesWrapper::Init(v8::Local<v8::Object> exports) {
    ExportNamespace(
        exports, "graphicServices",
        {MemberOf<GetTargetCanvas>("getTargetCanvas"), MemberOf<CreateCanvas>("createCanvas"),
         MemberOf<LoadImage>("loadImage"), MemberOf<LoadFont>("loadFont"),
         MemberOf<GetVRAMStats>("getVRAMStats"), MemberOf<CleanUp>("cleanUp")});
}
