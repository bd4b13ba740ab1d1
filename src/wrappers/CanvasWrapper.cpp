#include "CanvasWrapper.h"

#include <string>

#include "FontWrapper.h"
#include "support/Arguments.h"
#include "support/Errors.h"
#include "support/InitOrder.h"
#include "support/KnownTexts.h"
#include "support/Results.h"

using namespace quiravent;

Nan::Persistent<v8::Function> CanvasWrapper::constructor
    __attribute__((init_priority(quiravent::kCanvasConstructor)));

CanvasWrapper::~CanvasWrapper() {
    if (native()->IsTarget()) return;
    delete native();
    m_native = nullptr;
}

namespace {

/// What "setClip" without a rectangle sets: the target's size, whatever the canvas's own.
constexpr FourNumbers kWholeTarget = {0, 0, 1280, 720};

uint8_t ReadByte(v8::Local<v8::Object> object, Property property) {
    return static_cast<uint8_t>(ReadUint32(object, property) & 0xFF);
}

void GetSize(Canvas* canvas, const Info& info) {
    unsigned int w = 0;
    unsigned int h = 0;
    (void)canvas->GetSize(&w, &h);
    ReturnUnsigned<Property::w, Property::h>(info, w, h);
}

void SetColor(Canvas* canvas, const Info& info) {
    if (info[0]->IsString()) return canvas->SetColor(ReadKnownText(info[0]));
    if (!info[0]->IsObject()) return;
    const PropertyReads reads;
    const v8::Local<v8::Object> color = info[0].As<v8::Object>();
    const uint8_t r = ReadByte(color, Property::r);
    const uint8_t g = ReadByte(color, Property::g);
    const uint8_t b = ReadByte(color, Property::b);
    const uint8_t a = ReadByte(color, Property::a);
    canvas->SetColor(r, g, b, a);
}

void GetColor(Canvas* canvas, const Info& info) {
    uint8_t r = 0;
    uint8_t g = 0;
    uint8_t b = 0;
    uint8_t a = 0;
    (void)canvas->GetColor(&r, &g, &b, &a);
    ReturnIntegers<Property::r, Property::g, Property::b, Property::a>(info, r, g, b, a);
}

using RectangleOperation = int32_t (Canvas::*)(unsigned int, unsigned int, unsigned int,
                                               unsigned int);

template <RectangleOperation operation>
void WithRectangle(Canvas* canvas, const Info& info) {
    const FourNumbers rect = ReadRectangle(info);
    (void)(canvas->*operation)(rect.x, rect.y, rect.w, rect.h);
}

void DrawLine(Canvas* canvas, const Info& info) {
    const FourNumbers ends = info[0]->IsObject()
                                 ? ReadFour(info[0].As<v8::Object>(), Property::x1, Property::y1,
                                            Property::x2, Property::y2)
                                 : ReadFour(info);
    (void)canvas->DrawLine(ends.x, ends.y, ends.w, ends.h);
}

void SetClip(Canvas* canvas, const Info& info) {
    const FourNumbers clip = IsMissing(info[0]) ? kWholeTarget : ReadRectangle(info);
    canvas->SetClip(clip.x, clip.y, clip.w, clip.h);
}

void GetClip(Canvas* canvas, const Info& info) {
    unsigned int x = 0;
    unsigned int y = 0;
    unsigned int w = 0;
    unsigned int h = 0;
    (void)canvas->GetClip(&x, &y, &w, &h);
    ReturnUnsigned<Property::x, Property::y, Property::w, Property::h>(info, x, y, w, h);
}

void SetRotation(Canvas* canvas, const Info& info) {
    (void)canvas->SetRotation(ReadDouble(info[0]));
}

void SetOpacity(Canvas* canvas, const Info& info) { (void)canvas->SetOpacity(ReadDouble(info[0])); }

void SetFont(Canvas* canvas, const Info& info) {
    if (IsMissing(info[0])) {
        return ThrowTypeError("setFont() error. I believe that your font was not loaded.");
    }
    canvas->SetFont(FontWrapper::NativeOf(ReadObject(info[0])));
}

void DrawText(Canvas* canvas, const Info& info) {
    const std::string text = ReadKnownText(info[0]);
    const uint32_t x = ReadUint32(info[1]);
    const uint32_t y = ReadUint32(info[2]);
    (void)canvas->DrawText(text, x, y);
}

void MeasureText(Canvas* canvas, const Info& info) {
    unsigned int width = 0;
    unsigned int height = 0;
    (void)canvas->MeasureText(ReadKnownText(info[0]), &width, &height);
    ReturnUnsigned<Property::width, Property::height>(info, width, height);
}

void SetTextAlign(Canvas* canvas, const Info& info) {
    std::string horizontal;
    std::string vertical;
    if (info[0]->IsString()) horizontal = ReadKnownText(info[0]);
    if (info[1]->IsString()) vertical = ReadKnownText(info[1]);
    (void)canvas->SetTextAlign(horizontal, vertical);
}

void Compose(Canvas* canvas, const Info& info) {
    if (IsMissing(info[0])) {
        return ThrowTypeError("compose() error. canvasWrapperSource is invalid.");
    }
    Canvas* source = CanvasWrapper::NativeOf(ReadObject(info[0]));
    const uint32_t x = ReadUint32(info[1]);
    const uint32_t y = ReadUint32(info[2]);
    if (info[3]->IsUndefined()) {
        (void)canvas->Compose(source, x, y);
        return;
    }
    const FourNumbers part = ReadRectangle(ReadObject(info[3]));
    (void)canvas->Compose(source, part.x, part.y, part.w, part.h, x, y);
}

/// The rectangle given, or the whole of the canvas for undefined.
FourNumbers RectangleOrWhole(v8::Local<v8::Value> value, const Canvas* canvas) {
    if (!value->IsUndefined()) return ReadRectangle(ReadObject(value));
    FourNumbers whole = {0, 0, 0, 0};
    (void)canvas->GetSize(&whole.w, &whole.h);
    return whole;
}

void ComposeScaled(Canvas* canvas, const Info& info) {
    if (IsMissing(info[0])) {
        return ThrowTypeError("composeScaled() error. canvasWrapperSource is not valid.");
    }
    Canvas* source = CanvasWrapper::NativeOf(ReadObject(info[0]));
    const FourNumbers to = RectangleOrWhole(info[1], canvas);
    const FourNumbers from = RectangleOrWhole(info[2], source);
    (void)canvas->ComposeScaled(source, to.x, to.y, to.w, to.h, from.x, from.y, from.w, from.h);
}

void Flush(Canvas* canvas, const Info& info) {
    if (IsMissing(info[0])) {
        (void)canvas->Flush();
        return;
    }
    const FourNumbers rect = ReadRectangle(ReadObject(info[0]));
    (void)canvas->Flush(rect.x, rect.y, rect.w, rect.h);
}

struct Ellipse {
    std::string mode;
    uint32_t xc;
    uint32_t yc;
    uint32_t radiusx;
    uint32_t radiusy;
    double ang_start;
    double ang_end;
};

// Braces, because they fix the order in which a script sees its values read.
Ellipse ReadEllipse(v8::Local<v8::Object> object) {
    const PropertyReads reads;
    return Ellipse{ReadKnownText(ReadProperty(object, Property::mode)),
                   ReadUint32(object, Property::xc),
                   ReadUint32(object, Property::yc),
                   ReadUint32(object, Property::radiusx),
                   ReadUint32(object, Property::radiusy),
                   ReadDouble(ReadProperty(object, Property::ang_start)),
                   ReadDouble(ReadProperty(object, Property::ang_end))};
}

Ellipse ReadEllipse(const Info& info) {
    return Ellipse{ReadKnownText(info[0]), ReadUint32(info[1]), ReadUint32(info[2]),
                   ReadUint32(info[3]),    ReadUint32(info[4]), ReadDouble(info[5]),
                   ReadDouble(info[6])};
}

void DrawEllipse(Canvas* canvas, const Info& info) {
    const Ellipse ellipse =
        info[0]->IsObject() ? ReadEllipse(info[0].As<v8::Object>()) : ReadEllipse(info);
    (void)canvas->DrawEllipse(ellipse.mode, ellipse.xc, ellipse.yc, ellipse.radiusx,
                              ellipse.radiusy, ellipse.ang_start, ellipse.ang_end);
}

void SetPorterDuff(Canvas* canvas, const Info& info) {
    (void)canvas->SetPorterDuff(ReadKnownText(info[0]));
}

void Release(Canvas* canvas, const Info&) { canvas->Release(); }

void IsInvalid(Canvas* canvas, const Info& info) { info.GetReturnValue().Set(canvas->IsInvalid()); }

}  // namespace

void CanvasWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWith(exports, {MethodOf<GetSize>("getSize"),
                         MethodOf<SetColor>("setColor"),
                         MethodOf<GetColor>("getColor"),
                         MethodOf<WithRectangle<&Canvas::FillRect>>("fillRect"),
                         MethodOf<WithRectangle<&Canvas::ClearRect>>("clearRect"),
                         MethodOf<WithRectangle<&Canvas::DrawRect>>("drawRect"),
                         MethodOf<DrawLine>("drawLine"),
                         MethodOf<SetClip>("setClip"),
                         MethodOf<GetClip>("getClip"),
                         MethodOf<SetRotation>("setRotation"),
                         MethodOf<SetOpacity>("setOpacity"),
                         MethodOf<SetFont>("setFont"),
                         MethodOf<DrawText>("drawText"),
                         MethodOf<MeasureText>("measureText"),
                         MethodOf<SetTextAlign>("setTextAlign"),
                         MethodOf<Compose>("compose"),
                         MethodOf<ComposeScaled>("composeScaled"),
                         MethodOf<Flush>("flush"),
                         MethodOf<DrawEllipse>("drawEllipse"),
                         MethodOf<SetPorterDuff>("setPorterDuff"),
                         MethodOf<Release>("release"),
                         MethodOf<IsInvalid>("isInvalid")});
}
