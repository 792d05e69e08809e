/*
 * Host stand-in of libvndksupport's <vndksupport/linker.h>: loading of same-process HAL
 * libraries. On a phone the library is opened in the "sphal" linker namespace; the host has no
 * linker namespaces, so it is opened with dlopen as a phone does when none is configured.
 * Callers resolve the path against the device root before calling.
 */
#ifndef VNDKSUPPORT_LINKER_H_
#define VNDKSUPPORT_LINKER_H_

#ifdef __cplusplus
extern "C" {
#endif

// 1 inside a vendor process; the camera server is not one.
int android_is_in_vendor_process(void);

// dlopen(name, flag): the handle, or NULL with the reason in dlerror().
void* android_load_sphal_library(const char* name, int flag);

// dlclose(handle).
int android_unload_sphal_library(void* handle);

#ifdef __cplusplus
}
#endif

#endif  // VNDKSUPPORT_LINKER_H_
