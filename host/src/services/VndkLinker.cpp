// libvndksupport's loader of same-process HAL libraries, for a host without linker namespaces.
#include <dlfcn.h>
#include <vndksupport/linker.h>

extern "C" {

int android_is_in_vendor_process(void) {
    return 0;
}

void* android_load_sphal_library(const char* name, int flag) {
    if (name == nullptr) return nullptr;
    return dlopen(name, flag);
}

int android_unload_sphal_library(void* handle) {
    return handle ? dlclose(handle) : -1;
}

}  // extern "C"
