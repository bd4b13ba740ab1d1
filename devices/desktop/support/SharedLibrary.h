#pragma once

#include <string>
#include <utility>

namespace quiravent::desktop {

/// A library that is opened when it is needed and then stays for the life of the process. It works
/// with the libraries that it was built for, not with copies of them that the script runtime
/// exports; only its own functions are found here, and nobody else finds them.
class SharedLibrary {
  public:
    /// name: a path, or a name that the loader looks for. Throws DeviceError with the loader's
    /// reason.
    explicit SharedLibrary(const std::string& name);

    /// A library that the process has already; isOpen() tells whether it has.
    static SharedLibrary loaded(const std::string& name);

    bool isOpen() const { return m_handle != nullptr; }

    /// The function of that name and type; null when the library has none, or isn't open.
    template <class Function>
    Function* function(const char* name) const {
        return reinterpret_cast<Function*>(symbol(name));
    }

    /// The same, as a pointer of the type that the headers give; throws DeviceError when the
    /// library has none.
    template <class Pointer>
    Pointer require(const char* name) const {
        return reinterpret_cast<Pointer>(requiredSymbol(name));
    }

  private:
    SharedLibrary(std::string name, void* handle) : m_name(std::move(name)), m_handle(handle) {}

    void* symbol(const char* name) const;
    void* requiredSymbol(const char* name) const;

    std::string m_name;
    void* m_handle;
};

}  // namespace quiravent::desktop
