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

    /// Runs the body of an entry, and throws what was kept meanwhile, if anything was.
    template <class Body>
    static void Around(const Body& body) {
        if (s_kept) return Inside(body);
        body();
        if (s_kept) ThrowKept();
    }

  private:
    /// Holds what was kept, until its end keeps it again.
    class SetAside {
      public:
        SetAside();
        ~SetAside();
        SetAside(const SetAside&) = delete;
        SetAside& operator=(const SetAside&) = delete;

      private:
        Nan::Persistent<v8::Value> m_value;
    };

    /// For an entry that is called by a conversion of another one, which has kept an exception of
    /// its own already.
    template <class Body>
    static void Inside(const Body& body) {
        const SetAside outer;
        Around(body);
    }

    static void ThrowKept();

    static bool s_kept;
};

}  // namespace quiravent
