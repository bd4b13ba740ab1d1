#include "DataServices.h"

#include "Persistent.h"
#include "porting/pl_persistent.h"

Persistent* DataServices::GetPersistent(const std::string& context) {
    unsigned int handle = 0;
    if (pl_persistent_GetPersistent(&handle, context) != 0 || handle == 0) return nullptr;
    return new Persistent(handle);
}
