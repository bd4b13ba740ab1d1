#pragma once

#include <nan.h>

namespace quiravent {

/// A script exception that a conversion threw while an entry read its arguments. The entry carries
/// on with 0 in the value's place, and the exception reaches the script when the entry returns.
/// Runtimes differ in what becomes of an exception that is left pending meanwhile, so it is kept
/// here. Script thread only.
class KeptException {
  public:
    /// Takes what conversions threw, of several the last; what an entry has kept before stays.
    static void Keep(const Nan::TryCatch& caught);

    /// The first act of every entry. An entry may be called by a conversion of another one, which
    /// has kept an exception of its own already: what this tells has to be given to End.
    static bool Begin() {
        const bool outer = s_kept;
        s_kept = false;
        return outer;
    }

    /// The last act: throws what was kept since Begin, if anything was. What an entry throws in C++
    /// ends the process, so it needn't come here.
    static void End(bool outer) {
        if (s_kept) ThrowKept();
        s_kept = outer;
    }

  private:
    static void ThrowKept();

    static bool s_kept;
};

}  // namespace quiravent
