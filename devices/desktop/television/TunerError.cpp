#include "television/TunerError.h"

#include <cerrno>
#include <system_error>

#include "support/Text.h"

namespace quiravent::desktop {

namespace {

e_pl_dtv_error codeOf(int error, e_pl_dtv_error otherwise) {
    switch (error) {
        case EBUSY:
        case EADDRINUSE:
        case EMFILE:
        case ENFILE:
        case ENOMEM:
        case ENOBUFS:
            return e_pl_dtv_error_resource_unavailable;
        case EACCES:
        case EPERM:
            return e_pl_dtv_error_not_allowed;
        case EADDRNOTAVAIL:
        case ENODEV:
        case ENETDOWN:
        case ENETUNREACH:
            return e_pl_dtv_error_operation_unavailable;
        default:
            return otherwise;
    }
}

}  // namespace

TunerError TunerError::ofSystem(const std::string& what, int error, e_pl_dtv_error otherwise) {
    return {codeOf(error, otherwise), joined(what, ": ", std::generic_category().message(error))};
}

}  // namespace quiravent::desktop
