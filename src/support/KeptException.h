#pragma once

#include <nan.h>

namespace quiravent {

/// A script exception that a conversion threw while an entry read its arguments. The entry carries
/// on with 0 in the value's place, and the exception reaches the script when the entry returns.
/// Runtimes differ in what becomes of an exception that is left pending meanwhile, so it is kept
/// here. Script thread only.
class KeptException {
  public:
    /// Takes what a conversion threw; the first one of an entry stays.
    static void Keep(const Nan::TryCatch& caught);

    /// Throws what was kept, if anything was. The last act of every entry.
    static void Throw() {
        if (s_kept) ThrowKept();
    }

  private:
    static void ThrowKept();

    static bool s_kept;
};

}  // namespace quiravent
