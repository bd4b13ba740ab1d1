// recorder.node: steers the recorder from a script. The functions are documented, and their
// arguments checked, in test/script/support/recorder.js.

#include <nan.h>
#include <sys/ioctl.h>

#include <memory>

#include "ChangeSignal.h"
#include "Convert.h"
#include "DeviceThreads.h"
#include "Recorder.h"
#include "runInChild.h"

namespace quiravent::recorder {
namespace {

using Info = Nan::FunctionCallbackInfo<v8::Value>;

/// Lives as long as the process: the loop's end is the process's.
ChangeSignal* changeSignal = nullptr;

std::string textArgument(const Info& info, int index) { return fromScript(info[index]).text(); }

/// functions(): the names of all functions that can be recorded.
void functions(const Info& info) {
    List names;
#define PL_FUNCTION(result, name, parameters, arguments) names.emplace_back(std::string(#name));
#include "porting/pl_functions.def"
    names.emplace_back(std::string("PlatformServices::EnableDTVEvents"));
    info.GetReturnValue().Set(toScript(names));
}

/// calls(fromSeq)
void calls(const Info& info) {
    const auto from = static_cast<uint64_t>(fromScript(info[0]).number());
    const std::vector<Call> found = Recorder::instance().callsFrom(from);
    const auto array = Nan::New<v8::Array>(static_cast<int>(found.size()));
    for (uint32_t index = 0; index < found.size(); ++index) {
        Nan::Set(array, index, toScript(found[index])).FromJust();
    }
    info.GetReturnValue().Set(array);
}

void clear(const Info&) { Recorder::instance().clear(); }

void echo(const Info&) { Recorder::instance().echo(); }

/// answerOnce(fn, behaviour)
void answerOnce(const Info& info) {
    Recorder::instance().answerOnce(textArgument(info, 0), toBehaviour(fromScript(info[1])));
}

/// answerAlways(fn, behaviour)
void answerAlways(const Info& info) {
    Recorder::instance().answerAlways(textArgument(info, 0), toBehaviour(fromScript(info[1])));
}

void resetAnswers(const Info&) { Recorder::instance().resetAnswers(); }

/// openGate(gate)
void openGate(const Info& info) { Recorder::instance().openGate(textArgument(info, 0)); }

/// waitingAt(gate)
void waitingAt(const Info& info) {
    info.GetReturnValue().Set(Recorder::instance().waitingAt(textArgument(info, 0)));
}

/// fire(thread, events): the number of the burst.
void fire(const Info& info) {
    const uint64_t burst =
        DeviceThreads::instance().fire(textArgument(info, 0), toEvents(fromScript(info[1])));
    info.GetReturnValue().Set(static_cast<double>(burst));
}

/// delivered(burst): how many events found a callback, undefined while the burst lasts.
void delivered(const Info& info) {
    const auto burst = static_cast<uint64_t>(fromScript(info[0]).number());
    const auto count = DeviceThreads::instance().delivered(burst);
    if (count) info.GetReturnValue().Set(*count);
}

/// unread(descriptor): how many bytes wait in that pipe.
void unread(const Info& info) {
    int bytes = 0;
    (void)ioctl(Nan::To<int>(info[0]).FromJust(), FIONREAD, &bytes);
    info.GetReturnValue().Set(bytes);
}

/// inChild(seconds, act): { code, signal, output, errors } of a child that calls act().
void inChild(const Info& info) {
    const auto act = info[1].As<v8::Function>();
    const ChildEnd end = runInChild(Nan::To<uint32_t>(info[0]).FromJust(), [&] {
        (void)Nan::Call(act, Nan::GetCurrentContext()->Global(), 0, nullptr);
    });
    info.GetReturnValue().Set(toScript(Record{{"code", double(end.code)},
                                              {"signal", double(end.signal)},
                                              {"output", end.output},
                                              {"errors", end.errors}}));
}

/// onChange(listener): to be called once.
void onChange(const Info& info) {
    changeSignal = std::make_unique<ChangeSignal>(info[0].As<v8::Function>()).release();
}

/// holdLoop(held)
void holdLoop(const Info& info) { changeSignal->hold(Nan::To<bool>(info[0]).FromJust()); }

void stop(const Info&) { changeSignal->stop(); }

NAN_MODULE_INIT(init) {
    Nan::SetMethod(target, "functions", functions);
    Nan::SetMethod(target, "calls", calls);
    Nan::SetMethod(target, "clear", clear);
    Nan::SetMethod(target, "echo", echo);
    Nan::SetMethod(target, "answerOnce", answerOnce);
    Nan::SetMethod(target, "answerAlways", answerAlways);
    Nan::SetMethod(target, "resetAnswers", resetAnswers);
    Nan::SetMethod(target, "openGate", openGate);
    Nan::SetMethod(target, "waitingAt", waitingAt);
    Nan::SetMethod(target, "fire", fire);
    Nan::SetMethod(target, "delivered", delivered);
    Nan::SetMethod(target, "unread", unread);
    Nan::SetMethod(target, "inChild", inChild);
    Nan::SetMethod(target, "onChange", onChange);
    Nan::SetMethod(target, "holdLoop", holdLoop);
    Nan::SetMethod(target, "stop", stop);
}

}  // namespace
}  // namespace quiravent::recorder

NODE_MODULE(recorder, quiravent::recorder::init)
